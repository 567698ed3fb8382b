// What comes of adding one value to another.
#pragma once

#include <optional>
#include <string>

#include "frame/od_value.h"

namespace korvel {

// Gives sums of the type of the value that is added to:
//   Integer    and a number, truncated toward zero after adding
//   Real       and a number
//   Character  and a value of any type, whose text is appended
//   Point      and a point, coordinate by coordinate
class ValueSum {
 public:
  // Valid until the next call. None for other pairs of types, and for an integer that 32 bits
  // cannot hold.
  [[nodiscard]] std::optional<ODValueView> operator()(const ODValueView& to,
                                                      const ODValueView& from);

 private:
  std::wstring text_;
};

[[nodiscard]] bool can_add(ODType to, ODType from);

}  // namespace korvel
