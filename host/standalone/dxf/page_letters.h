// The letters of a code page, as the operating system knows them.
#pragma once

#include <array>
#include <cstddef>
#include <memory>

namespace korvel::dxf {

// ISO 8859-n is 28590 + n and Mac Roman 10000, as in the usual numbering of code pages.
inline constexpr int iso_8859 = 28590;
inline constexpr int mac_roman = 10000;

// A page that the system does not know has no letters.
class PageLetters {
 public:
  explicit PageLetters(int page);
  ~PageLetters();
  PageLetters(const PageLetters&) = delete;
  PageLetters& operator=(const PageLetters&) = delete;

  // The one letter that the first `count` (1 or 2) bytes stand for; 0 if they stand for none or
  // for several, or for one beyond U+FFFF.
  [[nodiscard]] char16_t letter(std::array<unsigned char, 2> bytes, std::size_t count);

 private:
  struct Converter;
  std::unique_ptr<Converter> converter_;
};

}  // namespace korvel::dxf
