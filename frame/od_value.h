// One value of object data.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace korvel {

// Type codes of the host. Any other number is unknown.
enum class ODType : int { Unknown = 0, Integer = 1, Real = 2, Character = 3, Point = 4 };

// "Integer", "Real", "Character", "Point", and "Unknown" for anything else.
[[nodiscard]] std::wstring_view type_name(ODType type);

struct Point3 {
  double x = 0;
  double y = 0;
  double z = 0;
  friend bool operator==(const Point3&, const Point3&) = default;
};

// The alternative's index is the type code, so `type_of` costs nothing and a value cannot
// contradict its type.
using ODValue = std::variant<std::monostate, std::int32_t, double, std::wstring, Point3>;

// The same read in place: text is a view into the store and dies with the next change of it.
using ODValueView = std::variant<std::monostate, std::int32_t, double, std::wstring_view, Point3>;

[[nodiscard]] inline ODType type_of(const ODValue& value) {
  return static_cast<ODType>(value.index());
}
[[nodiscard]] inline ODType type_of(const ODValueView& value) {
  return static_cast<ODType>(value.index());
}

[[nodiscard]] ODValueView view_of(const ODValue& value);
[[nodiscard]] ODValue copy_of(const ODValueView& value);

// The value a column has when nothing was ever set: 0, 0.0, empty text, the origin; no value at
// all for an unknown type.
[[nodiscard]] ODValue zero_value(ODType type);

}  // namespace korvel
