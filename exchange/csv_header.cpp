#include "exchange/csv_header.h"

#include <algorithm>
#include <string_view>

#include "frame/format.h"
#include "frame/utf.h"

namespace korvel {

std::optional<std::wstring> CsvHeader::read(CsvReader& reader, const ODTableDef& table,
                                            Findings& ignored_columns) {
  std::vector<std::string_view> cells;
  if (!reader.next(cells))
    return reader.error() ? words_for(*reader.error()) : L"the file is empty";
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const std::wstring name = from_utf8(cells[i]);
    columns_.emplace_back();
    // The table may have columns of these names, too: the first ones are those of the record.
    if (name == L"Handle" && !handle_) {
      handle_ = i;
    } else if (name == L"Record" && !record_) {
      record_ = i;
    } else if (const std::optional<std::size_t> column = table.column(name)) {
      if (std::ranges::find(columns_, column) != columns_.end()) {
        return format_text(L"line 1: the column '%s' is there twice", name);
      }
      columns_.back() = column;
    } else {
      ignored_columns.add([&] { return excerpt(name); });
    }
  }
  if (handle_ && record_) return std::nullopt;
  return L"line 1: the columns 'Handle' and 'Record' are missing, or the separator is another one";
}

std::wstring words_for(const CsvError& error) {
  switch (error.damage) {
    case CsvDamage::QuoteNotClosed:
      return format_text(L"line %i: the quote is not closed", error.line);
    case CsvDamage::TextBehindQuote:
      return format_text(L"line %i: there is text behind the closing quote", error.line);
  }
  return {};
}

}  // namespace korvel
