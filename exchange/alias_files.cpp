#include "exchange/alias_files.h"

#include <set>
#include <string_view>

#include "frame/tab_separated.h"

namespace korvel {
namespace {

constexpr wchar_t comment_mark = L'#';

using Fields = std::vector<std::wstring_view>;

void add(Aliases& aliases, std::wstring_view name, std::wstring_view alias) {
  aliases.try_emplace(std::wstring(name), alias);
}

// Each says whether the line has a number of fields that it may have.

bool add_table(const Fields& fields, AliasMaps& maps) {
  if (fields.size() != 2) return false;
  add(maps.tables, fields[0], fields[1]);
  return true;
}

bool add_field(const Fields& fields, AliasMaps& maps) {
  switch (fields.size()) {
    case 2:
      add(maps.fields, fields[0], fields[1]);
      return true;
    case 3:
      add(maps.table_fields[std::wstring(fields[0])], fields[1], fields[2]);
      return true;
    default:
      return false;
  }
}

bool add_value(const Fields& fields, AliasMaps& maps) {
  switch (fields.size()) {
    case 2:
      add(maps.values, fields[0], fields[1]);
      return true;
    case 3:
      add(maps.field_values[std::wstring(fields[0])], fields[1], fields[2]);
      return true;
    case 4:
      add(maps.table_field_values[std::wstring(fields[0])][std::wstring(fields[1])], fields[2],
          fields[3]);
      return true;
    default:
      return false;
  }
}

bool add_line(std::wstring_view line, AliasFile kind, AliasMaps& maps) {
  const Fields fields = fields_of(line, comment_mark, white_space);
  switch (kind) {
    case AliasFile::Tables:
      return add_table(fields, maps);
    case AliasFile::Fields:
      return add_field(fields, maps);
    case AliasFile::Values:
      return add_value(fields, maps);
  }
  return false;
}

Aliases inverted(const Aliases& aliases) {
  Aliases names;
  for (const auto& [name, alias] : aliases)
    names.try_emplace(alias, name);
  return names;
}

template <class Inner>
auto inverted(const std::map<std::wstring, Inner, std::less<>>& by_name) {
  std::map<std::wstring, Inner, std::less<>> names;
  for (const auto& [name, inner] : by_name)
    names.emplace(name, inverted(inner));
  return names;
}

}  // namespace

AliasLoad load_aliases(TextReading& reading, AliasFile kind, AliasMaps& maps) {
  AliasLoad load{0, {}, std::move(reading.error)};
  while (const std::optional<TextLine> line = reading.text.next_line()) {
    if (add_line(line->text, kind, maps)) {
      ++load.loaded;
    } else {
      load.bad_lines.emplace_back(line->text);
    }
  }
  return load;
}

AliasLoad load_alias_file(const std::filesystem::path& path, AliasFile kind, AliasMaps& maps) {
  TextReading reading = read_text_file(path, TextEncoding::Utf16);
  return load_aliases(reading, kind, maps);
}

std::vector<std::wstring> duplicate_aliases(const Aliases& aliases) {
  std::set<std::wstring_view> met;
  std::vector<std::wstring> duplicates;
  for (const auto& [name, alias] : aliases) {
    if (!met.insert(alias).second) duplicates.push_back(alias);
  }
  return duplicates;
}

AliasMaps inverted(const AliasMaps& maps) {
  return {inverted(maps.tables), inverted(maps.fields),       inverted(maps.table_fields),
          inverted(maps.values), inverted(maps.field_values), inverted(maps.table_field_values)};
}

}  // namespace korvel
