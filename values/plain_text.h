// What a person reads of the texts in a drawing: their codes carried out or taken out.
#pragma once

#include <string>
#include <string_view>

namespace korvel {

// Of a single-line text: %%d is the degree sign, %%p plus or minus, %%c the diameter sign, %% and
// three digits the character of that number, %%% a percent sign; %%u, %%o and %%k, which draw
// lines, are left out. Any other %% stays.
[[nodiscard]] std::wstring plain_text(std::wstring_view text);

// Of a multiline text, the same and: paragraphs and columns end in a blank, a non-breaking blank is
// a blank, what is stacked stands with "/" between its parts; fonts, heights, colours and other
// formats and the braces around them are left out. What is no code stays, backslash and all.
[[nodiscard]] std::wstring plain_multiline_text(std::wstring_view text);

}  // namespace korvel
