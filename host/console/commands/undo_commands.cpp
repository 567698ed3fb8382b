// U, UNDO, REDO, MREDO.
#include <array>
#include <limits>

#include "frame/format.h"
#include "host/console/commands/handlers.h"
#include "host/console/commands/questions.h"
#include "host/console/typed_text.h"

namespace korvel::host_command {
namespace {

bool undo_step(ConsoleHost& host) {
  const std::optional<std::wstring> name = host.drawing().undo();
  if (name) host.print(format_text(L"Undone: %s\n", *name));
  return name.has_value();
}

bool redo_step(ConsoleHost& host) {
  const std::optional<std::wstring> name = host.drawing().redo();
  if (name) host.print(format_text(L"Redone: %s\n", *name));
  return name.has_value();
}

}  // namespace

void undo_one(ConsoleHost& host) {
  if (!undo_step(host)) host.refuse(L"Nothing to undo.");
}

void undo(ConsoleHost& host) {
  std::int32_t count = 1;
  for (;;) {
    const auto answer = ask_word(host, L"Enter the number of operations to undo <1>: ");
    if (!answer) return;
    if (answer->empty()) break;
    if (const auto number = integer_of(*answer); number && *number > 0) {
      count = *number;
      break;
    }
    host.refuse(L"Requires a positive integer.");
  }
  for (std::int32_t done = 0; done < count && !cancelled(host); ++done) {
    if (undo_step(host)) continue;
    if (done == 0) {
      host.refuse(L"Nothing to undo.");
    } else {
      host.print(L"Everything has been undone.\n");
    }
    return;
  }
}

void redo(ConsoleHost& host) {
  if (!redo_step(host)) host.refuse(L"Nothing to redo.");
}

void redo_many(ConsoleHost& host) {
  static constexpr std::array<std::wstring_view, 2> options = {L"All", L"Last"};
  std::int32_t count = 1;
  for (;;) {
    const auto answer = ask_word(host, L"Enter number of actions or [All/Last] <1>: ");
    if (!answer) return;
    if (answer->empty() || keyword_of(*answer, options) == 1) break;
    if (keyword_of(*answer, options) == 0) count = std::numeric_limits<std::int32_t>::max();
    if (const auto number = integer_of(*answer); number && *number > 0) count = *number;
    if (keyword_of(*answer, options) == 0 || integer_of(*answer) == count) break;
    host.refuse(L"Requires a positive integer or an option.");
  }
  std::int32_t done = 0;
  while (done < count && !cancelled(host) && redo_step(host))
    ++done;
  if (done == 0) host.refuse(L"Nothing to redo.");
}

}  // namespace korvel::host_command
