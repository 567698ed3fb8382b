// The list of all commands for --list-commands.
#pragma once

#include <string>

namespace korvel {

// A line for each command: name, flags, what it does; the plug-in's first.
[[nodiscard]] std::wstring command_list();

}  // namespace korvel
