// Reading of cells.
#include "exchange/csv_cell.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <system_error>

#include "exchange/exact_text.h"
#include "frame/utf.h"

namespace korvel {
namespace {

// The finite number that the text is. None for a real too small to be told from zero, too.
template <class Number>
std::optional<Number> whole_number(std::string_view text) {
  Number number{};
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  if constexpr (std::is_same_v<Number, double>) {
    if (!std::isfinite(number)) return std::nullopt;
  }
  return number;
}

// From the first digit that is no zero to the last one.
std::size_t significant_digits(std::string_view number) {
  constexpr std::string_view digits = "123456789";
  const std::string_view mantissa = number.substr(0, number.find_first_of("eE"));
  const std::size_t first = mantissa.find_first_of(digits);
  if (first == std::string_view::npos) return 0;
  const std::string_view between =
      mantissa.substr(first, mantissa.find_last_of(digits) - first + 1);
  return between.size() - static_cast<std::size_t>(std::ranges::count(between, '.'));
}

// Also one that is written as a real: 3.0, 1e5.
std::optional<std::int32_t> whole_integer(std::string_view text) {
  if (const auto integer = whole_number<std::int32_t>(text)) return integer;
  // Up to so many digits no two decimal numbers are the same double.
  if (significant_digits(text) > std::numeric_limits<double>::digits10) return std::nullopt;
  const auto real = whole_number<double>(text);
  using Limits = std::numeric_limits<std::int32_t>;
  if (!real || *real != std::trunc(*real) || *real < Limits::min() || *real > Limits::max()) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(*real);
}

std::optional<Point3> whole_point(std::string_view text) {
  const std::size_t first = text.find(',');
  if (first == std::string_view::npos) return std::nullopt;
  const std::size_t second = text.find(',', first + 1);
  if (second == std::string_view::npos) return std::nullopt;
  const auto coordinate = [](std::string_view part) {
    return whole_number<double>(without_blanks(part));
  };
  const auto x = coordinate(text.substr(0, first));
  const auto y = coordinate(text.substr(first + 1, second - first - 1));
  const auto z = coordinate(text.substr(second + 1));
  if (!x || !y || !z) return std::nullopt;
  return Point3{*x, *y, *z};
}

template <class Value>
std::optional<ODValueView> as_value(const std::optional<Value>& value) {
  if (!value) return std::nullopt;
  return ODValueView(*value);
}

bool is_ascii(wchar_t unit) { return static_cast<char32_t>(unit) < 0x80; }

// Whether the text in UTF-8 is the cell; what is no letter in it stands as U+FFFD there.
bool is_same_text(std::wstring_view text, std::string_view cell, std::string& utf8) {
  std::size_t same = 0;
  while (same < text.size() && same < cell.size() && is_ascii(text[same]) &&
         text[same] == static_cast<wchar_t>(cell[same])) {
    ++same;
  }
  if (same == text.size()) return same == cell.size();
  if (is_ascii(text[same])) return false;
  utf8.clear();
  append_utf8(text.substr(same), utf8);
  return utf8 == cell.substr(same);
}

// Also in the sign of zeros, which the export writes.
bool is_same_number(const ODValueView& left, const ODValueView& right) {
  const auto same_sign = [](double a, double b) { return std::signbit(a) == std::signbit(b); };
  if (left != right) return false;
  if (const auto* const real = std::get_if<double>(&left)) {
    return same_sign(*real, std::get<double>(right));
  }
  if (const auto* const point = std::get_if<Point3>(&left)) {
    const auto& other = std::get<Point3>(right);
    return same_sign(point->x, other.x) && same_sign(point->y, other.y) &&
           same_sign(point->z, other.z);
  }
  return true;
}

}  // namespace

std::string_view without_blanks(std::string_view cell) {
  constexpr std::string_view blanks = " \t\n\v\f\r";
  const std::size_t first = cell.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return cell.substr(first, cell.find_last_not_of(blanks) - first + 1);
}

CellVerdict CellReader::compare(std::string_view cell, const ODValueView& present) {
  if (const auto* const text = std::get_if<std::wstring_view>(&present)) {
    return is_same_text(*text, cell, narrow_) ? CellVerdict::Same : CellVerdict::Changes;
  }
  const ODType type = type_of(present);
  const std::string_view inner = without_blanks(cell);
  if (inner.empty()) return CellVerdict::Same;
  if (const std::optional<ODValueView> said = number(inner, type)) {
    return is_same_number(*said, present) ? CellVerdict::Same : CellVerdict::Changes;
  }
  // A number that is not finite is written, but not read.
  narrow_.clear();
  append_exact(present, narrow_);
  return narrow_ == inner ? CellVerdict::Same : CellVerdict::Refused;
}

std::optional<ODValueView> CellReader::value(std::string_view cell, ODType type) {
  if (type != ODType::Character) return number(without_blanks(cell), type);
  wide_.clear();
  append_from_utf8(cell, wide_);
  return wide_;
}

std::optional<ODValueView> CellReader::number(std::string_view cell, ODType type) {
  if (type == ODType::Point) return as_value(whole_point(cell));
  if (decimal_sign_ != '.' && cell.find_first_of(".,") != std::string_view::npos) {
    if (cell.find('.') != std::string_view::npos) return std::nullopt;
    narrow_.assign(cell);
    std::ranges::replace(narrow_, decimal_sign_, '.');
    cell = narrow_;
  }
  if (type == ODType::Integer) return as_value(whole_integer(cell));
  if (type == ODType::Real) return as_value(whole_number<double>(cell));
  return std::nullopt;
}

}  // namespace korvel
