#include "attach/field_text.h"

#include <cmath>
#include <optional>

#include "frame/value_text.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

constexpr int shown_decimals = 6;

// None unless the text has one piece or three.
std::optional<Point3> read_pieces(std::wstring_view text) {
  const std::size_t first = text.find(L',');
  if (first == std::wstring_view::npos) {
    const double all = read_real(text);
    return Point3{all, all, all};
  }
  const std::size_t second = text.find(L',', first + 1);
  if (second == std::wstring_view::npos) return std::nullopt;
  if (text.find(L',', second + 1) != std::wstring_view::npos) return std::nullopt;
  return Point3{read_real(text.substr(0, first)),
                read_real(text.substr(first + 1, second - first - 1)),
                read_real(text.substr(second + 1))};
}

struct Store {
  std::wstring_view text;

  void operator()(std::monostate) const {}
  void operator()(std::int32_t& number) const { number = read_integer(text); }
  void operator()(double& number) const {
    const double read = read_real(text);
    if (std::isfinite(read)) number = read;
  }
  void operator()(std::wstring& held) const { held.assign(text); }
  void operator()(Point3& point) const {
    const std::optional<Point3> read = read_pieces(text);
    if (read && is_finite(*read)) point = *read;
  }
};

}  // namespace

std::wstring shown_default(const ODValue& value) {
  const double* const real = std::get_if<double>(&value);
  return real != nullptr ? fixed_text(*real, shown_decimals) : value_text(view_of(value));
}

void store_field_text(std::wstring_view text, ODValue& value) { std::visit(Store{text}, value); }

}  // namespace korvel
