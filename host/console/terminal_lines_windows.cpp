// Lines typed in a console window.
#include <array>
#include <cstdio>
#include <io.h>
#include <windows.h>

#include "frame/utf.h"
#include "host/console/interrupt.h"
#include "host/console/output.h"
#include "host/console/terminal_lines.h"

namespace korvel {
namespace {

constexpr wchar_t ctrl_z = L'\x1A';

// The console window edits the line and remembers those before it.
class TerminalLines final : public LineSource {
 public:
  explicit TerminalLines(PromptStyle style)
      : input_(GetStdHandle(STD_INPUT_HANDLE)),
        bold_(style == PromptStyle::Bold && understands_escapes()) {}

  [[nodiscard]] bool is_terminal() const override { return true; }

  Read next(std::wstring_view prompt, std::wstring& line) override {
    const interrupt::AtPrompt at_prompt;
    if (bold_) style("\033[1m");
    write_output(prompt);
    if (bold_) style("\033[0m");
    flush_output();
    const Read read = read_line(line);
    if (read == Read::Interrupted || read == Read::End) write_output(L"\n");
    return read;
  }

 private:
  static bool understands_escapes() {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(output, &mode) != 0 &&
           SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
  }

  // Past what makes escapes visible.
  static void style(const char* escape) { (void)std::fputs(escape, stdout); }

  Read read_line(std::wstring& line) const {
    line.clear();
    do {
      std::array<wchar_t, 4096> units{};
      DWORD count = 0;
      SetLastError(ERROR_SUCCESS);
      const bool read = ReadConsoleW(input_, units.data(), static_cast<DWORD>(units.size()), &count,
                                     nullptr) != 0;
      if (GetLastError() == ERROR_OPERATION_ABORTED) return interrupted();
      if (!read || count == 0) return Read::End;
      line.append(units.data(), count);
    } while (line.back() != L'\n');
    if (line.front() == ctrl_z) return Read::End;
    while (line.ends_with(L'\n') || line.ends_with(L'\r'))
      line.pop_back();
    return to_utf8(line).size() > max_typed_bytes ? Read::TooLong : Read::Line;
  }

  // The reading ends a moment before or after the key is noticed.
  static Read interrupted() {
    constexpr int moments = 100;
    for (int moment = 0; moment < moments && interrupt::take() == 0; ++moment)
      Sleep(10);
    return Read::Interrupted;
  }

  HANDLE input_;
  bool bold_;
};

}  // namespace

std::unique_ptr<LineSource> make_terminal_lines(PromptStyle style) {
  return std::make_unique<TerminalLines>(style);
}

}  // namespace korvel
