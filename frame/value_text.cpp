// Writing and reading of numbers and points as text.
#include "frame/value_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <system_error>

#include "frame/format.h"

namespace korvel {
namespace {

constexpr int real_decimals = 12;
constexpr int point_decimals = 6;

template <class Unit>
std::size_t shortened_size(std::basic_string_view<Unit> number) {
  const std::size_t stop = number.find(Unit{'.'});
  if (stop == number.npos) return number.size();
  const std::size_t shortest = std::min(stop + 2, number.size());
  const std::size_t last_digit = number.find_last_not_of(Unit{'0'});
  return std::max(shortest, last_digit + 1);
}

// A number of at least 0 cut at its full stop; `decimals` are twelve of them, correctly rounded.
struct SplitReal {
  std::uint64_t whole = 0;
  std::uint64_t decimals = 0;
};

// Nothing is lost on the way: a fraction of at most 54 bits times a thousand fits 64. Smaller
// numbers have fractions of more bits, larger ones none at all; there is no answer for either.
std::optional<SplitReal> split_real(double magnitude) {
  if (magnitude == 0) return SplitReal{};
  constexpr int mantissa_bits = 52;
  constexpr std::uint64_t leading_bit = std::uint64_t{1} << mantissa_bits;
  const auto bits = std::bit_cast<std::uint64_t>(magnitude);
  const int exponent = static_cast<int>(bits >> mantissa_bits) - 1023;
  if (exponent < -2 || exponent > mantissa_bits) return std::nullopt;
  const int places = mantissa_bits - exponent;  // of the binary fraction
  const std::uint64_t mantissa = (bits & (leading_bit - 1)) | leading_bit;
  const std::uint64_t one = std::uint64_t{1} << places;
  SplitReal split{mantissa >> places, 0};
  std::uint64_t fraction = mantissa & (one - 1);
  for (int thousands = 0; thousands < real_decimals / 3; ++thousands) {
    fraction *= 1000;
    split.decimals = split.decimals * 1000 + (fraction >> places);
    fraction &= one - 1;
  }
  const bool is_odd = split.decimals % 2 != 0;
  const bool rounds_up = 2 * fraction > one || (2 * fraction == one && is_odd);
  if (rounds_up && ++split.decimals == 1'000'000'000'000) {
    split.decimals = 0;
    ++split.whole;
  }
  return split;
}

// Writes a full stop and the decimals up to the last that is not 0, but at least one.
char* write_decimals(std::uint64_t decimals, char* out) {
  int digits = real_decimals;
  for (; digits > 3 && decimals % 1000 == 0; digits -= 3)
    decimals /= 1000;
  for (; digits > 1 && decimals % 10 == 0; --digits)
    decimals /= 10;
  *out++ = '.';
  for (char* digit = out + digits; digit != out; decimals /= 10)
    *--digit = static_cast<char>('0' + decimals % 10);
  return out + digits;
}

std::string_view write_fixed(double number, int decimals, char* room, std::size_t size) {
  if (std::isnan(number)) return "nan";
  const char* const end =
      std::to_chars(room, room + size, number, std::chars_format::fixed, decimals).ptr;
  return {room, static_cast<std::size_t>(end - room)};
}

constexpr bool is_blank(wchar_t c) { return c == L' ' || (c >= L'\t' && c <= L'\r'); }
constexpr bool is_digit(wchar_t c) { return c >= L'0' && c <= L'9'; }

std::size_t skip_blanks(std::wstring_view text, std::size_t at) {
  while (at < text.size() && is_blank(text[at]))
    ++at;
  return at;
}

std::size_t skip_digits(std::wstring_view text, std::size_t at) {
  while (at < text.size() && is_digit(text[at]))
    ++at;
  return at;
}

bool is_at(std::wstring_view text, std::size_t at, std::wstring_view any_of) {
  return at < text.size() && any_of.find(text[at]) != std::wstring_view::npos;
}

// Behind the exponent at `at`, or `at` itself if no complete exponent stands there.
std::size_t skip_exponent(std::wstring_view text, std::size_t at) {
  if (!is_at(text, at, L"eE")) return at;
  const std::size_t digits = is_at(text, at + 1, L"+-") ? at + 2 : at + 1;
  const std::size_t end = skip_digits(text, digits);
  return end == digits ? at : end;
}

// The exponent "e-12" of a number, kept within bounds that no double reaches.
long long exponent_of(std::string_view number) {
  const std::size_t mark = number.find_first_of("eE");
  if (mark == std::string_view::npos) return 0;
  const bool negative = number[mark + 1] == '-';
  long long exponent = 0;
  for (const char c : number.substr(number.find_first_of("0123456789", mark))) {
    exponent = std::min(exponent * 10 + (c - '0'), 1'000'000'000LL);
  }
  return negative ? -exponent : exponent;
}

// For a number other than zero that no double can hold: whether it is too large rather than too
// small, told from the power of ten of its first digit.
bool exceeds_doubles(std::string_view number) {
  const std::string_view mantissa = number.substr(0, number.find_first_of("eE"));
  const auto stop = static_cast<long long>(std::min(mantissa.find('.'), mantissa.size()));
  const auto first = static_cast<long long>(mantissa.find_first_of("123456789"));
  return stop - first + exponent_of(number) > 0;
}

// Digits with an optional full stop and exponent, without a sign.
double to_double(const std::string& number) {
  double value = 0;
  const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
  if (result.ec != std::errc::result_out_of_range) return value;
  return exceeds_doubles(number) ? HUGE_VAL : 0.0;
}

struct RealScan {
  double value = 0;
  std::size_t end = 0;
};

// The number that begins at `at` after any blanks, and the place behind it.
std::optional<RealScan> scan_real(std::wstring_view text, std::size_t at) {
  const std::size_t sign = skip_blanks(text, at);
  const std::size_t begin = is_at(text, sign, L"+-") ? sign + 1 : sign;
  std::size_t end = skip_digits(text, begin);
  std::size_t digits = end - begin;
  if (is_at(text, end, L".")) {
    const std::size_t fraction_end = skip_digits(text, end + 1);
    digits += fraction_end - (end + 1);
    end = fraction_end;
  }
  if (digits == 0) return std::nullopt;
  end = skip_exponent(text, end);

  std::string number;
  number.reserve(end - begin);
  for (const wchar_t c : text.substr(begin, end - begin))
    number.push_back(static_cast<char>(c));
  const double magnitude = to_double(number);
  return RealScan{text[sign] == L'-' ? -magnitude : magnitude, end};
}

std::optional<Point3> read_point(std::wstring_view text) {
  const auto x = scan_real(text, 0);
  if (!x || !is_at(text, x->end, L",")) return std::nullopt;
  const auto y = scan_real(text, x->end + 1);
  if (!y || !is_at(text, y->end, L",")) return std::nullopt;
  const auto z = scan_real(text, y->end + 1);
  if (!z) return std::nullopt;
  return Point3{x->value, y->value, z->value};
}

std::optional<ODValue> whole_integer(std::wstring_view text) {
  const std::size_t sign = skip_blanks(text, 0);
  const std::size_t begin = is_at(text, sign, L"+-") ? sign + 1 : sign;
  const std::size_t end = skip_digits(text, begin);
  if (end == begin || skip_blanks(text, end) != text.size()) return std::nullopt;
  // A number beyond the range reads as the largest or the smallest.
  const std::int32_t number = read_integer(text);
  if (const auto exact = scan_real(text, 0); !exact || exact->value != number) return std::nullopt;
  return number;
}

std::optional<ODValue> whole_point(std::wstring_view text) {
  const std::size_t first = text.find(L',');
  if (first == std::wstring_view::npos) return std::nullopt;
  const std::size_t second = text.find(L',', first + 1);
  if (second == std::wstring_view::npos) return std::nullopt;
  const auto x = whole_real(text.substr(0, first));
  const auto y = whole_real(text.substr(first + 1, second - first - 1));
  const auto z = whole_real(text.substr(second + 1));
  if (!x || !y || !z) return std::nullopt;
  return Point3{*x, *y, *z};
}

void append_ascii(std::string_view text, std::wstring& out) {
  for (const char c : text)
    out.push_back(static_cast<wchar_t>(c));
}

struct Append {
  std::wstring& out;

  void operator()(std::monostate) const {}
  void operator()(std::int32_t number) const { append_integer(number, out); }
  void operator()(double number) const {
    RealRoom room;
    const std::string_view text = real_text(number, room);
    append_ascii(text, out);
  }
  void operator()(std::wstring_view text) const { out.append(text); }
  void operator()(const Point3& point) const {
    append_fixed_text(point.x, point_decimals, out);
    out.push_back(L',');
    append_fixed_text(point.y, point_decimals, out);
    out.push_back(L',');
    append_fixed_text(point.z, point_decimals, out);
  }
};

struct Store {
  std::wstring_view text;

  bool operator()(std::monostate) const { return false; }
  bool operator()(std::int32_t& number) const {
    number = read_integer(text);
    return true;
  }
  bool operator()(double& number) const {
    number = read_real(text);
    return true;
  }
  bool operator()(std::wstring& held) const {
    held.assign(text);
    return true;
  }
  bool operator()(Point3& point) const {
    const std::optional<Point3> read = read_point(text);
    if (read) point = *read;
    return read.has_value();
  }
};

}  // namespace

std::wstring value_text(const ODValueView& value) {
  std::wstring out;
  append_value_text(value, out);
  return out;
}

void append_value_text(const ODValueView& value, std::wstring& out) {
  std::visit(Append{out}, value);
}

bool store_text(std::wstring_view text, ODValue& value) { return std::visit(Store{text}, value); }

std::wstring shorten_real(std::wstring text) {
  text.resize(shortened_size(std::wstring_view(text)));
  return text;
}

std::int32_t read_integer(std::wstring_view text) {
  const std::size_t sign = skip_blanks(text, 0);
  const bool negative = is_at(text, sign, L"-");
  const std::size_t begin = is_at(text, sign, L"+-") ? sign + 1 : sign;
  using Limits = std::numeric_limits<std::int32_t>;
  const std::int64_t largest = negative ? -std::int64_t{Limits::min()} : Limits::max();
  std::int64_t magnitude = 0;
  for (std::size_t at = begin; at < text.size() && is_digit(text[at]); ++at) {
    magnitude = std::min(magnitude * 10 + (text[at] - L'0'), largest);
  }
  return static_cast<std::int32_t>(negative ? -magnitude : magnitude);
}

double read_real(std::wstring_view text) {
  const std::optional<RealScan> read = scan_real(text, 0);
  return read ? read->value : 0.0;
}

std::optional<double> whole_real(std::wstring_view text) {
  const std::optional<RealScan> read = scan_real(text, 0);
  if (!read || skip_blanks(text, read->end) != text.size()) return std::nullopt;
  return std::isfinite(read->value) ? std::optional(read->value) : std::nullopt;
}

std::optional<ODValue> whole_value(std::wstring_view text, ODType type) {
  switch (type) {
    case ODType::Integer:
      return whole_integer(text);
    case ODType::Real:
      return whole_real(text);
    case ODType::Character:
      return std::wstring(text);
    case ODType::Point:
      return whole_point(text);
    case ODType::Unknown:
      break;
  }
  return std::nullopt;
}

std::wstring fixed_text(double number, int decimals) {
  std::wstring out;
  append_fixed_text(number, decimals, out);
  return out;
}

void append_fixed_text(double number, int decimals, std::wstring& out) {
  // Sign, digits of the largest double, full stop, decimals.
  std::array<char, 1 + std::numeric_limits<double>::max_exponent10 + 1 + 1 + max_decimals> room{};
  const std::string_view digits =
      write_fixed(number, std::clamp(decimals, 0, max_decimals), room.data(), room.size());
  append_ascii(digits, out);
}

std::string_view real_text(double number, RealRoom& room) {
  const std::optional<SplitReal> split = split_real(std::fabs(number));
  if (!split) {
    const std::string_view fixed = write_fixed(number, real_decimals, room.data(), room.size());
    return fixed.substr(0, shortened_size(fixed));
  }
  char* out = room.data();
  if (std::signbit(number)) *out++ = '-';
  out = std::to_chars(out, room.data() + room.size(), split->whole).ptr;
  out = write_decimals(split->decimals, out);
  return {room.data(), static_cast<std::size_t>(out - room.data())};
}

}  // namespace korvel
