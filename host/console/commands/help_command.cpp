// HELP.
#include <algorithm>

#include "frame/case_mapping.h"
#include "frame/command_table.h"
#include "frame/format.h"
#include "host/console/commands/handlers.h"
#include "host/console/commands/questions.h"

namespace korvel::host_command {
namespace {

constexpr std::size_t name_width = 28;

void print_line(ConsoleHost& host, std::wstring_view name, std::wstring_view summary,
                std::wstring_view remark) {
  std::wstring line(name);
  line.resize(std::max(line.size() + 1, name_width), L' ');
  line += summary;
  if (!remark.empty()) line += format_text(L" (%s)", remark);
  host.print(line + L"\n");
}

}  // namespace

void help(ConsoleHost& host) {
  const auto answer = ask_word(host, L"Enter a command or Enter for all: ");
  if (!answer) return;
  const std::wstring_view wanted = command_name(*answer);
  bool found = false;
  for (const Command& command : command_table) {
    if (!wanted.empty() && !equal_ignoring_case(command.name, wanted)) continue;
    print_line(host, command.name, command.summary, L"");
    found = true;
  }
  for (const HostCommand& command : host_commands()) {
    if (!wanted.empty() && !is_called(command, wanted)) continue;
    print_line(host, command.name, command.summary, command.aliases);
    found = true;
  }
  if (!found) host.refuse(format_text(L"There is no command \"%s\".", *answer));
}

}  // namespace korvel::host_command
