// Reads the groups (code and value) of a DXF file, ASCII or binary, in place.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace korvel::dxf {

// How groups are framed. Binary files carry the group code in one byte up to R12 (255 announces a
// 16-bit code) and in two bytes, little-endian, from R13 on.
enum class Framing { Ascii, BinaryOneByte, BinaryTwoByte };

inline constexpr std::string_view binary_sentinel{"AutoCAD Binary DXF\r\n\x1a\0", 22};

enum class ValueKind : std::uint8_t { Text, Real, Int16, Int32, Int64, Boolean, Chunk };

// The type of a group's value by its code; codes that no format description knows are text.
[[nodiscard]] ValueKind value_kind(int code);

// A group in the file. Views and offsets refer to the bytes given to the reader.
struct Group {
  int code = 0;
  // ASCII: the value line without its line end. Binary: the value's bytes without the string's NUL
  // and without a chunk's length byte.
  std::string_view value;
  std::size_t begin = 0;  // offset of the group's first byte
  std::size_t end = 0;    // offset behind its last byte
  bool binary = false;

  // The value as a number; false when it is none (blank, not finite, out of range, of another
  // kind). The original bytes are never lost by that.
  [[nodiscard]] bool read_real(double& number) const;
  [[nodiscard]] bool read_integer(std::int64_t& number) const;
  // Handles are text in both forms.
  [[nodiscard]] bool read_handle(std::uint64_t& handle) const;

  // The same with a value for what is unreadable.
  [[nodiscard]] double real(double otherwise = 0) const;
  [[nodiscard]] std::int64_t integer(std::int64_t otherwise = 0) const;
  [[nodiscard]] std::uint64_t handle() const;
};

class GroupReader {
 public:
  GroupReader() = default;
  GroupReader(std::string_view bytes, Framing framing, std::size_t begin = 0)
      : bytes_(bytes), framing_(framing), position_(begin) {}

  // Reads the next group. False at the end of the bytes and at a fault; fault() tells which.
  bool next(Group& group) {
    return framing_ == Framing::Ascii ? next_ascii(group) : next_binary(group);
  }

  // What is wrong at position(), for the user; null while nothing is.
  [[nodiscard]] const char* fault() const { return fault_; }
  [[nodiscard]] std::size_t position() const { return position_; }

 private:
  bool next_ascii(Group& group);
  bool next_binary(Group& group);
  // Both read a code line and move behind it. The first knows only what nearly every program
  // writes, three columns and a line end, and answers false for anything else.
  static bool read_padded_code(const char*& p, const char* end, int& code);
  bool read_any_code(const char*& p, const char* end, int& code);
  bool fail(const char* reason) {
    fault_ = reason;
    return false;
  }

  std::string_view bytes_;
  Framing framing_ = Framing::Ascii;
  std::size_t position_ = 0;
  const char* fault_ = nullptr;
};

inline bool GroupReader::read_padded_code(const char*& p, const char* end, int& code) {
  if (end - p < 5) return false;
  const bool crlf = p[3] == '\r' && p[4] == '\n';
  if (p[3] != '\n' && !crlf) return false;
  const auto digit = [](char c) { return static_cast<unsigned>(c - '0'); };
  const unsigned hundreds = p[0] == ' ' ? 0 : digit(p[0]);
  const unsigned tens = p[1] == ' ' && p[0] == ' ' ? 0 : digit(p[1]);
  const unsigned ones = digit(p[2]);
  if (hundreds > 9 || tens > 9 || ones > 9) return false;
  code = static_cast<int>(100 * hundreds + 10 * tens + ones);
  p += crlf ? 5 : 4;
  return true;
}

// Inline: opening a drawing of a million entities passes here fifty million times.
inline bool GroupReader::next_ascii(Group& group) {
  const char* const base = bytes_.data();
  const char* const end = base + bytes_.size();
  const char* p = base + position_;
  if (p == end) return false;

  int code = 0;
  if (!read_padded_code(p, end, code) && !read_any_code(p, end, code)) return false;

  const auto* line_end =
      static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p)));
  const char* value_end = line_end != nullptr ? line_end : end;
  const char* const after = line_end != nullptr ? line_end + 1 : end;
  if (value_end != p && value_end[-1] == '\r') --value_end;

  group.code = code;
  group.value = {p, static_cast<std::size_t>(value_end - p)};
  group.begin = position_;
  group.end = static_cast<std::size_t>(after - base);
  group.binary = false;
  position_ = group.end;
  return true;
}

// Line of an ASCII file, from 1, in which the offset lies.
[[nodiscard]] std::size_t line_of(std::string_view bytes, std::size_t offset);

}  // namespace korvel::dxf
