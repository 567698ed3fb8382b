#include "frame/trace_line.h"

#include <array>

#include "frame/text_file.h"
#include "frame/value_text.h"

namespace korvel {
namespace {

constexpr std::size_t longest_text = 60;

}  // namespace

void TraceLine::append(std::wstring_view text) {
  line_ += L'"';
  for (const wchar_t unit : text.substr(0, longest_text))
    append_unit(unit);
  line_ += L'"';
  if (text.size() > longest_text) append_total(text.size());
}

void TraceLine::append(const std::filesystem::path& path) { append(path_text(path)); }

void TraceLine::append(EntityId id) {
  line_ += L'#';
  append_integer(id.value, line_);
}

void TraceLine::append(const ODValueView& value) {
  if (const auto* const text = std::get_if<std::wstring_view>(&value)) return append(*text);
  append_value_text(value, line_);
}

void TraceLine::append(const Point3& point) { append_value_text(point, line_); }

void TraceLine::append(const ODRecord& record) {
  append(record.table);
  append(record.values);
}

void TraceLine::append(const ODTableDef& definition) {
  append(definition.name);
  append(definition.columns);
}

void TraceLine::append(const BlockAttribute& attribute) {
  append(attribute.tag);
  append(attribute.text);
}

void TraceLine::append(const AttributeText& text) {
  append(text.attribute);
  append(text.text);
}

void TraceLine::append(const Extents& extents) {
  append(extents.min);
  line_ += L" to ";
  append(extents.max);
}

void TraceLine::append(TableChange change) {
  static constexpr std::array<std::wstring_view, 4> names = {L"Done", L"Failed", L"TableExists",
                                                             L"TableMissing"};
  line_ += names[static_cast<std::size_t>(change)];
}

void TraceLine::append(ColumnChange change) {
  static constexpr std::array<std::wstring_view, 5> names = {L"Done", L"Failed", L"DuplicateName",
                                                             L"ColumnMissing", L"TableMissing"};
  line_ += names[static_cast<std::size_t>(change)];
}

void TraceLine::append_unit(wchar_t unit) {
  if (static_cast<char32_t>(unit) >= 0x20) {
    line_ += unit;
    return;
  }
  constexpr std::wstring_view digits = L"0123456789ABCDEF";
  line_ += L"\\x";
  line_ += digits[static_cast<std::size_t>(unit) / 16];
  line_ += digits[static_cast<std::size_t>(unit) % 16];
}

void TraceLine::append_total(std::size_t total) {
  line_ += L"... (";
  append_integer(total, line_);
  line_ += L')';
}

}  // namespace korvel
