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

template <class Text>
void append_decoded(std::string_view bytes, Text& out) {
  for (std::size_t at = 0; at < bytes.size();) {
    const Utf8Step step = decode_step(bytes, at);
    append_code_point(step.value, out);
    at += step.length;
  }
}

}  // namespace

void append_code_point(char32_t code_point, std::string& out) {
  const auto continuation = [code_point](int shift) {
    return static_cast<char>(0x80 | ((code_point >> shift) & 0x3F));
  };
  if (code_point < 0x80) {
    out.push_back(static_cast<char>(code_point));
  } else if (code_point < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (code_point >> 6)));
    out.push_back(continuation(0));
  } else if (code_point < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (code_point >> 12)));
    out.push_back(continuation(6));
    out.push_back(continuation(0));
  } else {
    out.push_back(static_cast<char>(0xF0 | (code_point >> 18)));
    out.push_back(continuation(12));
    out.push_back(continuation(6));
    out.push_back(continuation(0));
  }
}

void append_utf8(std::wstring_view text, std::string& out) {
  for (std::size_t at = 0; at < text.size();) {
    const CodePoint read = code_point_at(text, at);
    append_code_point(read.value, out);
    at += read.units;
  }
}

std::string to_utf8(std::wstring_view text) {
  std::string out;
  out.reserve(text.size());
  append_utf8(text, out);
  return out;
}

void append_from_utf8(std::string_view bytes, std::wstring& out) { append_decoded(bytes, out); }

void append_from_utf8(std::string_view bytes, std::string& out) { append_decoded(bytes, out); }

std::wstring from_utf8(std::string_view bytes) {
  std::wstring out;
  out.reserve(bytes.size());
  append_decoded(bytes, out);
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
