// Everything that a person reads is written through here, as UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace korvel {

// The text as it may be written: what a terminal obeys instead of showing it is shown as \x1B or
// \u009B. Such are the control characters, but for the tab and the line feed, and the marks that
// change the direction of writing.
[[nodiscard]] std::wstring visible(std::wstring_view text);

// To standard output, made visible.
void write_output(std::wstring_view text);
void flush_output();

// A sentence of UTF-8 about a file or about the end of the input, made visible, on standard error:
// "korvel: <sentence>".
void complain(std::string_view sentence);

}  // namespace korvel
