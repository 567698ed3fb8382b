// Writing of values without any loss.
#include "exchange/exact_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <variant>

#include "frame/utf.h"

namespace korvel {
namespace {

using Digits = std::array<char, 32>;  // the longest double takes 24

template <class Number>
std::string_view shortest(Number number, Digits& digits) {
  char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  return {digits.data(), static_cast<std::size_t>(end - digits.data())};
}

struct Append {
  std::string& out;

  void operator()(std::monostate) const {}
  void operator()(std::int32_t number) const {
    Digits digits;
    out.append(shortest(number, digits));
  }
  void operator()(double number) const { append_exact(number, out); }
  void operator()(std::wstring_view text) const { append_utf8(text, out); }
  void operator()(const Point3& point) const {
    append_exact(point.x, out);
    out.push_back(',');
    append_exact(point.y, out);
    out.push_back(',');
    append_exact(point.z, out);
  }
};

}  // namespace

void append_exact(double number, std::string& utf8) {
  Digits digits;
  const std::string_view text = shortest(number, digits);
  utf8.append(text);
  // Letters are an exponent's, or those of a number that is not finite.
  if (text.find_first_of(".einf") == std::string_view::npos) utf8.append(".0");
}

void append_plain(double number, std::string& utf8) {
  const double size = std::abs(number);
  if (!(size >= 1e-6 && size < 1e15)) return append_exact(number, utf8);
  Digits digits;
  char* const end =
      std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed)
          .ptr;
  const std::string_view text(digits.data(), static_cast<std::size_t>(end - digits.data()));
  utf8.append(text);
  if (text.find('.') == std::string_view::npos) utf8.append(".0");
}

void append_exact(const ODValueView& value, std::string& utf8) { std::visit(Append{utf8}, value); }

}  // namespace korvel
