// What a person types: blanks around it, quotes, and names in short.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "frame/od_value.h"

namespace korvel {

// Without the blanks and tabs at both ends.
[[nodiscard]] std::wstring_view trimmed(std::wstring_view text);

// The words between blanks and tabs.
[[nodiscard]] std::vector<std::wstring_view> words_of(std::wstring_view text);

// What stands in double quotes, a quote inside doubled; none when the text is not quoted as a
// whole.
[[nodiscard]] std::optional<std::wstring> unquoted(std::wstring_view text);

// The text as an item of a list: in quotes when it is empty, begins with a quote, holds a comma or
// has a blank at an end.
[[nodiscard]] std::wstring quoted_if_needed(std::wstring_view text);

struct TypedItem {
  std::wstring text;
  bool quoted = false;
};

// Items between commas; nothing but blanks is no item. None: a quote is not closed, or text
// follows it.
[[nodiscard]] std::optional<std::vector<TypedItem>> items_of(std::wstring_view text);

// Which of the names is meant: the one of exactly this text, else the one that differs in case
// alone, else the only one that begins with it. Of equal names the first.
struct NameMatch {
  std::optional<std::size_t> index;
  bool ambiguous = false;
};
[[nodiscard]] NameMatch match_name(std::span<const std::wstring_view> names,
                                   std::wstring_view typed);

// The text begins with the other, letter case aside.
[[nodiscard]] bool begins_with(std::wstring_view text, std::wstring_view beginning);

// The number that the whole text is, blanks included: none for any other text, and for a number
// beyond the range of its type. A leading plus will do.
[[nodiscard]] std::optional<std::int32_t> integer_of(std::wstring_view text);
[[nodiscard]] std::optional<double> real_of(std::wstring_view text);  // finite

// A point "x,y" or "x,y,z" (z is 0 without) of finite numbers without blanks, also "@dx,dy" or
// "@dx,dy,dz" from `last` if there is one; "@" is `last` itself.
[[nodiscard]] std::optional<Point3> point_of(std::wstring_view text,
                                             std::optional<Point3> last = std::nullopt);

// A handle in hexadecimal digits; not 0.
[[nodiscard]] std::optional<std::uint64_t> handle_from(std::wstring_view text);

}  // namespace korvel
