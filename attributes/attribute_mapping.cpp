#include "attributes/attribute_mapping.h"

#include <optional>
#include <string_view>

#include "frame/format.h"
#include "frame/tab_separated.h"

namespace korvel {
namespace {

constexpr wchar_t comment_mark = L'?';
constexpr std::size_t fields_in_mapping = 4;

}  // namespace

MappingReading read_attribute_mapping(TextReader lines, const ODStore& store) {
  MappingReading reading;
  while (const std::optional<TextLine> line = lines.next_line()) {
    const std::wstring_view said = without_comment(line->text, comment_mark);
    if (said.empty()) continue;
    const std::vector<std::wstring_view> fields = fields_of(said, comment_mark, only_blanks);
    if (fields.size() != fields_in_mapping) {
      reading.messages += format_text(L"Error: invalid mapping '%s'\n", said);
      reading.failed = true;
      continue;
    }
    const std::wstring block(fields[0]);
    const MappedAttribute mapped{std::wstring(fields[1]), std::wstring(fields[2]),
                                 std::wstring(fields[3])};
    const std::optional<ODTableDef> table = store.table(mapped.table);
    if (!table) {
      reading.messages += format_text(L"Error: table %s not found\n", mapped.table);
    } else if (!table->column(mapped.column)) {
      reading.messages +=
          format_text(L"Error: column %s not found in table %s\n", mapped.column, mapped.table);
    } else {
      reading.mapping[block].push_back(mapped);
      ++reading.count;
    }
  }
  return reading;
}

}  // namespace korvel
