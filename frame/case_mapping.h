// Lower-casing, comparison and search of wide text without regard to letter case.
//
// Unicode's simple mapping, code point by code point: the same on every machine and in every
// locale, and never changing the length of a text, so that a position in the lower-cased copy is
// the same position in the original. Beyond it nothing is folded: German sharp s stays itself, the
// Turkish dotted capital I becomes a plain i.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace korvel {

[[nodiscard]] std::wstring lower(std::wstring_view text);

// The same into a buffer that is used again; `text` must not lie in `out`.
void lower_into(std::wstring_view text, std::wstring& out);

// lower(a) == lower(b), without making either.
[[nodiscard]] bool equal_ignoring_case(std::wstring_view a, std::wstring_view b);

// Looks for one text in many others, letter case aside, without copying any of them.
class CaselessFinder {
 public:
  explicit CaselessFinder(std::wstring_view wanted);

  // lower(text).find(lower(wanted), from)
  [[nodiscard]] std::size_t find(std::wstring_view text, std::size_t from = 0) const;

  [[nodiscard]] const std::wstring& lowered() const { return lowered_; }

 private:
  std::wstring lowered_;
  std::array<wchar_t, 3> first_units_{};  // with which the text may begin; some may be the same
};

}  // namespace korvel
