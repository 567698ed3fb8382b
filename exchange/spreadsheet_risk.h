// What spreadsheet programs make of cells when they open a table of text.
#pragma once

#include <cstddef>
#include <string_view>

namespace korvel {

// Why a cell would not come back from a spreadsheet program as it was.
enum class SpreadsheetRisk {
  None,
  Number,      // a text that would become a number and lose its form: 007, 1E5, 3.10
  LongNumber,  // more than 15 digits, of which the others would become zeros
  Date,        // a text that would become a date or a time
  Formula,     // a text that begins with = + - @ and would be computed
  LongText,    // more than 32,767 characters, which would be cut off
};

inline constexpr std::size_t spreadsheet_risks = 6;

[[nodiscard]] SpreadsheetRisk risk_of_text(std::wstring_view text);

// Of a real as it is written.
[[nodiscard]] SpreadsheetRisk risk_of_number(std::string_view digits);

}  // namespace korvel
