// Lower-casing and comparison of wide text without regard to letter case.
//
// Unicode's simple mapping, code point by code point: the same on every machine and in every
// locale, and never changing the length of a text, so that a position in the lower-cased copy is
// the same position in the original. Beyond it nothing is folded: German sharp s stays itself, the
// Turkish dotted capital I becomes a plain i.
#pragma once

#include <string>
#include <string_view>

namespace korvel {

[[nodiscard]] std::wstring lower(std::wstring_view text);

// The same into a buffer that is used again; `text` must not lie in `out`.
void lower_into(std::wstring_view text, std::wstring& out);

// lower(a) == lower(b), without making either.
[[nodiscard]] bool equal_ignoring_case(std::wstring_view a, std::wstring_view b);

}  // namespace korvel
