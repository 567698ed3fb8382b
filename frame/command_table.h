// The 38 commands, one row each, in the order in which the host lists them. Registration, the
// console's help and the palette are derived from this table.
#pragma once

#include <span>
#include <string_view>

#include "frame/session.h"

namespace korvel {

// Bits of the host's command flags.
namespace command_flag {
inline constexpr int transparent = 1;     // may run inside another command
inline constexpr int uses_pick_set = 2;   // sees the selection made before it was typed
inline constexpr int redraw = 4;          // and keeps it
inline constexpr int session = 0x200000;  // runs in the host's application context
}  // namespace command_flag

using CommandHandler = void (*)(Session&);

struct Command {
  std::wstring_view name;
  int flags;
  std::wstring_view summary;  // one line of help: what it does
  CommandHandler handler;     // null: not built yet, running it does nothing
};

inline constexpr std::wstring_view command_group = L"KORVEL";

[[nodiscard]] std::span<const Command> command_table();

}  // namespace korvel
