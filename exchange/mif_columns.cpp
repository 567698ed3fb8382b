// Naming and measuring the columns of a MIF file.
#include "exchange/mif_columns.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "exchange/mif_rows.h"
#include "frame/case_mapping.h"
#include "frame/format.h"
#include "frame/utf.h"

namespace korvel {
namespace {

bool is_letter_or_digit(char32_t c) {
  if (c < 0x80) {
    return (c >= U'0' && c <= U'9') || (c >= U'A' && c <= U'Z') || (c >= U'a' && c <= U'z') ||
           c == U'_';
  }
  const bool is_sign = c < 0xC0 || c == 0xD7 || c == 0xF7 || (c >= 0x2000 && c < 0x2C00) ||
                       (c >= 0x3000 && c < 0x3040) || (c >= 0xE000 && c < 0xF900) || c >= 0xFE00;
  return !is_sign;
}

// The beginning of the text that takes no more than `most` bytes.
std::wstring_view beginning(std::wstring_view text, std::size_t most, const MifCharset& charset) {
  std::size_t bytes = 0;
  std::size_t at = 0;
  while (at < text.size()) {
    const CodePoint read = code_point_at(text, at);
    bytes += charset.size_of(read.value);
    if (bytes > most) break;
    at += read.units;
  }
  return text.substr(0, at);
}

class Names {
 public:
  explicit Names(const MifCharset& charset) : charset_(charset) {}

  // A name that a MIF file can have and no earlier column has.
  std::wstring make(std::wstring_view column, std::wstring_view suffix) {
    const std::wstring base = usable(column);
    std::wstring name = fitting(base, suffix);
    for (int number = 2; !taken_.insert(lower(name)).second; ++number)
      name = fitting(base, format_text(L"%s_%i", suffix, number));
    return name;
  }

 private:
  static std::wstring usable(std::wstring_view column) {
    std::wstring out;
    for (std::size_t at = 0; at < column.size();) {
      const CodePoint read = code_point_at(column, at);
      append_code_point(is_letter_or_digit(read.value) ? read.value : U'_', out);
      at += read.units;
    }
    if (out.empty() || (out[0] >= L'0' && out[0] <= L'9')) out.insert(0, 1, L'_');
    return out;
  }
  [[nodiscard]] std::wstring fitting(std::wstring_view base, std::wstring_view suffix) const {
    std::wstring name(beginning(base, most_mif_name - suffix.size(), charset_));
    return name.append(suffix);
  }

  const MifCharset& charset_;
  std::set<std::wstring> taken_;
};

// The longest text of a column: in letters and in bytes of UTF-8.
struct Longest {
  std::size_t letters = 0;
  std::size_t utf8_bytes = 0;

  void see(std::wstring_view text) {
    if (text.size() * 4 <= std::min(letters, utf8_bytes)) return;
    std::size_t count = 0;
    std::size_t bytes = 0;
    for (std::size_t at = 0; at < text.size(); ++count) {
      const CodePoint read = code_point_at(text, at);
      at += read.units;
      bytes += read.value < 0x80 ? 1 : read.value < 0x800 ? 2 : read.value < 0x10000 ? 3 : 4;
    }
    letters = std::max(letters, count);
    utf8_bytes = std::max(utf8_bytes, bytes);
  }
};

std::vector<MifColumn> columns_of(const ODTableDef& table, const RecordRows& rows) {
  std::vector<MifColumn> columns = {{MifSource::Handle, 0, ODType::Character},
                                    {MifSource::Record, 0, ODType::Integer}};
  for (const std::size_t column : rows.columns)
    columns.push_back({MifSource::Table, column, table.columns[column].type});
  columns.push_back({MifSource::Layer, 0, ODType::Character});
  return columns;
}

std::wstring_view heading_of(const MifColumn& column, const ODTableDef& table) {
  switch (column.source) {
    case MifSource::Handle:
      return L"Handle";
    case MifSource::Record:
      return L"Record";
    case MifSource::Layer:
      return L"Layer";
    case MifSource::Table:
      break;
  }
  return table.columns[column.column].name;
}

void give_names(const ODTableDef& table, MifLayout& layout) {
  Names names(layout.charset);
  for (MifColumn& column : layout.columns) {
    const std::wstring_view heading = heading_of(column, table);
    const auto give = [&](std::wstring_view suffix) {
      column.names.push_back(names.make(heading, suffix));
      const std::wstring wanted = std::wstring(heading).append(suffix);
      if (column.names.back() != wanted) {
        layout.changed_names.push_back(wanted + L" -> " + column.names.back());
      }
    };
    if (column.type == ODType::Point) {
      for (const std::wstring_view suffix : {L"_X", L"_Y", L"_Z"})
        give(suffix);
    } else {
      give(L"");
    }
  }
}

}  // namespace

MifLayout mif_layout(ODStore& store, const DrawingHost& host, const ODTableDef& table,
                     const RecordRows& rows) {
  MifCharsetChoice charset;
  for (const std::size_t column : rows.columns)
    charset.see(table.columns[column].name);
  std::vector<MifColumn> columns = columns_of(table, rows);
  std::vector<Longest> longest(columns.size());
  MifRowReader rows_read(store, host, rows.table);
  for (const RecordKey& key : rows.rows) {
    const std::optional<MifRow> row = rows_read.at(key);
    if (!row) continue;
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const ODValueView value = (*row)[columns[i]];
      if (const auto* const text = std::get_if<std::wstring_view>(&value)) {
        charset.see(*text);
        longest[i].see(*text);
      }
    }
  }

  MifLayout layout{charset.best(), std::move(columns), {}};
  for (std::size_t i = 0; i < layout.columns.size(); ++i) {
    const std::size_t bytes = layout.charset.is_utf8() ? longest[i].utf8_bytes : longest[i].letters;
    layout.columns[i].width = std::clamp<std::size_t>(bytes, 1, most_mif_text);
  }
  give_names(table, layout);
  return layout;
}

}  // namespace korvel
