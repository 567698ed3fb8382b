// Numbers and handles as the text of a DXF value, the same in every locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace korvel::dxf {

// Appends the shortest text that reads back as the same double, with at least one digit on each
// side of the point: "0.0", "-2.5", "1.0E+20". The exponent form is used below 1E-5 and from 1E+16
// on. A value that is not finite has no text in a DXF; it is written as 0.0.
void append_real(std::string& out, double value);

// Without the blanks, tabs and carriage returns around it.
[[nodiscard]] std::string_view trimmed(std::string_view text);

// The readers take the whole text, with blanks and tabs around it allowed. They return false and
// leave `value` alone if the text is anything else or the number is out of range.

// A leading plus is allowed; nan, inf and their like are not numbers.
[[nodiscard]] bool read_real(std::string_view text, double& value);
[[nodiscard]] bool read_integer(std::string_view text, std::int64_t& value);

// One to sixteen hexadecimal digits of either case, without sign or prefix.
[[nodiscard]] bool read_handle(std::string_view text, std::uint64_t& value);

// Appends upper-case hexadecimal digits without leading zeros; 0 is "0".
void append_handle(std::string& out, std::uint64_t handle);

}  // namespace korvel::dxf
