// Values of fields as texts of the attach dialog, and the values that its texts give.
#pragma once

#include <string>
#include <string_view>

#include "frame/od_value.h"

namespace korvel {

// What the dialog shows of a column's default: an integer's digits, a real with six decimals, a
// text as it is, a point as x,y,z with six decimals each, nothing for no value.
[[nodiscard]] std::wstring shown_default(const ODValue& value);

// Stores what the text says into the value, whose type decides how it is read. A number is what
// stands at the beginning: 12abc is 12, abc is 0. A point is three numbers with commas between
// them, or one number for all three coordinates. The value stays as it was when a point's text has
// any other number of pieces, when a number is not finite, and when it has no type.
void store_field_text(std::wstring_view text, ODValue& value);

}  // namespace korvel
