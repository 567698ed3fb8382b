// Taking characters off the ends of a text.
#pragma once

#include <string_view>

namespace korvel {

// The text without those of the dropped characters that stand at its ends.
[[nodiscard]] inline std::wstring_view without_ends(std::wstring_view text,
                                                    std::wstring_view dropped) {
  const std::size_t first = text.find_first_not_of(dropped);
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(dropped) - first + 1);
}

}  // namespace korvel
