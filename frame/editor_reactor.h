// Being told when commands of the host end.
#pragma once

#include <string_view>

namespace korvel {

// The name is the command's own, not an alias, in the host's letter case. While it is told, a
// reactor may remove itself and others from the host.
class EditorReactor {
 public:
  EditorReactor() = default;
  EditorReactor(const EditorReactor&) = delete;
  EditorReactor& operator=(const EditorReactor&) = delete;
  virtual ~EditorReactor() = default;

  virtual void command_ended(std::wstring_view name) = 0;
  virtual void command_cancelled(std::wstring_view name) = 0;  // by the user
  virtual void command_failed(std::wstring_view name) = 0;
};

}  // namespace korvel
