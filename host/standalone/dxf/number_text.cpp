// Prints and reads the numbers and handles of DXF values.
#include "host/standalone/dxf/number_text.h"

#include <array>
#include <charconv>
#include <cmath>

namespace korvel::dxf {

namespace {

// Outside these the plain form would be long.
constexpr double lowest_plain = 1e-5;
constexpr double lowest_long = 1e16;
constexpr std::size_t most_handle_digits = 16;

// Trimmed and without a leading plus, as from_chars wants it; empty if no digit or point follows
// the sign, which keeps out "+-1", "inf" and "nan".
std::string_view unsigned_plus(std::string_view text) {
  text = trimmed(text);
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return {};
  }
  const std::size_t digits = text.starts_with('-') ? 1 : 0;
  if (digits >= text.size()) return {};
  const char first = text[digits];
  return (first >= '0' && first <= '9') || first == '.' ? text : std::string_view{};
}

template <typename Number, typename... Base>
bool read_all(std::string_view text, Number& value, Base... base) {
  Number read = {};
  const char* end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, read, base...);
  if (error != std::errc{} || stopped != end) return false;
  value = read;
  return true;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

void append_real(std::string& out, double value) {
  if (!std::isfinite(value)) value = 0;
  const double size = std::abs(value);
  const bool plain = size == 0 || (size >= lowest_plain && size < lowest_long);

  std::array<char, 32> buffer;
  const char* const end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                    plain ? std::chars_format::fixed : std::chars_format::scientific)
          .ptr;
  const std::string_view text(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const std::string_view digits = text.substr(0, text.find('e'));
  out += digits;
  if (digits.find('.') == std::string_view::npos) out += ".0";
  if (digits.size() == text.size()) return;
  out += 'E';
  out += text.substr(digits.size() + 1);
}

bool read_real(std::string_view text, double& value) {
  return read_all(unsigned_plus(text), value);
}

bool read_integer(std::string_view text, std::int64_t& value) {
  return read_all(unsigned_plus(text), value);
}

bool read_handle(std::string_view text, std::uint64_t& value) {
  text = trimmed(text);
  return text.size() <= most_handle_digits && read_all(text, value, 16);
}

void append_handle(std::string& out, std::uint64_t handle) {
  std::array<char, most_handle_digits> buffer;
  std::size_t begin = buffer.size();
  do {
    buffer[--begin] = "0123456789ABCDEF"[handle % 16];
    handle /= 16;
  } while (handle != 0);
  out.append(buffer.data() + begin, buffer.size() - begin);
}

}  // namespace korvel::dxf
