#include "host/standalone/dxf/group_writer.h"

#include <cmath>
#include <cstring>

#include "host/standalone/dxf/number_text.h"

namespace korvel::dxf {
namespace {

constexpr std::size_t longest_piece = 250;

std::size_t integer_size(ValueKind kind) {
  switch (kind) {
    case ValueKind::Boolean:
      return 1;
    case ValueKind::Int16:
      return 2;
    case ValueKind::Int64:
      return 8;
    default:
      return 4;
  }
}

std::size_t integer_width(ValueKind kind) {
  switch (kind) {
    case ValueKind::Int32:
      return 9;
    case ValueKind::Int64:
      return 18;
    default:
      return 6;
  }
}

void append_justified(std::string& out, const std::string& digits, std::size_t width) {
  if (digits.size() < width) out.append(width - digits.size(), ' ');
  out += digits;
}

}  // namespace

void GroupWriter::bytes_of(std::uint64_t number, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) {
    out_ += static_cast<char>(number >> 8 * i & 0xFF);
  }
}

void GroupWriter::code(int code) {
  const auto number = static_cast<std::uint64_t>(code);
  switch (manner_.framing) {
    case Framing::Ascii:
      append_justified(out_, std::to_string(code), static_cast<std::size_t>(manner_.code_width));
      out_ += manner_.line_end;
      break;
    case Framing::BinaryTwoByte:
      bytes_of(number, 2);
      break;
    case Framing::BinaryOneByte:
      if (code < 255) {
        bytes_of(number, 1);
      } else {
        bytes_of(255, 1);
        bytes_of(number, 2);
      }
      break;
  }
}

void GroupWriter::raw(int group_code, std::string_view value) {
  code(group_code);
  out_ += value;
  if (manner_.framing == Framing::Ascii) {
    out_ += manner_.line_end;
  } else {
    out_ += '\0';
  }
}

void GroupWriter::text(int group_code, std::wstring_view value) {
  raw(group_code, codec_.encode(value));
}

void GroupWriter::long_text(int piece_code, int group_code, std::wstring_view value) {
  const std::vector<std::string> pieces = codec_.encode_pieces(value, longest_piece);
  for (std::size_t i = 0; i + 1 < pieces.size(); ++i)
    raw(piece_code, pieces[i]);
  raw(group_code, pieces.back());
}

void GroupWriter::real(int group_code, double value) {
  if (manner_.framing == Framing::Ascii) {
    std::string digits;
    append_real(digits, value);
    raw(group_code, digits);
    return;
  }
  code(group_code);
  if (!std::isfinite(value)) value = 0;  // as in ASCII, which has no such numbers
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  bytes_of(bits, sizeof bits);
}

void GroupWriter::integer(int group_code, std::int64_t value) {
  const ValueKind kind = value_kind(group_code);
  code(group_code);
  if (manner_.framing == Framing::Ascii) {
    append_justified(out_, std::to_string(value),
                     manner_.padded_integers ? integer_width(kind) : 0);
    out_ += manner_.line_end;
  } else {
    bytes_of(static_cast<std::uint64_t>(value), integer_size(kind));
  }
}

void GroupWriter::handle(int group_code, std::uint64_t value) {
  std::string digits;
  append_handle(digits, value);
  raw(group_code, digits);
}

void GroupWriter::point(int group_code, const Point3& value) {
  real(group_code, value.x);
  real(group_code + 10, value.y);
  real(group_code + 20, value.z);
}

}  // namespace korvel::dxf
