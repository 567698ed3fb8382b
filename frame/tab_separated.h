// Lines whose fields are parted by tabs and whose comments begin with a mark.
#pragma once

#include <string_view>
#include <vector>

namespace korvel {

// What fields are trimmed of.
inline constexpr std::wstring_view only_blanks = L" ";
inline constexpr std::wstring_view white_space = L" \t\n\v\f\r";

// The line up to the first mark, without the blanks, tabs, CRs and LFs that then end it.
[[nodiscard]] std::wstring_view without_comment(std::wstring_view line, wchar_t comment_mark);

// The fields of the line without its comment, each without the `trimmed` characters at its ends. A
// run of tabs parts two fields like one tab does, and tabs at the ends of the line make none. A
// field of nothing but trimmed characters counts: it is there and empty. The views are into `line`.
[[nodiscard]] std::vector<std::wstring_view> fields_of(std::wstring_view line, wchar_t comment_mark,
                                                       std::wstring_view trimmed);

}  // namespace korvel
