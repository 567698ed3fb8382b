#include "host/console/command_stack.h"

#include <algorithm>

#include "frame/case_mapping.h"

namespace korvel {
namespace {

bool is_named(const ConsoleCommandStack::Entry& entry, std::wstring_view name) {
  return equal_ignoring_case(entry.name, name) || equal_ignoring_case(entry.local_name, name);
}

}  // namespace

void ConsoleCommandStack::add_command(std::wstring_view group, std::wstring_view global_name,
                                      std::wstring_view local_name, int flags,
                                      CommandHandler handler) {
  const bool taken = std::ranges::any_of(entries_, [&](const Entry& entry) {
    return entry.group == group && (is_named(entry, global_name) || is_named(entry, local_name));
  });
  if (!taken) entries_.push_back({group, global_name, local_name, flags, handler});
}

void ConsoleCommandStack::remove_group(std::wstring_view group) {
  std::erase_if(entries_, [group](const Entry& entry) { return entry.group == group; });
}

std::optional<ConsoleCommandStack::Entry> ConsoleCommandStack::find(std::wstring_view name) const {
  const auto found =
      std::ranges::find_if(entries_, [name](const Entry& entry) { return is_named(entry, name); });
  if (found == entries_.end()) return std::nullopt;
  return *found;
}

}  // namespace korvel
