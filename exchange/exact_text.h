// Values as short text that reads back as the very same values.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "frame/od_value.h"

namespace korvel {

// A number in its shortest form, a real with a full stop or an exponent to tell it from an integer:
// "3.0", "0.1", "1e-300", "-0.0".
class ExactNumber {
 public:
  explicit ExactNumber(std::int32_t number);
  explicit ExactNumber(double number);

  // Lives as long as this.
  [[nodiscard]] std::string_view text() const { return {digits_.data(), size_}; }

 private:
  std::array<char, 32> digits_;  // the longest double takes 24
  std::size_t size_;
};

void append_exact(double number, std::string& utf8);

// The same without an exponent between a millionth and 1e15, for programs that expect none.
void append_plain(double number, std::string& utf8);

// Appends an integer's digits, a real as above, a text as it is, a point as three such reals with
// commas between them (never "1,234,567", which programs take for one number), nothing for no
// value.
void append_exact(const ODValueView& value, std::string& utf8);

}  // namespace korvel
