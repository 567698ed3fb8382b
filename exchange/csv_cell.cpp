// Reading of cells: numbers in place, anything odd through the texts of values.
#include "exchange/csv_cell.h"

#include <charconv>
#include <cmath>
#include <system_error>

#include "exchange/exact_text.h"
#include "frame/utf.h"
#include "frame/value_text.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

// A number without blanks, a plus sign or anything behind it.
template <class Number>
std::optional<Number> plain_number(std::string_view text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  if constexpr (std::is_same_v<Number, double>) {
    if (!std::isfinite(number)) return std::nullopt;
  }
  return number;
}

std::optional<Point3> plain_point(std::string_view text) {
  const std::size_t first = text.find(',');
  if (first == std::string_view::npos) return std::nullopt;
  const std::size_t second = text.find(',', first + 1);
  if (second == std::string_view::npos) return std::nullopt;
  const auto x = plain_number<double>(text.substr(0, first));
  const auto y = plain_number<double>(text.substr(first + 1, second - first - 1));
  const auto z = plain_number<double>(text.substr(second + 1));
  if (!x || !y || !z) return std::nullopt;
  return Point3{*x, *y, *z};
}

template <class Value>
std::optional<ODValueView> as_value(const std::optional<Value>& value) {
  if (!value) return std::nullopt;
  return ODValueView(*value);
}

std::optional<ODValueView> plain_value(std::string_view cell, ODType type) {
  switch (type) {
    case ODType::Integer:
      return as_value(plain_number<std::int32_t>(cell));
    case ODType::Real:
      return as_value(plain_number<double>(cell));
    case ODType::Point:
      return as_value(plain_point(cell));
    case ODType::Character:
    case ODType::Unknown:
      break;
  }
  return std::nullopt;
}

bool is_finite_value(const ODValue& value) {
  if (const auto* const real = std::get_if<double>(&value)) return std::isfinite(*real);
  if (const auto* const point = std::get_if<Point3>(&value)) return is_finite(*point);
  return true;
}

bool is_blank(std::string_view cell) {
  return cell.find_first_not_of(" \t") == std::string_view::npos;
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

}  // namespace

CellVerdict CellReader::compare(std::string_view cell, const ODValueView& present) {
  if (const auto* const text = std::get_if<std::wstring_view>(&present)) {
    return is_same_text(*text, cell, exact_) ? CellVerdict::Same : CellVerdict::Changes;
  }
  if (type_of(present) == ODType::Unknown || is_blank(cell)) return CellVerdict::Same;
  const std::optional<Reading> reading = read(cell, type_of(present));
  if (reading && reading->value == present) return CellVerdict::Same;
  if (reading) return reading->whole ? CellVerdict::Changes : CellVerdict::Loses;
  // A number that is not finite is written, but not read.
  exact_.clear();
  append_exact(present, exact_);
  return exact_ == cell ? CellVerdict::Same : CellVerdict::Unreadable;
}

std::optional<ODValueView> CellReader::value(std::string_view cell, ODType type) {
  if (type == ODType::Character) {
    wide_.clear();
    append_from_utf8(cell, wide_);
    return wide_;
  }
  if (is_blank(cell)) return std::nullopt;
  const std::optional<Reading> reading = read(cell, type);
  if (!reading) return std::nullopt;
  return reading->value;
}

std::optional<CellReader::Reading> CellReader::read(std::string_view cell, ODType type) {
  if (const std::optional<ODValueView> value = plain_value(cell, type)) return {{*value, true}};
  return read_loosely(cell, type);
}

std::optional<CellReader::Reading> CellReader::read_loosely(std::string_view cell, ODType type) {
  wide_.clear();
  append_from_utf8(cell, wide_);
  if (const std::optional<ODValue> whole = whole_value(wide_, type)) {
    return {{view_of(*whole), true}};
  }
  ODValue value = zero_value(type);
  if (!store_text(wide_, value) || !is_finite_value(value)) return std::nullopt;
  // 3.0 is an integer, too.
  const auto* const integer = std::get_if<std::int32_t>(&value);
  return {{view_of(value), integer != nullptr && whole_real(wide_) == *integer}};
}

}  // namespace korvel
