// Writing of values without any loss.
#include "exchange/exact_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <variant>

#include "frame/utf.h"

namespace korvel {
namespace {

struct Append {
  std::string& out;

  void operator()(std::monostate) const {}
  void operator()(std::int32_t number) const { out.append(ExactNumber(number).text()); }
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

ExactNumber::ExactNumber(std::int32_t number) {
  char* const end = std::to_chars(digits_.data(), digits_.data() + digits_.size(), number).ptr;
  size_ = static_cast<std::size_t>(end - digits_.data());
}

ExactNumber::ExactNumber(double number) {
  char* end = std::to_chars(digits_.data(), digits_.data() + digits_.size(), number).ptr;
  // Letters are an exponent's, or those of a number that is not finite.
  const bool is_like_integer =
      std::none_of(digits_.data(), end, [](char c) { return c == '.' || c >= 'a'; });
  if (is_like_integer) {
    *end++ = '.';
    *end++ = '0';
  }
  size_ = static_cast<std::size_t>(end - digits_.data());
}

void append_exact(double number, std::string& utf8) { utf8.append(ExactNumber(number).text()); }

void append_plain(double number, std::string& utf8) {
  const double size = std::abs(number);
  if (!(size >= 1e-6 && size < 1e15)) return append_exact(number, utf8);
  std::array<char, 32> digits;
  char* const end =
      std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed)
          .ptr;
  const std::string_view text(digits.data(), static_cast<std::size_t>(end - digits.data()));
  utf8.append(text);
  if (text.find('.') == std::string_view::npos) utf8.append(".0");
}

void append_exact(const ODValueView& value, std::string& utf8) { std::visit(Append{utf8}, value); }

}  // namespace korvel
