// Comparison of values with an operand that was typed as text.
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

#include "frame/od_value.h"

namespace korvel {

enum class Relation { Equal, Different, Greater, Smaller };

// The value's type decides how the operand is read: by read_integer and read_real (text that is no
// number is 0; reals are compared without any tolerance), or as the text that it is. Texts compare
// by code unit, letter case included; only whether they differ is, deliberately, asked without it.
// A point and no value stand in no relation to anything.
class ValueComparison {
 public:
  ValueComparison(Relation relation, std::wstring_view operand);

  // Whether the value is ... the operand.
  [[nodiscard]] bool holds(std::int32_t number) const { return is(number <=> integer_); }
  [[nodiscard]] bool holds(double number) const { return is(number <=> real_); }
  [[nodiscard]] bool holds(std::wstring_view text) const;

  [[nodiscard]] std::wstring description() const;

 private:
  [[nodiscard]] bool is(std::partial_ordering order) const;

  Relation relation_;
  std::wstring operand_;
  std::int32_t integer_;
  double real_;
};

inline bool ValueComparison::is(std::partial_ordering order) const {
  switch (relation_) {
    case Relation::Equal:
      return std::is_eq(order);
    case Relation::Different:
      return std::is_neq(order);
    case Relation::Greater:
      return std::is_gt(order);
    case Relation::Smaller:
      return std::is_lt(order);
  }
  return false;
}

}  // namespace korvel
