// Any bytes as a text file of either policy: lines are counted, whole and within their length, and
// what was read can be written and read again.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "frame/text_file.h"

namespace korvel {
namespace {

void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "fuzz_text_file: %s\n", what);
  std::abort();
}

using Lines = std::vector<std::wstring>;

Lines lines_of(TextReader& text) {
  Lines lines;
  while (const std::optional<TextLine> line = text.next_line()) {
    expect(line->number == lines.size() + 1, "lines that are not counted from 1");
    const bool ended = line->text.ends_with(L'\n');
    expect(line->text.size() <= max_line_length + (ended ? 1 : 0), "a line that is too long");
    const std::wstring_view inner = line->text.substr(0, line->text.size() - (ended ? 1 : 0));
    expect(inner.find(L'\n') == inner.npos, "two lines in one");
    expect(lines.empty() || lines.back().ends_with(L'\n'), "a line behind the last one");
    lines.emplace_back(line->text);
  }
  return lines;
}

void read_both_ways(std::string_view bytes, TextEncoding policy) {
  TextReading reading = read_text(bytes, policy);
  const Lines lines = lines_of(reading.text);
  if (reading.error) {
    expect(lines.empty() && !reading.error->message.empty(),
           "an error with text, or without words");
    expect(reading.error->kind == TextFileErrorKind::LineTooLong && reading.error->line > 0,
           "an error that is not one of a line");
    return;
  }
  TextFileWriter writer(TextEncoding::Utf16);
  for (const std::wstring& line : lines)
    writer.write(line);
  TextReading again = read_text(writer.bytes(), TextEncoding::Ansi);
  expect(!again.error && lines_of(again.text) == lines,
         "written and read again it is another text");
}

}  // namespace
}  // namespace korvel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  korvel::read_both_ways(bytes, korvel::TextEncoding::Ansi);
  korvel::read_both_ways(bytes, korvel::TextEncoding::Utf16);
  return 0;
}
