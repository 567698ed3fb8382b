// Conversions between UTF-8 and wide text, with 16-bit as well as 32-bit wchar_t.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace korvel {

// Stands for whatever is no character: ill-formed bytes, surrogates without their partner.
inline constexpr char32_t replacement_character = 0xFFFD;

struct CodePoint {
  char32_t value = 0;
  std::size_t units = 1;  // taken from the text
};

// The code point that begins at `at` < text.size(). A lone surrogate, and in 32-bit text any number
// that is no code point, is one unit that reads as the replacement character.
template <class Unit>
[[nodiscard]] constexpr CodePoint code_point_at(std::basic_string_view<Unit> text, std::size_t at) {
  static_assert(sizeof(Unit) == 2 || sizeof(Unit) == 4);
  const auto unit = static_cast<char32_t>(text[at]);
  const bool is_surrogate = unit >= 0xD800 && unit <= 0xDFFF;
  if (!is_surrogate) return {unit <= 0x10FFFF ? unit : replacement_character, 1};
  if constexpr (sizeof(Unit) == 2) {
    const auto next = at + 1 < text.size() ? static_cast<char32_t>(text[at + 1]) : char32_t{0};
    if (unit <= 0xDBFF && next >= 0xDC00 && next <= 0xDFFF) {
      return {0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00), 2};
    }
  }
  return {replacement_character, 1};
}

// Appends a code point (at most 0x10FFFF) as one unit or, in 16-bit text, as a surrogate pair.
template <class Unit>
constexpr void append_code_point(char32_t code_point, std::basic_string<Unit>& out) {
  static_assert(sizeof(Unit) == 2 || sizeof(Unit) == 4);
  if constexpr (sizeof(Unit) == 2) {
    if (code_point > 0xFFFF) {
      out.push_back(static_cast<Unit>(0xD800 + ((code_point - 0x10000) >> 10)));
      out.push_back(static_cast<Unit>(0xDC00 + ((code_point - 0x10000) & 0x3FF)));
      return;
    }
  }
  out.push_back(static_cast<Unit>(code_point));
}

// The same as UTF-8.
void append_code_point(char32_t code_point, std::string& out);

// Lone surrogates and numbers that are no code points become U+FFFD, so the result is well formed.
[[nodiscard]] std::string to_utf8(std::wstring_view text);
void append_utf8(std::wstring_view text, std::string& out);

// Each ill-formed sequence (stray or missing continuation bytes, overlong forms, surrogates, beyond
// U+10FFFF) becomes one U+FFFD and costs no byte of the next well-formed one.
[[nodiscard]] std::wstring from_utf8(std::string_view bytes);
void append_from_utf8(std::string_view bytes, std::wstring& out);
void append_from_utf8(std::string_view bytes, std::string& out);

[[nodiscard]] bool is_valid_utf8(std::string_view bytes);

}  // namespace korvel
