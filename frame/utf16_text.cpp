#include "frame/utf16_text.h"

#include <algorithm>

#include "frame/utf.h"

namespace korvel {
namespace {

char16_t* put(char32_t code_point, char16_t* out) {
  if (code_point > 0xFFFF) {
    *out++ = static_cast<char16_t>(0xD800 + ((code_point - 0x10000) >> 10));
    *out++ = static_cast<char16_t>(0xDC00 + ((code_point - 0x10000) & 0x3FF));
    return out;
  }
  *out++ = static_cast<char16_t>(code_point);
  return out;
}

// Writes the units of a text in which none needs more than being copied, and says whether it is
// such a text. A loop without a way out, so that it works on several units at once.
bool copy_plain(std::wstring_view text, char16_t* out) {
  bool plain = true;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto unit = static_cast<char32_t>(text[i]);
    out[i] = static_cast<char16_t>(unit);
    plain &= (unit < 0xD800) & (unit != U'"') & (unit != U'\n');
  }
  return plain;
}

}  // namespace

void Utf16Text::append_quoted(std::wstring_view text) {
  append_unit(u'"');
  append(text, Quotes::Doubled);
  append_unit(u'"');
}

void Utf16Text::append_ascii(std::string_view text) {
  std::ranges::copy(text, room(text.size()));
  size_ += text.size();
}

void Utf16Text::append_units(std::u16string_view units) {
  std::ranges::copy(units, room(units.size()));
  size_ += units.size();
}

void Utf16Text::append(std::wstring_view text, Quotes quotes) {
  char16_t* out = room(2 * text.size());  // none becomes more than two
  if (copy_plain(text, out)) {
    size_ += text.size();
    return;
  }
  for (std::size_t at = 0; at < text.size();) {
    const wchar_t unit = text[at];
    if (unit == L'\n') *out++ = u'\r';
    if (unit == L'"' && quotes == Quotes::Doubled) *out++ = u'"';
    const CodePoint read = code_point_at(text, at);
    out = put(read.value, out);
    at += read.units;
  }
  size_ = static_cast<std::size_t>(out - units_.data());
}

}  // namespace korvel
