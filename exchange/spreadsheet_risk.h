// What spreadsheet programs make of cells when they open a table of text.
#pragma once

#include <cstddef>
#include <string_view>

namespace korvel {

// Why a cell would not come back from a spreadsheet program as it was.
enum class SpreadsheetRisk {
  None,
  Number,       // a text that would become a number and lose its form: 007, 1E5, 3.10, $5
  LongNumber,   // more than 15 digits, of which the others would become zeros
  SmallNumber,  // a real so close to zero that it would become zero
  Logical,      // the text true or false
  Date,         // a text that would become a date or a time
  Formula,      // a text that begins with = + - @ and would be computed
  LineBreak,    // a text with CR, which would become LF or get lost
  LongText,     // more than 32,767 characters, which would be cut off
};

inline constexpr std::size_t spreadsheet_risks = 9;

// By a program whose language has this decimal sign, a full stop or a comma.
[[nodiscard]] SpreadsheetRisk risk_of_text(std::wstring_view text, char decimal_sign);

// Of a real that is written with these digits.
[[nodiscard]] SpreadsheetRisk risk_of_real(double real, std::string_view digits);

}  // namespace korvel
