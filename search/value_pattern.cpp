#include "search/value_pattern.h"

#include <array>
#include <type_traits>
#include <utility>

#include "frame/trim.h"
#include "frame/value_text.h"

namespace korvel {
namespace {

// In this order, because "<" is how "<>" begins.
constexpr auto operators = std::to_array<std::pair<std::wstring_view, Relation>>(
    {{L"<>", Relation::Different}, {L">", Relation::Greater}, {L"<", Relation::Smaller}});

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

template <class Value>
std::wstring_view ValuePattern::text_of(const Value& value) {
  if constexpr (std::is_same_v<Value, std::wstring_view>) {
    return value;
  } else {
    buffer_.clear();
    append_value_text(value, buffer_);
    return buffer_;
  }
}

template <class Value>
bool ValuePattern::passes_typed(const Value& value) {
  if (const auto* comparison = std::get_if<ValueComparison>(&test_)) {
    if constexpr (requires { comparison->holds(value); }) return comparison->holds(value);
    return false;
  }
  const std::wstring_view text = text_of(value);
  if (const auto* wildcard = std::get_if<Wildcard>(&test_)) return wildcard->matches(text);
  return std::get<CaselessFinder>(test_).find(text) != std::wstring_view::npos;
}

bool ValuePattern::passes(std::monostate none) { return passes_typed(none); }
bool ValuePattern::passes(std::int32_t number) { return passes_typed(number); }
bool ValuePattern::passes(double number) { return passes_typed(number); }
bool ValuePattern::passes(std::wstring_view text) { return passes_typed(text); }
bool ValuePattern::passes(const Point3& point) { return passes_typed(point); }

std::wstring ValuePattern::description() const {
  if (needs_no_value()) return L"any value";
  if (const auto* comparison = std::get_if<ValueComparison>(&test_)) {
    return comparison->description();
  }
  const bool wild = std::holds_alternative<Wildcard>(test_);
  return (wild ? L"matches \"" : L"contains \"") + text_ + L'"';
}

}  // namespace korvel
