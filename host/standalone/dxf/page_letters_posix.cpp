// Code pages by iconv.
#include <cstdint>
#include <iconv.h>
#include <string>

#include "host/standalone/dxf/page_letters.h"

namespace korvel::dxf {
namespace {

std::string iconv_name(int page) {
  if (page == mac_roman) return "MACINTOSH";
  if (page > iso_8859) return "ISO-8859-" + std::to_string(page - iso_8859);
  return "CP" + std::to_string(page);
}

}  // namespace

struct PageLetters::Converter {
  explicit Converter(const std::string& page) : handle(iconv_open("UTF-16BE", page.c_str())) {}
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() {
    if (is_open()) iconv_close(handle);
  }
  [[nodiscard]] bool is_open() const {
    // What iconv_open answers when it knows no such page.  NOLINTNEXTLINE
    return handle != reinterpret_cast<iconv_t>(static_cast<std::intptr_t>(-1));
  }

  iconv_t handle;
};

PageLetters::PageLetters(int page) : converter_(std::make_unique<Converter>(iconv_name(page))) {}
PageLetters::~PageLetters() = default;

char16_t PageLetters::letter(std::array<unsigned char, 2> bytes, std::size_t count) {
  if (!converter_->is_open()) return 0;
  iconv_t handle = converter_->handle;
  std::array<char, 2> source = {static_cast<char>(bytes[0]), static_cast<char>(bytes[1])};
  std::array<char, 16> target = {};
  char* from = source.data();
  char* to = target.data();
  std::size_t left = count;
  std::size_t room = target.size();
  iconv(handle, nullptr, nullptr, nullptr, nullptr);
  if (iconv(handle, &from, &left, &to, &room) == static_cast<std::size_t>(-1)) return 0;
  // 1255 and 1258 hold a letter back for an accent to come.
  iconv(handle, nullptr, nullptr, &to, &room);
  if (left != 0 || target.size() - room != 2) return 0;
  const auto value = static_cast<char16_t>((static_cast<unsigned char>(target[0]) << 8) |
                                           static_cast<unsigned char>(target[1]));
  const bool is_surrogate = value >= 0xD800 && value <= 0xDFFF;
  return is_surrogate ? char16_t{0} : value;
}

}  // namespace korvel::dxf
