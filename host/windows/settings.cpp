#include "host/windows/settings.h"

#include <windows.h>

namespace korvel::windows {

std::optional<std::wstring> kept_text(std::wstring_view key, std::wstring_view name) {
  const std::wstring key_name(key);
  const std::wstring value_name(name);
  std::wstring text;
  DWORD bytes = 0;
  // Somebody may keep a longer text between the two calls.
  for (LSTATUS status = ERROR_MORE_DATA; status == ERROR_MORE_DATA;) {
    status = RegGetValueW(HKEY_CURRENT_USER, key_name.c_str(), value_name.c_str(), RRF_RT_REG_SZ,
                          nullptr, nullptr, &bytes);
    if (status != ERROR_SUCCESS) return std::nullopt;
    text.resize(bytes / sizeof(wchar_t));
    status = RegGetValueW(HKEY_CURRENT_USER, key_name.c_str(), value_name.c_str(), RRF_RT_REG_SZ,
                          nullptr, text.data(), &bytes);
    if (status != ERROR_SUCCESS && status != ERROR_MORE_DATA) return std::nullopt;
  }
  text.resize(bytes / sizeof(wchar_t));
  if (!text.empty()) text.pop_back();  // the zero that ends it
  return text;
}

void keep_text(std::wstring_view key, std::wstring_view name, std::wstring_view text) {
  const std::wstring value(text);
  RegSetKeyValueW(HKEY_CURRENT_USER, std::wstring(key).c_str(), std::wstring(name).c_str(), REG_SZ,
                  value.c_str(), static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

}  // namespace korvel::windows
