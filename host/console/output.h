// Everything that a person reads goes to standard output through here, as UTF-8.
#pragma once

#include <string_view>

namespace korvel {

void write_output(std::wstring_view text);
void flush_output();

// A sentence about a file or about the end of the input, on standard error: "korvel: <sentence>".
void complain(std::string_view sentence);

}  // namespace korvel
