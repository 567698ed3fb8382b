// Prints the module's resource script: the string table, which is the message catalogue, and the
// empty box in which every dialog is shown.
#include <array>
#include <cstdio>
#include <string>
#include <string_view>

#include "frame/message.h"
#include "host/arx/resource_ids.h"

namespace korvel {
namespace {

// As a literal of the resource compiler, which ends no text at a line end.
std::string literal(std::wstring_view text) {
  std::string quoted = "L\"";
  for (const wchar_t c : text) {
    if (c == L'"') {
      quoted += "\"\"";
    } else if (c == L'\n') {
      quoted += "\\n";
    } else if (c == L'\\') {
      quoted += "\\\\";
    } else if (c >= L' ' && c <= L'~') {
      quoted += static_cast<char>(c);
    } else {
      std::array<char, 8> digits{};
      (void)std::snprintf(digits.data(), digits.size(), "\\x%04X",
                          static_cast<unsigned>(c) & 0xFFFFU);
      quoted += digits.data();
    }
  }
  return quoted + '"';
}

void print_strings() {
  std::puts("STRINGTABLE\nBEGIN");
  for (const message_detail::Entry& entry : message_detail::catalogue) {
    std::printf("  %i %s\n", static_cast<int>(entry.id), literal(entry.text).c_str());
  }
  std::puts("END\n");
}

void print_dialog() {
  std::printf("%i DIALOGEX 0, 0, 280, 180\n", IDD_KORVEL_DIALOG);
  std::puts("STYLE DS_SETFONT | WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME");
  std::printf("CAPTION %s\n", literal(text(Message::ProductName)).c_str());
  std::puts("FONT 9, L\"Segoe UI\"\nBEGIN\nEND");
}

}  // namespace
}  // namespace korvel

int main() {
  std::puts("#include <windows.h>\n");
  korvel::print_strings();
  korvel::print_dialog();
}
