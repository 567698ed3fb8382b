// Search and replacement as typed for KORVEL_REPLACE: what becomes of a single value.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "frame/od_value.h"
#include "frame/value_comparison.h"
#include "values/text_replacement.h"

namespace korvel {

// Made once, then asked about any number of values without allocating memory. The first that fits
// the search text, which is taken in lower case:
//   *        any value
//   <>rest   a value that differs from the rest   (blanks and tabs around the rest do not count;
//   >rest    a value smaller than the rest         see ValueComparison for how a value compares)
//   <?rest   a value smaller than the rest
//   text     every occurrence of the pattern in the value's text, see TextPattern
// The first four replace the whole value, the last one parts of its text.
//
// Deliberately ">10" is about the values below 10, and whatever character follows "<" is skipped:
// "< 10" says the same as ">10", but "<10" compares with 0.
class ValueReplacement {
 public:
  ValueReplacement(std::wstring_view search, std::wstring_view replacement);

  // What the value becomes, of the same type and valid until the next call. None when it does not
  // fit, or when the new text says nothing that the type can hold: a point needs three numbers.
  [[nodiscard]] std::optional<ODValueView> operator()(const ODValueView& value);

 private:
  struct AnyValue {};
  using Test = std::variant<AnyValue, ValueComparison, TextPattern>;

  [[nodiscard]] static Test test_of(std::wstring_view search);
  [[nodiscard]] bool replace_in_text(const TextPattern& pattern, const ODValueView& value);
  [[nodiscard]] std::optional<ODValueView> read(std::wstring_view text, ODType type);

  Test test_;
  std::wstring replacement_;
  // Buffers.
  std::wstring text_;
  std::wstring replaced_;
  ODValue number_;
};

}  // namespace korvel
