#include "search/value_comparison.h"

#include "frame/case_mapping.h"
#include "frame/value_text.h"

namespace korvel {
namespace {

std::wstring_view words(Relation relation) {
  switch (relation) {
    case Relation::Equal:
      return L"is";
    case Relation::Different:
      return L"differs from";
    case Relation::Greater:
      return L"is greater than";
    case Relation::Smaller:
      return L"is smaller than";
  }
  return {};
}

}  // namespace

ValueComparison::ValueComparison(Relation relation, std::wstring_view operand)
    : relation_(relation),
      operand_(operand),
      integer_(read_integer(operand)),
      real_(read_real(operand)) {}

bool ValueComparison::holds(const ODValueView& value) const {
  if (const auto* integer = std::get_if<std::int32_t>(&value)) return holds(*integer <=> integer_);
  if (const auto* real = std::get_if<double>(&value)) return holds(*real <=> real_);
  if (const auto* text = std::get_if<std::wstring_view>(&value)) return holds_for_text(*text);
  return false;
}

std::wstring ValueComparison::description() const {
  return std::wstring(words(relation_)) + L" \"" + operand_ + L'"';
}

bool ValueComparison::holds(std::partial_ordering order) const {
  switch (relation_) {
    case Relation::Equal:
      return order == 0;
    case Relation::Different:
      return order != 0;
    case Relation::Greater:
      return order > 0;
    case Relation::Smaller:
      return order < 0;
  }
  return false;
}

bool ValueComparison::holds_for_text(std::wstring_view text) const {
  if (relation_ == Relation::Different) return !equal_ignoring_case(text, operand_);
  return holds(text <=> std::wstring_view(operand_));
}

}  // namespace korvel
