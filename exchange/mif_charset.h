// The character sets that MIF files can declare.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace korvel {

// One of the Windows code pages, or UTF-8.
class MifCharset {
 public:
  // Its name in the file's head.
  [[nodiscard]] std::string_view name() const;
  [[nodiscard]] bool is_utf8() const { return page_ == utf8; }

  // Appends the text; what the character set does not have becomes a question mark.
  void append(std::wstring_view text, std::string& out) const;

  // Bytes of the letter.
  [[nodiscard]] std::size_t size_of(char32_t letter) const;

 private:
  friend class MifCharsetChoice;
  static constexpr std::size_t utf8 = 8;
  explicit MifCharset(std::size_t page) : page_(page) {}
  std::size_t page_;
};

// Finds the character set that holds all texts that it was shown.
class MifCharsetChoice {
 public:
  void see(std::wstring_view text);

  // The first of the Windows character sets with every letter, West European before all others;
  // UTF-8 if none has them.
  [[nodiscard]] MifCharset best() const;

 private:
  unsigned pages_ = 0xFF;  // a bit for each that is still possible
};

}  // namespace korvel
