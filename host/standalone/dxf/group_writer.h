// Writes groups in the manner of the file they go into.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "frame/od_value.h"
#include "host/standalone/dxf/group.h"
#include "host/standalone/dxf/text_codec.h"

namespace korvel::dxf {

// What new groups of a file look like, so that they read like the ones around them.
struct Manner {
  Framing framing = Framing::Ascii;
  std::string_view line_end = "\n";
  int code_width = 3;           // codes are right-justified to so many columns; 0: no padding
  bool padded_integers = true;  // integers right-justified to 6, 9 or 18 columns
};

// Appends groups to a string. Group codes and the kinds of their values must agree, as the binary
// form has no other way to tell them.
class GroupWriter {
 public:
  GroupWriter(const Manner& manner, const TextCodec& codec, std::string& out)
      : manner_(manner), codec_(codec), out_(out) {}

  // Bytes that are already as the file wants them: names of types, markers, handles.
  void raw(int code, std::string_view value);
  void text(int code, std::wstring_view value);
  // Text of any length: pieces of at most 250 characters under `piece_code`, the last under `code`.
  void long_text(int piece_code, int code, std::wstring_view value);
  void real(int code, double value);
  void integer(int code, std::int64_t value);
  void handle(int code, std::uint64_t value);
  // Three groups: code, code + 10, code + 20.
  void point(int code, const Point3& value);

 private:
  void code(int code);
  void bytes_of(std::uint64_t number, std::size_t size);

  const Manner& manner_;
  const TextCodec& codec_;
  std::string& out_;
};

}  // namespace korvel::dxf
