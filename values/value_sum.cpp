#include "values/value_sum.h"

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <variant>

#include "frame/value_text.h"

namespace korvel {
namespace {

template <class T>
concept Number = std::same_as<T, std::int32_t> || std::same_as<T, double>;

struct Add {
  using Sum = std::optional<ODValueView>;

  std::wstring& text;

  // A double holds the sum of two integers exactly.
  template <Number From>
  Sum operator()(std::int32_t to, From from) const {
    using Limits = std::numeric_limits<std::int32_t>;
    const double sum = std::trunc(static_cast<double>(to) + static_cast<double>(from));
    const bool fits = sum >= Limits::min() && sum <= Limits::max();
    return fits ? Sum(static_cast<std::int32_t>(sum)) : std::nullopt;
  }
  template <Number From>
  Sum operator()(double to, From from) const {
    return to + from;
  }
  template <class From>
  requires(!std::same_as<From, std::monostate>) Sum operator()(std::wstring_view to,
                                                               const From& from) const {
    text.assign(to);
    append_value_text(from, text);
    return text;
  }
  Sum operator()(const Point3& to, const Point3& from) const {
    return Point3{to.x + from.x, to.y + from.y, to.z + from.z};
  }
  template <class To, class From>
  Sum operator()(const To& /*to*/, const From& /*from*/) const {
    return std::nullopt;
  }
};

}  // namespace

std::optional<ODValueView> ValueSum::operator()(const ODValueView& to, const ODValueView& from) {
  return std::visit(Add{text_}, to, from);
}

bool can_add(ODType to, ODType from) {
  const ODValue zero_to = zero_value(to);
  const ODValue zero_from = zero_value(from);
  return ValueSum()(view_of(zero_to), view_of(zero_from)).has_value();
}

}  // namespace korvel
