// Texts kept by name in the current user's registry.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvel::windows {

// `key` below HKEY_CURRENT_USER, "Software\\..."; it is made when something is first kept there.
// None / nothing kept: there is no such text, or the registry refuses.
[[nodiscard]] std::optional<std::wstring> kept_text(std::wstring_view key, std::wstring_view name);
void keep_text(std::wstring_view key, std::wstring_view name, std::wstring_view text);

}  // namespace korvel::windows
