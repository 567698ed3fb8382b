#include "values/value_replacement.h"

#include <algorithm>

#include "frame/case_mapping.h"
#include "frame/trim.h"
#include "frame/value_text.h"

namespace korvel {
namespace {

ValueComparison comparison(Relation relation, std::wstring_view search, std::size_t sign_length) {
  search.remove_prefix(std::min(sign_length, search.size()));
  return {relation, without_ends(search, L" \t")};
}

bool holds(const ValueComparison& comparison, const ODValueView& value) {
  return std::visit(
      [&comparison](const auto& typed) {
        if constexpr (requires { comparison.holds(typed); }) return comparison.holds(typed);
        return false;
      },
      value);
}

}  // namespace

ValueReplacement::ValueReplacement(std::wstring_view search, std::wstring_view replacement)
    : test_(test_of(lower(search))), replacement_(replacement) {}

ValueReplacement::Test ValueReplacement::test_of(std::wstring_view search) {
  if (search == L"*") return AnyValue{};
  if (search.starts_with(L"<>")) return comparison(Relation::Different, search, 2);
  if (search.starts_with(L'>')) return comparison(Relation::Smaller, search, 1);
  if (search.starts_with(L'<')) return comparison(Relation::Smaller, search, 2);
  return TextPattern(search);
}

bool ValueReplacement::replace_in_text(const TextPattern& pattern, const ODValueView& value) {
  if (const auto* text = std::get_if<std::wstring_view>(&value)) {
    return replace_occurrences(pattern, *text, replacement_, replaced_);
  }
  text_.clear();
  append_value_text(value, text_);
  return replace_occurrences(pattern, text_, replacement_, replaced_);
}

std::optional<ODValueView> ValueReplacement::read(std::wstring_view text, ODType type) {
  if (type == ODType::Character) return text;
  number_ = zero_value(type);
  if (!store_text(text, number_)) return std::nullopt;
  return view_of(number_);
}

std::optional<ODValueView> ValueReplacement::operator()(const ODValueView& value) {
  if (const auto* pattern = std::get_if<TextPattern>(&test_)) {
    if (!replace_in_text(*pattern, value)) return std::nullopt;
    return read(replaced_, type_of(value));
  }
  const auto* compared = std::get_if<ValueComparison>(&test_);
  if (compared != nullptr && !holds(*compared, value)) return std::nullopt;
  return read(replacement_, type_of(value));
}

}  // namespace korvel
