// What the host looks for in the file of the module: its entry, its string table, its dialog.
#include <array>
#include <gtest/gtest.h>
#include <windows.h>

#include "frame/message.h"
#include "host/arx/resource_ids.h"

namespace korvel::test {
namespace {

TEST(ArxModule, HasItsEntryItsStringsAndItsDialog) {
  const HMODULE module = LoadLibraryExA(KORVEL_MODULE, nullptr, DONT_RESOLVE_DLL_REFERENCES);
  ASSERT_NE(module, nullptr) << KORVEL_MODULE;
  EXPECT_NE(GetProcAddress(module, "acrxEntryPoint"), nullptr);
  EXPECT_NE(GetProcAddress(module, "acrxGetApiVersion"), nullptr);
  for (int id = first_message_id; id <= last_message_id; ++id) {
    std::array<wchar_t, 1024> held{};
    const int length = LoadStringW(module, static_cast<UINT>(id), held.data(), held.size());
    const std::wstring_view in_module(held.data(), static_cast<std::size_t>(length));
    EXPECT_EQ(in_module, text(static_cast<Message>(id))) << id;
  }
  EXPECT_NE(FindResourceW(module, MAKEINTRESOURCEW(IDD_KORVEL_DIALOG), MAKEINTRESOURCEW(5)),
            nullptr);  // 5: a dialog
  FreeLibrary(module);
}

}  // namespace
}  // namespace korvel::test
