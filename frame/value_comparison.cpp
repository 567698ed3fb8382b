#include "frame/value_comparison.h"

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

bool ValueComparison::holds(std::wstring_view text) const {
  if (relation_ == Relation::Different) return !equal_ignoring_case(text, operand_);
  return is(text <=> std::wstring_view(operand_));
}

std::wstring ValueComparison::description() const {
  return std::wstring(words(relation_)) + L" \"" + operand_ + L'"';
}

}  // namespace korvel
