// Values of object data as text, and text read back as values.
//
// Numbers have a full stop whatever the locale. Blanks are the blank, tab, line feed, vertical tab,
// form feed and carriage return.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "frame/od_value.h"

namespace korvel {

// What a person sees of a value: an integer's digits; a real with up to twelve decimals and at
// least one, so that 3.0 is told from an integer; a text as it is; a point as x,y,z with six
// decimals each; nothing for no value.
[[nodiscard]] std::wstring value_text(const ODValueView& value);
void append_value_text(const ODValueView& value, std::wstring& out);

// The text of a real, for those who do not write wide text. It stands in the room given and needs
// a fraction of the time of fixed_text where the number is small.
using RealRoom = std::array<char, 328>;
[[nodiscard]] std::string_view real_text(double number, RealRoom& room);

// Stores what the text says into the value, whose type decides how it is read. False, with the
// value as it was, for a point that is not three numbers with commas between them (what follows
// the third is ignored, so are blanks before a number) and for no value. Numbers never fail:
// 12abc is 12, abc is 0.
[[nodiscard]] bool store_text(std::wstring_view text, ODValue& value);

// Takes the zeros off the end of a number's text but leaves one digit after its full stop. A text
// without a full stop is left as it is.
[[nodiscard]] std::wstring shorten_real(std::wstring text);

// The integer at the beginning of the text: blanks, a sign, digits; 0 if there is none. A number
// too large or too small gives the largest or smallest 32-bit integer.
[[nodiscard]] std::int32_t read_integer(std::wstring_view text);

// The number at the beginning of the text: blanks, a sign, digits with a full stop, an exponent;
// 0.0 if there is none ("inf", "nan" and hexadecimal digits are no numbers). A number too large
// gives plus or minus infinity, one too close to zero gives zero.
[[nodiscard]] double read_real(std::wstring_view text);

// The finite number that the text is, blanks at its ends aside; none when it is anything else.
[[nodiscard]] std::optional<double> whole_real(std::wstring_view text);

// The value of this type that the text says in full, blanks at its ends aside (a text is taken as
// it stands): an integer of 32 bits, a finite number, three finite numbers with commas between
// them. None when it says anything else, and for an unknown type.
[[nodiscard]] std::optional<ODValue> whole_value(std::wstring_view text, ODType type);

inline constexpr int max_decimals = 99;

// The number in fixed notation, correctly rounded, with 0 to max_decimals decimals (what lies
// outside is taken for the nearest of the two). Without decimals there is no full stop. Not a
// number is "nan", the infinities are "inf" and "-inf".
[[nodiscard]] std::wstring fixed_text(double number, int decimals);
void append_fixed_text(double number, int decimals, std::wstring& out);

}  // namespace korvel
