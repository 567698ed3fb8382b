// Tables as comma-separated text in UTF-8: cells written and read.
//
// A line is a row; cells are quoted where they hold the separator, a quote, CR or LF, or begin or
// end with a blank or tab, and a quote inside them is doubled.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvel {

// How cells are parted and numbers are written.
struct CsvFormat {
  char separator = ',';
  char decimal_sign = '.';  // of integers and reals: a full stop or a comma
};

// Whether cells can be parted by it: a tab or a printable ASCII character that occurs in no number
// and is no quote, letter or blank.
[[nodiscard]] bool is_csv_separator(wchar_t c);

// Appends rows to a text. Lines end in CR LF.
class CsvWriter {
 public:
  CsvWriter(char separator, std::string& out);

  void cell(std::wstring_view text);
  void cell(std::string_view utf8);
  // A cell that needs no quotes: a number does not.
  void plain_cell(std::string_view utf8) { begin_cell().append(utf8); }
  void end_row();

 private:
  std::string& begin_cell() {
    if (row_begun_) out_.push_back(separator_);
    row_begun_ = true;
    return out_;
  }
  bool append_unquoted(std::wstring_view text);
  void append_cell(std::string_view cell);
  [[nodiscard]] bool needs_quotes(std::string_view cell) const;

  char separator_;
  std::string& out_;
  std::array<unsigned char, 128> asks_for_quotes_{};  // 1 for the characters that do
  std::string converted_;
  bool row_begun_ = false;
};

enum class CsvDamage { QuoteNotClosed, TextBehindQuote };

struct CsvError {
  CsvDamage damage;
  std::size_t line;  // where the damaged cell begins, counted from 1
};

// Hands out the rows of a text in order, their cells in place. Lines end in LF, CR LF or CR, the
// last one need not; quoted cells may hold any of them. An empty line is a row of one empty cell. A
// quote inside a cell that does not begin with one is a character like any other.
class CsvReader {
 public:
  // The text must outlive the cells. Its doubled quotes are made single ones as reading goes on.
  CsvReader(std::string& utf8, char separator) : text_(utf8), separator_(separator) {}

  // False at the end, and from the first error on.
  [[nodiscard]] bool next(std::vector<std::string_view>& cells);

  // The line on which the last row begins, counted from 1.
  [[nodiscard]] std::size_t line() const { return row_line_; }

  [[nodiscard]] const std::optional<CsvError>& error() const { return error_; }

 private:
  [[nodiscard]] std::string_view plain_cell();
  [[nodiscard]] std::optional<std::string_view> quoted_cell();
  [[nodiscard]] bool at_cell_end() const;
  bool take_line_end();
  void fail(CsvDamage damage, std::size_t line);

  std::string& text_;
  char separator_;
  std::size_t at_ = 0;
  std::size_t line_ = 1;
  std::size_t row_line_ = 0;
  std::optional<CsvError> error_;
};

}  // namespace korvel
