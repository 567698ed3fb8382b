// The plug-in's commands as the console knows them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/plugin.h"

namespace korvel {

class ConsoleCommandStack final : public CommandStack {
 public:
  struct Entry {
    std::wstring_view group;
    std::wstring_view name;
    std::wstring_view local_name;
    int flags = 0;
    CommandHandler handler = nullptr;
  };

  // A name, global or local, that the group already has is refused.
  void add_command(std::wstring_view group, std::wstring_view global_name,
                   std::wstring_view local_name, int flags, CommandHandler handler) override;
  void remove_group(std::wstring_view group) override;
  // The console has no scripting language.
  void add_function(std::wstring_view /*name*/, int (* /*function*/)()) override {}
  void remove_function(std::wstring_view /*name*/) override {}

  // By global or local name, without case.
  [[nodiscard]] std::optional<Entry> find(std::wstring_view name) const;
  [[nodiscard]] const std::vector<Entry>& entries() const { return entries_; }

 private:
  std::vector<Entry> entries_;
};

}  // namespace korvel
