#include "host/console/command_loop.h"

#include "frame/case_mapping.h"

namespace korvel {
namespace {

std::vector<std::wstring> all_names(const ConsoleCommandStack& plugin) {
  std::vector<std::wstring> names;
  for (const auto& command : plugin.entries())
    names.emplace_back(command.name);
  for (const HostCommand& command : host_commands())
    names.emplace_back(command.name);
  return names;
}

}  // namespace

void CommandLoop::run() {
  lines_.set_words(all_names(plugin_.commands()));
  while (const std::optional<std::wstring> line = host_.next_command())
    run_line(*line);
}

void CommandLoop::run_line(std::wstring_view line) {
  std::wstring name(command_name(line));
  if (name.empty()) {
    if (!lines_.is_terminal()) return;
    name = last_command_;
  }
  if (equal_ignoring_case(name, L"ESC")) host_.set_pick_first({});  // lets the selection go
  if (name.empty() || equal_ignoring_case(name, L"ESC")) return;
  last_command_ = name;
  if (const auto plugin_command = plugin_.commands().find(name)) {
    run_plugin_command(*plugin_command);
  } else if (const HostCommand* const command = find_host_command(name)) {
    host_.drawing().journal().name_steps(std::wstring(command->name));
    host_.run_host_command(*command);
  } else {
    host_.refuse(L"Unknown command \"" + name + L"\". Press F1 for help.");
  }
}

void CommandLoop::run_plugin_command(const ConsoleCommandStack::Entry& command) {
  // As in the CAD host: a command that does not ask for the pick-first set finds none.
  if ((command.flags & command_flag::uses_pick_set) == 0) host_.set_pick_first({});
  host_.drawing().journal().name_steps(std::wstring(command.name));
  host_.run_guarded(command.name, [&] { plugin_.run(command); });
}

}  // namespace korvel
