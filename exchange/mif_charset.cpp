// Windows code pages.
#include "exchange/mif_charset.h"

#include <algorithm>
#include <array>
#include <vector>

#include "frame/utf.h"

namespace korvel {
namespace {

constexpr std::array<std::string_view, 9> names = {
    "WindowsLatin1", "WindowsLatin2", "WindowsCyrillic",  "WindowsGreek", "WindowsTurkish",
    "WindowsHebrew", "WindowsArabic", "WindowsBalticRim", "UTF-8"};

using HighHalf = std::array<char16_t, 128>;

constexpr std::array<HighHalf, 8> code_pages = {{
#include "exchange/windows_code_pages.inc"
}};

// A letter beyond ASCII and where the code pages have it.
struct Letter {
  char16_t value = 0;
  unsigned pages = 0;  // a bit each
  std::array<unsigned char, 8> bytes{};
};

std::vector<Letter> all_letters() {
  std::vector<Letter> letters;
  for (std::size_t page = 0; page < code_pages.size(); ++page) {
    for (std::size_t i = 0; i < code_pages[page].size(); ++i) {
      if (code_pages[page][i] == 0) continue;
      Letter letter{code_pages[page][i], 1U << page, {}};
      letter.bytes[page] = static_cast<unsigned char>(0x80 + i);
      letters.push_back(letter);
    }
  }
  std::ranges::stable_sort(letters, {}, &Letter::value);
  std::size_t kept = 0;
  for (const Letter& letter : letters) {
    if (kept == 0 || letters[kept - 1].value != letter.value) {
      letters[kept++] = letter;
      continue;
    }
    Letter& same = letters[kept - 1];
    same.pages |= letter.pages;
    for (std::size_t page = 0; page < same.bytes.size(); ++page)
      same.bytes[page] = static_cast<unsigned char>(same.bytes[page] | letter.bytes[page]);
  }
  letters.resize(kept);
  return letters;
}

// Null for a letter that no code page has.
const Letter* find_letter(char32_t value) {
  static const std::vector<Letter> letters = all_letters();
  const auto found = std::ranges::lower_bound(
      letters, value, {}, [](const Letter& letter) { return static_cast<char32_t>(letter.value); });
  return found != letters.end() && found->value == value ? &*found : nullptr;
}

}  // namespace

std::string_view MifCharset::name() const { return names[page_]; }

void MifCharset::append(std::wstring_view text, std::string& out) const {
  if (is_utf8()) return append_utf8(text, out);
  for (std::size_t at = 0; at < text.size();) {
    const CodePoint read = code_point_at(text, at);
    at += read.units;
    if (read.value < 0x80) {
      out.push_back(static_cast<char>(read.value));
      continue;
    }
    const Letter* const letter = find_letter(read.value);
    const bool has = letter != nullptr && (letter->pages >> page_ & 1U) != 0;
    out.push_back(has ? static_cast<char>(letter->bytes[page_]) : '?');
  }
}

std::size_t MifCharset::size_of(char32_t letter) const {
  if (!is_utf8() || letter < 0x80) return 1;
  return letter < 0x800 ? 2 : letter < 0x10000 ? 3 : 4;
}

void MifCharsetChoice::see(std::wstring_view text) {
  for (std::size_t at = 0; at < text.size() && pages_ != 0;) {
    const CodePoint read = code_point_at(text, at);
    at += read.units;
    if (read.value < 0x80) continue;
    const Letter* const letter = find_letter(read.value);
    pages_ &= letter == nullptr ? 0 : letter->pages;
  }
}

MifCharset MifCharsetChoice::best() const {
  for (std::size_t page = 0; page < MifCharset::utf8; ++page) {
    if ((pages_ >> page & 1U) != 0) return MifCharset(page);
  }
  return MifCharset(MifCharset::utf8);
}

}  // namespace korvel
