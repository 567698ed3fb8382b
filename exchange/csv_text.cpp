// Writing and reading of cells.
#include "exchange/csv_text.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "frame/utf.h"

namespace korvel {
namespace {

bool is_blank(char c) { return c == ' ' || c == '\t'; }

bool is_line_end(char c) { return c == '\r' || c == '\n'; }

}  // namespace

bool is_csv_separator(wchar_t c) {
  constexpr std::wstring_view usable = L"\t,;|:!#$%&'()*/<=>?@[\\]^_`{}~";
  return usable.find(c) != std::wstring_view::npos;
}

// --- Writing ---

CsvWriter::CsvWriter(char separator, std::string& out) : separator_(separator), out_(out) {
  for (const char c : {separator, '"', '\r', '\n'})
    asks_for_quotes_[static_cast<std::size_t>(c) & 0x7F] = 1;
}

void CsvWriter::cell(std::wstring_view text) {
  begin_cell();
  if (append_unquoted(text)) return;
  converted_.clear();
  append_utf8(text, converted_);
  append_cell(converted_);
}

void CsvWriter::cell(std::string_view utf8) {
  begin_cell();
  append_cell(utf8);
}

void CsvWriter::end_row() {
  out_.append("\r\n");
  row_begun_ = false;
}

// What most texts need, in one pass. False, and nothing appended, for a text that is long, not
// ASCII, or asks for quotes.
bool CsvWriter::append_unquoted(std::wstring_view text) {
  std::array<char, 256> narrow;
  if (text.size() > narrow.size()) return false;
  if (text.empty()) return true;
  std::uint32_t all = 0;
  unsigned quoted = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto unit =
        static_cast<std::uint32_t>(text[i]);  // NOLINT(*-signed-char-misuse,*-str34-c)
    all |= unit;
    quoted |= asks_for_quotes_[unit & 0x7F];
    narrow[i] = static_cast<char>(unit);
  }
  if (all >= 0x80 || quoted != 0 || is_blank(narrow[0]) || is_blank(narrow[text.size() - 1])) {
    return false;
  }
  out_.append(narrow.data(), text.size());
  return true;
}

void CsvWriter::append_cell(std::string_view cell) {
  if (!needs_quotes(cell)) {
    out_.append(cell);
    return;
  }
  out_.push_back('"');
  for (const char c : cell) {
    if (c == '"') out_.push_back('"');
    out_.push_back(c);
  }
  out_.push_back('"');
}

bool CsvWriter::needs_quotes(std::string_view cell) const {
  if (cell.empty()) return false;
  if (is_blank(cell.front()) || is_blank(cell.back())) return true;
  return std::ranges::any_of(cell, [this](char c) {
    const auto unit = static_cast<unsigned char>(c);
    return unit < 0x80 && asks_for_quotes_[unit] != 0;
  });
}

// --- Reading ---

bool CsvReader::next(std::vector<std::string_view>& cells) {
  cells.clear();
  if (error_ || at_ >= text_.size()) return false;
  row_line_ = line_;
  for (;; ++at_) {
    if (at_ < text_.size() && text_[at_] == '"') {
      const std::optional<std::string_view> cell = quoted_cell();
      if (!cell) return false;
      cells.push_back(*cell);
    } else {
      cells.push_back(plain_cell());
    }
    if (at_ >= text_.size() || take_line_end()) return true;
  }
}

// Leaves the reader on what ends the cell: a separator, a line end or the text's end.
std::string_view CsvReader::plain_cell() {
  const std::size_t begin = at_;
  while (!at_cell_end())
    ++at_;
  return std::string_view(text_).substr(begin, at_ - begin);
}

std::optional<std::string_view> CsvReader::quoted_cell() {
  const std::size_t first_line = line_;
  const std::size_t begin = at_ + 1;
  std::size_t kept = begin;
  for (++at_; at_ < text_.size(); ++at_) {
    const char c = text_[at_];
    if (c == '"') {
      const bool doubled = at_ + 1 < text_.size() && text_[at_ + 1] == '"';
      if (!doubled) {
        ++at_;
        if (!at_cell_end()) {
          fail(CsvDamage::TextBehindQuote, first_line);
          return std::nullopt;
        }
        return std::string_view(text_).substr(begin, kept - begin);
      }
      ++at_;
    } else if (is_line_end(c) && !(c == '\n' && text_[at_ - 1] == '\r')) {
      ++line_;
    }
    text_[kept++] = c;
  }
  fail(CsvDamage::QuoteNotClosed, first_line);
  return std::nullopt;
}

bool CsvReader::at_cell_end() const {
  return at_ >= text_.size() || text_[at_] == separator_ || is_line_end(text_[at_]);
}

bool CsvReader::take_line_end() {
  if (text_[at_] == separator_) return false;
  const bool is_pair = text_[at_] == '\r' && at_ + 1 < text_.size() && text_[at_ + 1] == '\n';
  at_ += is_pair ? 2 : 1;
  ++line_;
  return true;
}

void CsvReader::fail(CsvDamage damage, std::size_t line) { error_ = CsvError{damage, line}; }

}  // namespace korvel
