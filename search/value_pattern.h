// Patterns of the value search: what is asked of a single value.
#pragma once

#include <string>
#include <string_view>
#include <variant>

#include "frame/case_mapping.h"
#include "frame/od_store.h"
#include "frame/value_comparison.h"
#include "search/wildcard.h"

namespace korvel {

// Made once from what the user typed, then asked about any number of values without allocating
// memory. Tabs and line feeds at both ends of the typed text are dropped; blanks belong to it.
//
// Not extended: the value's text contains the pattern, letter case aside. That is the only test;
// operators and "*" are ordinary characters in it.
//
// Extended, the first that fits:
//   <>rest   the value differs from the rest      (blanks around the rest do not count;
//   >rest    the value is greater than the rest    see ValueComparison for how a value
//   <rest    the value is smaller than the rest    compares)
//   a*b      the value's text matches the wildcard pattern (see Wildcard)
//   text     the value is equal to the text
//
// Numbers and points have the text of value_text for the first test and for wildcards; no value has
// an empty text.
class ValuePattern final : public ValueTest {
 public:
  ValuePattern(std::wstring_view typed, bool extended);

  bool passes(std::monostate none) override;
  bool passes(std::int32_t number) override;
  bool passes(double number) override;
  bool passes(std::wstring_view text) override;
  bool passes(const Point3& point) override;

  // Exactly "*", extended or not, asks for nothing: deliberately not even for a record.
  [[nodiscard]] bool needs_no_value() const { return text_ == any_value; }

  // What the value has to be: contains "road", is greater than "5", any value.
  [[nodiscard]] std::wstring description() const;

 private:
  using Test = std::variant<CaselessFinder, Wildcard, ValueComparison>;

  static constexpr std::wstring_view any_value = L"*";

  [[nodiscard]] static Test test_of(std::wstring_view text, bool extended);
  template <class Value>
  [[nodiscard]] bool passes_typed(const Value& value);
  template <class Value>
  [[nodiscard]] std::wstring_view text_of(const Value& value);

  std::wstring text_;
  Test test_;
  std::wstring buffer_;  // for the text of numbers
};

}  // namespace korvel
