// Values as short text that reads back as the very same values.
#pragma once

#include <string>

#include "frame/od_value.h"

namespace korvel {

// Appends the number in its shortest form, with a full stop or an exponent to tell it from an
// integer: "3.0", "0.1", "1e-300", "-0.0".
void append_exact(double number, std::string& utf8);

// The same without an exponent between a millionth and 1e15, for programs that expect none.
void append_plain(double number, std::string& utf8);

// Appends an integer's digits, a real as above, a text as it is, a point as three such reals with
// commas between them (never "1,234,567", which programs take for one number), nothing for no
// value.
void append_exact(const ODValueView& value, std::string& utf8);

}  // namespace korvel
