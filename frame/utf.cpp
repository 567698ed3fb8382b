// Decoding and encoding of UTF-8.
#include "frame/utf.h"

namespace korvel {
namespace {

struct Utf8Step {
  char32_t value = replacement_character;
  std::size_t length = 1;
  bool valid = false;
};

// What a lead byte promises. The second byte's range excludes overlong forms, surrogates and what
// lies beyond U+10FFFF; later bytes are plain continuation bytes.
struct Utf8Lead {
  std::size_t length = 0;  // 0: no lead byte
  unsigned second_min = 0x80;
  unsigned second_max = 0xBF;
};

constexpr Utf8Lead lead_of(unsigned byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return {2};
  if (byte == 0xE0) return {3, 0xA0, 0xBF};
  if (byte == 0xED) return {3, 0x80, 0x9F};
  if (byte >= 0xE1 && byte <= 0xEF) return {3};
  if (byte == 0xF0) return {4, 0x90, 0xBF};
  if (byte >= 0xF1 && byte <= 0xF3) return {4};
  if (byte == 0xF4) return {4, 0x80, 0x8F};
  return {};
}

constexpr unsigned byte_at(std::string_view bytes, std::size_t at) {
  return static_cast<unsigned char>(bytes[at]);
}

Utf8Step decode_step(std::string_view bytes, std::size_t at) {
  const unsigned first = byte_at(bytes, at);
  if (first < 0x80) return {first, 1, true};
  const Utf8Lead lead = lead_of(first);
  if (lead.length == 0) return {};
  char32_t value = first & (0x7FU >> lead.length);
  for (std::size_t i = 1; i < lead.length; ++i) {
    const unsigned min = i == 1 ? lead.second_min : 0x80;
    const unsigned max = i == 1 ? lead.second_max : 0xBF;
    const unsigned byte = at + i < bytes.size() ? byte_at(bytes, at + i) : 0;
    if (byte < min || byte > max) return {replacement_character, i, false};
    value = (value << 6) | (byte & 0x3F);
  }
  return {value, lead.length, true};
}

}  // namespace

void append_utf8(std::wstring_view text, std::string& out) {
  for (std::size_t at = 0; at < text.size();) {
    const auto [value, units] = code_point_at(text, at);
    at += units;
    const auto continuation = [value = value](int shift) {
      return static_cast<char>(0x80 | ((value >> shift) & 0x3F));
    };
    if (value < 0x80) {
      out.push_back(static_cast<char>(value));
    } else if (value < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (value >> 6)));
      out.push_back(continuation(0));
    } else if (value < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | (value >> 12)));
      out.push_back(continuation(6));
      out.push_back(continuation(0));
    } else {
      out.push_back(static_cast<char>(0xF0 | (value >> 18)));
      out.push_back(continuation(12));
      out.push_back(continuation(6));
      out.push_back(continuation(0));
    }
  }
}

std::string to_utf8(std::wstring_view text) {
  std::string out;
  out.reserve(text.size());
  append_utf8(text, out);
  return out;
}

std::wstring from_utf8(std::string_view bytes) {
  std::wstring out;
  out.reserve(bytes.size());
  for (std::size_t at = 0; at < bytes.size();) {
    const Utf8Step step = decode_step(bytes, at);
    append_code_point(step.value, out);
    at += step.length;
  }
  return out;
}

bool is_valid_utf8(std::string_view bytes) {
  for (std::size_t at = 0; at < bytes.size();) {
    const Utf8Step step = decode_step(bytes, at);
    if (!step.valid) return false;
    at += step.length;
  }
  return true;
}

}  // namespace korvel
