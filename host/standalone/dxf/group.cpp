#include "host/standalone/dxf/group.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "host/standalone/dxf/number_text.h"

namespace korvel::dxf {
namespace {

struct CodeRange {
  int first;
  int last;
  ValueKind kind;
};

// Codes between the ranges are text.
constexpr std::array<CodeRange, 21> code_ranges = {{
    {10, 59, ValueKind::Real},      {60, 79, ValueKind::Int16},     {90, 99, ValueKind::Int32},
    {110, 149, ValueKind::Real},    {160, 169, ValueKind::Int64},   {170, 179, ValueKind::Int16},
    {210, 239, ValueKind::Real},    {270, 289, ValueKind::Int16},   {290, 299, ValueKind::Boolean},
    {310, 319, ValueKind::Chunk},   {370, 389, ValueKind::Int16},   {400, 409, ValueKind::Int16},
    {420, 429, ValueKind::Int32},   {440, 459, ValueKind::Int32},   {460, 469, ValueKind::Real},
    {1004, 1004, ValueKind::Chunk}, {1010, 1059, ValueKind::Real},  {1060, 1070, ValueKind::Int16},
    {1071, 1071, ValueKind::Int32}, {1072, 1079, ValueKind::Int16}, {1080, 1089, ValueKind::Real},
}};

constexpr int highest_code = 1100;

constexpr auto kind_by_code = [] {
  std::array<ValueKind, highest_code> kinds{};
  for (const CodeRange& range : code_ranges) {
    for (int code = range.first; code <= range.last; ++code) {
      kinds[static_cast<std::size_t>(code)] = range.kind;
    }
  }
  return kinds;
}();

std::size_t fixed_size(ValueKind kind) {
  switch (kind) {
    case ValueKind::Boolean:
      return 1;
    case ValueKind::Int16:
      return 2;
    case ValueKind::Int32:
      return 4;
    case ValueKind::Int64:
    case ValueKind::Real:
      return 8;
    case ValueKind::Text:
    case ValueKind::Chunk:
      break;
  }
  return 0;
}

std::uint64_t little_endian(std::string_view bytes) {
  std::uint64_t number = 0;
  for (std::size_t i = bytes.size(); i-- > 0;) {
    number = number << 8 | static_cast<unsigned char>(bytes[i]);
  }
  return number;
}

std::int64_t signed_number(std::string_view bytes) {
  const auto unused_bits = static_cast<int>(64 - 8 * bytes.size());
  return static_cast<std::int64_t>(little_endian(bytes) << unused_bits) >> unused_bits;
}

}  // namespace

ValueKind value_kind(int code) {
  return code >= 0 && code < highest_code ? kind_by_code[static_cast<std::size_t>(code)]
                                          : ValueKind::Text;
}

bool Group::read_real(double& number) const {
  if (!binary) return dxf::read_real(value, number);
  if (value_kind(code) != ValueKind::Real) return false;
  const std::uint64_t bits = little_endian(value);
  double read = 0;
  std::memcpy(&read, &bits, sizeof read);
  if (!std::isfinite(read)) return false;
  number = read;
  return true;
}

bool Group::read_integer(std::int64_t& number) const {
  if (!binary) return dxf::read_integer(value, number);
  const std::size_t size = fixed_size(value_kind(code));
  if (size == 0 || value_kind(code) == ValueKind::Real) return false;
  number = size == 1 ? static_cast<unsigned char>(value[0]) : signed_number(value);
  return true;
}

bool Group::read_handle(std::uint64_t& handle) const { return dxf::read_handle(value, handle); }

double Group::real(double otherwise) const {
  double number = otherwise;
  (void)read_real(number);
  return number;
}

std::int64_t Group::integer(std::int64_t otherwise) const {
  std::int64_t number = otherwise;
  (void)read_integer(number);
  return number;
}

std::uint64_t Group::handle() const {
  std::uint64_t read = 0;
  (void)read_handle(read);
  return read;
}

bool GroupReader::read_any_code(const char*& p, const char* end, int& code) {
  constexpr const char* no_number = "a group code that is no number";
  constexpr int most_digits = 6;
  const auto skip_blanks = [&p, end] {
    while (p != end && (*p == ' ' || *p == '\t'))
      ++p;
  };
  skip_blanks();
  const bool negative = p != end && *p == '-';
  if (negative) ++p;
  const char* const digits = p;
  code = 0;
  while (p != end && *p >= '0' && *p <= '9' && p - digits < most_digits) {
    code = code * 10 + (*p++ - '0');
  }
  if (negative) code = -code;
  if (p == digits) return fail(no_number);
  skip_blanks();
  if (p != end && *p == '\r') ++p;
  if (p == end) return fail("the file ends after a group code, its value is missing");
  if (*p++ != '\n') return fail(no_number);
  return true;
}

bool GroupReader::next_binary(Group& group) {
  const std::size_t size = bytes_.size();
  if (position_ >= size) return false;
  constexpr const char* cut_short = "the file ends inside a group";

  std::size_t at = position_;
  const auto byte = [this](std::size_t i) { return static_cast<unsigned char>(bytes_[i]); };
  int code = 0;
  constexpr int escape = 255;
  if (framing_ == Framing::BinaryOneByte) code = byte(at++);
  if (framing_ == Framing::BinaryTwoByte || code == escape) {
    if (size - at < 2) return fail(cut_short);
    code = byte(at) | byte(at + 1) << 8;
    at += 2;
  }

  const ValueKind kind = value_kind(code);
  std::size_t length = fixed_size(kind);
  std::size_t terminator = 0;
  if (kind == ValueKind::Text) {
    const std::size_t nul = bytes_.find('\0', at);
    if (nul == std::string_view::npos) return fail(cut_short);
    length = nul - at;
    terminator = 1;
  } else if (kind == ValueKind::Chunk) {
    if (at == size) return fail(cut_short);
    length = byte(at++);
  }
  if (size - at < length + terminator) return fail(cut_short);

  group.code = code;
  group.value = bytes_.substr(at, length);
  group.begin = position_;
  group.end = at + length + terminator;
  group.binary = true;
  position_ = group.end;
  return true;
}

std::size_t line_of(std::string_view bytes, std::size_t offset) {
  const std::string_view before = bytes.substr(0, offset);
  return static_cast<std::size_t>(std::ranges::count(before, '\n')) + 1;
}

}  // namespace korvel::dxf
