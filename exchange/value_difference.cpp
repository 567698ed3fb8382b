#include "exchange/value_difference.h"

#include <algorithm>
#include <string_view>

#include "exchange/exact_text.h"
#include "exchange/findings.h"
#include "frame/utf.h"
#include "frame/value_text.h"

namespace korvel {
namespace {

std::wstring arrow(std::wstring_view before, std::wstring_view after) {
  return std::wstring(before).append(L" -> ").append(after);
}

bool is_second_half(wchar_t unit) {
  return static_cast<char32_t>(unit) >= 0xDC00 && static_cast<char32_t>(unit) <= 0xDFFF;
}

std::wstring difference_of_texts(std::wstring_view before, std::wstring_view after) {
  const std::wstring first = excerpt(before);
  const std::wstring second = excerpt(after);
  if (first != second) return arrow(first, second);
  constexpr std::size_t units_alike = 5;
  const auto parting =
      static_cast<std::size_t>(std::ranges::mismatch(before, after).in1 - before.begin());
  std::size_t from = parting - std::min(parting, units_alike);
  while (from > 0 && is_second_half(before[from]))
    --from;
  return arrow(L"..." + excerpt(before.substr(from)), L"..." + excerpt(after.substr(from)));
}

std::wstring exact(const ODValueView& value) {
  std::string utf8;
  append_exact(value, utf8);
  return from_utf8(utf8);
}

}  // namespace

std::wstring difference_text(const ODValueView& before, const ODValueView& after) {
  const auto* const old_text = std::get_if<std::wstring_view>(&before);
  const auto* const new_text = std::get_if<std::wstring_view>(&after);
  if (old_text != nullptr && new_text != nullptr) return difference_of_texts(*old_text, *new_text);
  const std::wstring first = value_text(before);
  const std::wstring second = value_text(after);
  return first == second ? arrow(exact(before), exact(after)) : arrow(first, second);
}

}  // namespace korvel
