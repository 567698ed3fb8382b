// Text in the units of a UTF-16 text file, assembled quickly in a buffer that is used again.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korvel {

// A line feed becomes CR LF, as TextFileWriter has it, and a surrogate without its partner U+FFFD.
class Utf16Text {
 public:
  void clear() { size_ = 0; }
  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] std::u16string_view view() const { return {units_.data(), size_}; }

  // Both halves of a surrogate pair must come in one call.
  void append(std::wstring_view text) { append(text, Quotes::AsTheyAre); }
  // The text between double quotes, with every double quote in it doubled.
  void append_quoted(std::wstring_view text);
  void append_ascii(std::string_view text);
  void append_units(std::u16string_view units);
  void append_unit(char16_t unit) {
    *room(1) = unit;
    ++size_;
  }

 private:
  enum class Quotes { AsTheyAre, Doubled };

  void append(std::wstring_view text, Quotes quotes);
  // Room for so many units behind the text; size_ is the caller's to move.
  [[nodiscard]] char16_t* room(std::size_t units) {
    if (units_.size() - size_ < units) units_.resize(2 * (size_ + units));
    return units_.data() + size_;
  }

  std::vector<char16_t> units_;
  std::size_t size_ = 0;
};

// The units as a file has them. The bytes are the units themselves where the machine has them in
// that order, and else stand in the room given.
[[nodiscard]] std::string_view little_endian_bytes(std::u16string_view units, std::string& room);

}  // namespace korvel
