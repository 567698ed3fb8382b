// Code pages by the tables of Windows.
#include <windows.h>

#include "host/standalone/dxf/page_letters.h"

namespace korvel::dxf {
namespace {

// The system gives the bytes that a page leaves free a control character or a private letter.
bool stands_for_nothing(wchar_t letter, UINT page) {
  const bool is_control = letter >= 0x80 && letter <= 0x9F;
  const bool is_private = letter >= 0xE000 && letter <= 0xF8FF;
  return is_private || (is_control && static_cast<int>(page) < iso_8859);
}

}  // namespace

struct PageLetters::Converter {
  UINT page;
};

PageLetters::PageLetters(int page)
    : converter_(std::make_unique<Converter>(Converter{static_cast<UINT>(page)})) {}
PageLetters::~PageLetters() = default;

char16_t PageLetters::letter(std::array<unsigned char, 2> bytes, std::size_t count) {
  const UINT page = converter_->page;
  if (count == 1 && IsDBCSLeadByteEx(page, bytes[0]) != 0) return 0;
  const std::array<char, 2> source = {static_cast<char>(bytes[0]), static_cast<char>(bytes[1])};
  std::array<wchar_t, 4> letters = {};
  const int units =
      MultiByteToWideChar(page, MB_ERR_INVALID_CHARS, source.data(), static_cast<int>(count),
                          letters.data(), static_cast<int>(letters.size()));
  if (units != 1 || letters[0] == L'\uFFFD') return 0;
  if (count == 1 && stands_for_nothing(letters[0], page)) return 0;
  return static_cast<char16_t>(letters[0]);
}

}  // namespace korvel::dxf
