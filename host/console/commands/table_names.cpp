// The rules for names.
#include "host/console/commands/table_names.h"

#include "frame/format.h"
#include "frame/od_table.h"
#include "frame/utf.h"

namespace korvel {
namespace {

// Letters beyond ASCII count as letters, whatever they are: no table of them is at hand, and the
// drawing can keep them.
bool is_letter_or_digit(wchar_t c) {
  return (c >= L'0' && c <= L'9') || (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') ||
         static_cast<unsigned long>(c) > 0xA0;
}

std::size_t character_count(std::wstring_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); at += code_point_at(text, at).units)
    ++count;
  return count;
}

std::optional<std::wstring> name_fault(std::wstring_view name, std::size_t longest) {
  if (name.empty()) return L"A name is required.";
  if (!is_letter_or_digit(name.front())) return L"A name begins with a letter or a digit.";
  for (const wchar_t c : name) {
    if (c == L' ' || c == L'\t' || c == L'\u00A0') return L"A name has no blanks.";
    if (c < L' ') return L"A name has no control characters.";
  }
  if (character_count(name) > longest) {
    return format_text(L"The name is longer than %i characters.", longest);
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::wstring> table_name_fault(std::wstring_view name) {
  if (auto fault = name_fault(name, longest_table_name)) return fault;
  if (!is_user_table(name)) return L"Names that begin so belong to tables of topologies.";
  return std::nullopt;
}

std::optional<std::wstring> column_name_fault(std::wstring_view name) {
  return name_fault(name, longest_column_name);
}

}  // namespace korvel
