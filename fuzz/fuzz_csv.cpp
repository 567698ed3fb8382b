// Any bytes as a table of text: cells lie in the text, lines are counted, and what was read can be
// written and read again. The first byte chooses the separator.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/csv_text.h"

namespace korvel {
namespace {

void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "fuzz_csv: %s\n", what);
  std::abort();
}

using Rows = std::vector<std::vector<std::string>>;

struct Reading {
  Rows rows;
  bool damaged = false;
};

Reading read_all(std::string text, char separator) {
  const auto is_line_end = [](char c) { return c == '\n' || c == '\r'; };
  const auto lines = 1 + static_cast<std::size_t>(std::ranges::count_if(text, is_line_end));
  Reading reading;
  CsvReader reader(text, separator);
  std::vector<std::string_view> cells;
  std::size_t last_line = 0;
  while (reader.next(cells)) {
    expect(!cells.empty(), "a row without cells");
    expect(reader.line() > last_line && reader.line() <= lines, "lines that do not rise");
    last_line = reader.line();
    for (const std::string_view cell : cells) {
      const bool inside =
          cell.data() >= text.data() && cell.data() + cell.size() <= text.data() + text.size();
      expect(inside, "a cell beside the text");
    }
    reading.rows.emplace_back(cells.begin(), cells.end());
  }
  reading.damaged = reader.error().has_value();
  if (reading.damaged) {
    const std::size_t line = reader.error()->line;
    expect(line > last_line && line <= lines, "an error on a line that is not there");
  }
  return reading;
}

std::string write_all(const Rows& rows, char separator) {
  std::string text;
  CsvWriter writer(separator, text);
  for (const auto& row : rows) {
    for (const std::string& cell : row)
      writer.cell(std::string_view(cell));
    writer.end_row();
  }
  return text;
}

}  // namespace
}  // namespace korvel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const char separator = ",;\t|"[data[0] % 4];
  const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
  const korvel::Reading reading = korvel::read_all(text, separator);
  const korvel::Reading again =
      korvel::read_all(korvel::write_all(reading.rows, separator), separator);
  korvel::expect(!again.damaged && again.rows == reading.rows,
                 "written and read again it is another table");
  return 0;
}
