#include "search/value_pattern.h"

#include <utility>

#include "frame/value_text.h"

namespace korvel {
namespace {

// In this order, because "<" is how "<>" begins.
constexpr std::pair<std::wstring_view, Relation> operators[] = {
    {L"<>", Relation::Different}, {L">", Relation::Greater}, {L"<", Relation::Smaller}};

std::wstring_view without_ends(std::wstring_view text, std::wstring_view dropped) {
  const std::size_t first = text.find_first_not_of(dropped);
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(dropped) - first + 1);
}

}  // namespace

ValuePattern::ValuePattern(std::wstring_view typed, bool extended)
    : text_(without_ends(typed, L"\t\n")), test_(test_of(text_, extended)) {}

ValuePattern::Test ValuePattern::test_of(std::wstring_view text, bool extended) {
  if (text == any_value) return Wildcard(text);
  if (!extended) return CaselessFinder(text);
  for (const auto& [sign, relation] : operators) {
    if (text.starts_with(sign)) {
      return ValueComparison(relation, without_ends(text.substr(sign.size()), L" \t\n"));
    }
  }
  if (text.find(L'*') != std::wstring_view::npos) return Wildcard(text);
  return ValueComparison(Relation::Equal, text);
}

bool ValuePattern::operator()(const ODValueView& value) {
  if (const auto* comparison = std::get_if<ValueComparison>(&test_)) {
    return comparison->holds(value);
  }
  const std::wstring_view text = text_of(value);
  if (const auto* wildcard = std::get_if<Wildcard>(&test_)) return wildcard->matches(text);
  return std::get<CaselessFinder>(test_).find(text) != std::wstring_view::npos;
}

std::wstring ValuePattern::description() const {
  if (needs_no_value()) return L"any value";
  if (const auto* comparison = std::get_if<ValueComparison>(&test_)) {
    return comparison->description();
  }
  const bool wild = std::holds_alternative<Wildcard>(test_);
  return (wild ? L"matches \"" : L"contains \"") + text_ + L'"';
}

std::wstring_view ValuePattern::text_of(const ODValueView& value) {
  if (const auto* text = std::get_if<std::wstring_view>(&value)) return *text;
  buffer_.clear();
  append_value_text(value, buffer_);
  return buffer_;
}

}  // namespace korvel
