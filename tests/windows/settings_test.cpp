// Texts in the registry.
#include "host/windows/settings.h"

#include <gtest/gtest.h>

#include "host/windows/common_controls.h"

namespace korvel::windows {
namespace {

constexpr std::wstring_view key = L"Software\\Korvel tests\\Settings";

TEST(Settings, KeepsTextsByName) {
  RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Korvel tests");
  EXPECT_EQ(kept_text(key, L"A"), std::nullopt);
  for (const std::wstring& text : {std::wstring(L"1\t\u00E9 \u4E2D\n"), std::wstring(),
                                   std::wstring(70'000, L'x'), std::wstring(L"short")}) {
    keep_text(key, L"A", text);
    EXPECT_TRUE(kept_text(key, L"A") == text) << text.size();
  }
  keep_text(key, L"B/C", L"other");
  EXPECT_EQ(kept_text(key, L"A"), L"short");
  EXPECT_EQ(kept_text(key, L"B/C"), L"other");
  EXPECT_EQ(kept_text(key, L"D"), std::nullopt);

  const DWORD number = 7;
  RegSetKeyValueW(HKEY_CURRENT_USER, std::wstring(key).c_str(), L"N", REG_DWORD, &number,
                  sizeof number);
  EXPECT_EQ(kept_text(key, L"N"), std::nullopt) << "no text";
  RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Korvel tests");
}

}  // namespace
}  // namespace korvel::windows
