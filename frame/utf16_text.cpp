#include "frame/utf16_text.h"

#include <algorithm>
#include <bit>

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

// Writes units of which none needs more than being copied, and says whether they are such. Without
// a way out of the loop, so that it works on several units at once.
inline bool copy_plain(const wchar_t* units, std::size_t count, char16_t* out) {
  bool plain = true;
  for (std::size_t i = 0; i < count; ++i) {
    const auto unit = static_cast<char32_t>(units[i]);
    out[i] = static_cast<char16_t>(unit);
    plain &= (unit < 0xD800) & (unit != U'"') & (unit != U'\n');
  }
  return plain;
}

// The last eight units may overlap those before.
bool copy_plain(std::wstring_view text, char16_t* out) {
  constexpr std::size_t at_once = 8;
  if (text.size() < at_once) return copy_plain(text.data(), text.size(), out);
  const std::size_t last = text.size() - at_once;
  bool plain = copy_plain(text.data() + last, at_once, out + last);
  for (std::size_t at = 0; at < last; at += at_once)
    plain &= copy_plain(text.data() + at, at_once, out + at);
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

std::string_view little_endian_bytes(std::u16string_view units, std::string& room) {
  if constexpr (std::endian::native == std::endian::little) {
    return {reinterpret_cast<const char*>(units.data()), 2 * units.size()};  // NOLINT
  } else {
    room.clear();
    for (const char16_t unit : units) {
      room.push_back(static_cast<char>(unit & 0xFF));
      room.push_back(static_cast<char>(unit >> 8));
    }
    return room;
  }
}

}  // namespace korvel
