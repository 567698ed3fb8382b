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
  using Units = std::array<wchar_t, 3>;  // the cases of one character; some may be the same

  [[nodiscard]] static Units cases_of(char32_t lowered);
  [[nodiscard]] bool stands_at(const wchar_t* place) const;
  [[nodiscard]] bool may_stand_in(const wchar_t* places, std::size_t count) const;

  std::wstring lowered_;
  Units first_units_{};         // the wanted text begins with one of them
  Units last_units_{};          // and ends with one of these
  bool last_is_whole_ = false;  // otherwise half of a surrogate pair: no unit to look for
};

}  // namespace korvel
