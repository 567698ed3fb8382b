// Reads and writes the strings of a drawing file: code page tables, UTF-8 and the escapes.
#include "host/standalone/dxf/text_codec.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <utility>

#include "host/standalone/dxf/page_letters.h"

namespace korvel::dxf {

namespace {

// Lines of a DXF hold at most 2,049 bytes.
constexpr std::size_t most_piece_bytes = 2000;

constexpr int western = 1252;
constexpr std::array known_pages = {
    western,       1250,          1251,          1253,          1254,         1255,
    1256,          1257,          1258,          874,           932,          936,
    949,           950,           1361,          437,           737,          775,
    850,           852,           855,           857,           858,          860,
    861,           862,           863,           864,           865,          866,
    869,           mac_roman,     iso_8859 + 1,  iso_8859 + 2,  iso_8859 + 3, iso_8859 + 4,
    iso_8859 + 5,  iso_8859 + 6,  iso_8859 + 7,  iso_8859 + 8,  iso_8859 + 9, iso_8859 + 10,
    iso_8859 + 11, iso_8859 + 13, iso_8859 + 14, iso_8859 + 15, iso_8859 + 16};
constexpr std::array double_byte_pages = {932, 936, 949, 950, 1361};
constexpr std::array multibyte_escape_pages = {932, 950, 949, 1361, 936};

constexpr std::size_t unicode_escape_length = 7;    // \U+XXXX
constexpr std::size_t multibyte_escape_length = 8;  // \M+nxxxx

bool is_high(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool is_low(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
bool is_carried_byte(char32_t unit) { return unit >= 0xDC80 && unit <= 0xDCFF; }
char32_t carried_byte(unsigned char byte) { return 0xDC00U + byte; }

char32_t combined(char32_t high, char32_t low) {
  return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

char32_t unit_at(std::wstring_view text, std::size_t at) { return static_cast<char32_t>(text[at]); }

// Whether one letter takes two characters here, which happens only where wchar_t has 16 bits.
bool is_pair(std::wstring_view text, std::size_t at) {
  return sizeof(wchar_t) == 2 && at + 1 < text.size() && is_high(unit_at(text, at)) &&
         is_low(unit_at(text, at + 1));
}

int hex_value(char32_t digit) {
  if (digit >= '0' && digit <= '9') return static_cast<int>(digit - '0');
  if (digit >= 'A' && digit <= 'F') return static_cast<int>(digit - 'A') + 10;
  if (digit >= 'a' && digit <= 'f') return static_cast<int>(digit - 'a') + 10;
  return -1;
}

// The number of the last four characters of an escape; -1 if they are no hex digits.
template <typename Char>
int four_hex(std::basic_string_view<Char> digits) {
  int value = 0;
  for (const Char digit : digits) {
    const int next = hex_value(static_cast<char32_t>(digit));
    if (next < 0) return -1;
    value = value * 16 + next;
  }
  return value;
}

// The number in the \U+ escape that `text` begins with; -1 if it does not begin with one.
template <typename Char>
int unicode_escape(std::basic_string_view<Char> text) {
  if (text.size() < unicode_escape_length) return -1;
  if (text[0] != '\\' || text[1] != 'U' || text[2] != '+') return -1;
  return four_hex(text.substr(3, 4));
}

// The same of \M+; the digit before the number is text[3].
template <typename Char>
int multibyte_escape(std::basic_string_view<Char> text) {
  if (text.size() < multibyte_escape_length) return -1;
  if (text[0] != '\\' || text[1] != 'M' || text[2] != '+') return -1;
  if (text[3] < '1' || text[3] > '5') return -1;
  return four_hex(text.substr(4, 4));
}

// How many characters of `text` look like an escape with a backslash; 0 if it begins with none.
std::size_t escape_look(std::wstring_view text) {
  if (unicode_escape(text) >= 0) return unicode_escape_length;
  return multibyte_escape(text) >= 0 ? multibyte_escape_length : 0;
}

void append_unicode_escape(char32_t unit, std::string& out) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  out += "\\U+";
  for (int shift = 12; shift >= 0; shift -= 4)
    out += digits[(unit >> shift) & 0xF];
}

// The small d keeps a low half from joining a high half written before it.
void append_lone_surrogate(char32_t unit, std::string& out) {
  append_unicode_escape(unit, out);
  if (is_low(unit)) out[out.size() - 4] = 'd';
}

void append_utf8(char32_t letter, std::string& out) {
  const auto append = [&out](char32_t byte) { out += static_cast<char>(byte); };
  const auto trail = [&](int shift) { append(0x80 | ((letter >> shift) & 0x3F)); };
  if (letter < 0x800) {
    append(0xC0 | (letter >> 6));
  } else if (letter < 0x10000) {
    append(0xE0 | (letter >> 12));
    trail(6);
  } else {
    append(0xF0 | (letter >> 18));
    trail(12);
    trail(6);
  }
  trail(0);
}

bool has_zero_byte(std::uint64_t word) {
  return ((word - 0x0101010101010101U) & ~word & 0x8080808080808080U) != 0;
}

// Neither a byte above 7F nor a backslash nor a caret: then every byte is its own letter.
bool is_plain(std::string_view raw) {
  const auto eight_plain = [](std::uint64_t word) {
    // 5C and 5E differ in one bit only.
    const std::uint64_t folded = word | 0x0202020202020202U;
    return (word & 0x8080808080808080U) == 0 && !has_zero_byte(folded ^ 0x5E5E5E5E5E5E5E5EU);
  };
  std::uint64_t word = 0;
  for (; raw.size() >= sizeof word; raw.remove_prefix(sizeof word)) {
    std::memcpy(&word, raw.data(), sizeof word);
    if (!eight_plain(word)) return false;
  }
  word = 0;
  if (!raw.empty()) std::memcpy(&word, raw.data(), raw.size());
  return eight_plain(word);
}

bool is_plain(wchar_t unit) { return unit >= L' ' && unit < 0x80 && unit != L'\\' && unit != L'^'; }

wchar_t* put_letter(char32_t letter, wchar_t* to) {
  if (sizeof(wchar_t) == 2 && letter > 0xFFFF) {
    *to++ = static_cast<wchar_t>(0xD800 + ((letter - 0x10000) >> 10));
    letter = 0xDC00 + (letter & 0x3FF);
  }
  *to++ = static_cast<wchar_t>(letter);
  return to;
}

// As many characters of `text` as make at most `most` UTF-16 units, at least one.
std::size_t first_units(std::wstring_view text, std::size_t most) {
  std::size_t units = 0;
  std::size_t length = 0;
  while (length < text.size()) {
    units += unit_at(text, length) > 0xFFFF ? 2U : 1U;
    if (units > most && length > 0) break;
    ++length;
  }
  return length;
}

// `length` made shorter where a cut there would split a letter or the look of an escape, but
// never to nothing.
std::size_t uncut(std::wstring_view text, std::size_t length) {
  if (length >= text.size()) return text.size();
  std::size_t cut = length;
  for (std::size_t back = 1; back < multibyte_escape_length && back <= length; ++back) {
    if (escape_look(text.substr(length - back)) > back) cut = length - back;
  }
  if (cut == 0) return length;
  if (!is_pair(text, cut - 1)) return cut;
  return cut == 1 ? 2 : cut - 1;
}

}  // namespace

// One code page; bytes below 80 are ASCII in all of them. A page that the system's library does
// not know has no letters, so its bytes are carried and nothing is lost.
class CodePage {
 public:
  // The page of that number, made at the first call; 1252 for numbers that are not known.
  static const CodePage& of(int number) {
    static std::array<CodePage, known_pages.size()> pages;
    static std::array<std::once_flag, known_pages.size()> made;
    const auto* found = std::find(known_pages.begin(), known_pages.end(), number);
    const auto row = found == known_pages.end()
                         ? std::size_t{0}
                         : static_cast<std::size_t>(found - known_pages.begin());
    std::call_once(made[row], [row] { pages[row].make(known_pages[row]); });
    return pages[row];
  }

  // 0: the byte alone, or the pair, means nothing.
  [[nodiscard]] char16_t letter(unsigned char byte) const { return single_[byte]; }
  [[nodiscard]] char16_t letter(unsigned char lead, unsigned char trail) const {
    if (pairs_.empty() || lead < 0x80) return 0;
    return pairs_[pair_index(lead, trail)];
  }

  // The bytes of a letter, lead byte first if there are two; 0 if the page lacks it. Of several
  // codes for one letter the lowest is taken.
  [[nodiscard]] unsigned code(char32_t letter) const {
    const auto found =
        std::lower_bound(codes_.begin(), codes_.end(), letter,
                         [](const LetterCode& left, char32_t right) { return left.first < right; });
    return found != codes_.end() && found->first == letter ? found->second : 0;
  }

 private:
  using LetterCode = std::pair<char16_t, std::uint16_t>;

  static std::size_t pair_index(unsigned lead, unsigned trail) {
    return (lead - 0x80) * 256 + trail;
  }

  void make(int number) {
    PageLetters letters(number);
    for (unsigned byte = 0x80; byte <= 0xFF; ++byte) {
      single_[byte] = letters.letter({static_cast<unsigned char>(byte), 0}, 1);
      if (single_[byte] != 0) codes_.emplace_back(single_[byte], static_cast<std::uint16_t>(byte));
    }
    if (std::find(double_byte_pages.begin(), double_byte_pages.end(), number) !=
        double_byte_pages.end()) {
      make_pairs(letters);
    }
    std::sort(codes_.begin(), codes_.end());
  }

  void make_pairs(PageLetters& letters) {
    pairs_.resize(pair_index(0xFF, 0xFF) + 1);
    for (unsigned lead = 0x80; lead <= 0xFF; ++lead) {
      if (single_[lead] != 0) continue;
      for (unsigned trail = 0x30; trail <= 0xFF; ++trail) {
        const char16_t letter = letters.letter(
            {static_cast<unsigned char>(lead), static_cast<unsigned char>(trail)}, 2);
        if (letter == 0) continue;
        pairs_[pair_index(lead, trail)] = letter;
        codes_.emplace_back(letter, static_cast<std::uint16_t>((lead << 8) | trail));
      }
    }
  }

  std::array<char16_t, 256> single_ = {};
  std::vector<char16_t> pairs_;  // empty for a single-byte page
  std::vector<LetterCode> codes_;
};

namespace {

int trailing_number(std::string_view name) {
  const std::size_t last_letter = name.find_last_not_of("0123456789");
  const std::size_t first = last_letter == std::string_view::npos ? 0 : last_letter + 1;
  if (name.size() - first > 5) return 0;
  int number = 0;
  for (const char digit : name.substr(first))
    number = number * 10 + (digit - '0');
  return number;
}

int page_number(std::string_view spelling) {
  static constexpr std::array<std::pair<std::string_view, int>, 6> names = {
      {{"BIG5", 950},
       {"GB2312", 936},
       {"JOHAB", 1361},
       {"KSC5601", 949},
       {"MACINTOSH", mac_roman},
       {"MACROMAN", mac_roman}}};
  std::string name;
  for (const char c : spelling) {
    if (c >= 'a' && c <= 'z') name += static_cast<char>(c - 'a' + 'A');
    if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9')) name += c;
  }
  for (const auto& [known, number] : names) {
    if (name == known) return number;
  }
  const std::size_t iso = name.find("8859");
  if (iso != std::string::npos) {
    return iso_8859 + trailing_number(std::string_view(name).substr(iso + 4));
  }
  return trailing_number(name);
}

// The letter of strict UTF-8 that `raw` begins with, and its length; length 0 if there is none.
std::pair<char32_t, std::size_t> read_utf8(std::string_view raw) {
  const auto lead = static_cast<unsigned char>(raw[0]);
  if (lead < 0xC2 || lead > 0xF4) return {0, 0};
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (raw.size() < length) return {0, 0};
  char32_t value = lead & (0x7FU >> length);
  for (std::size_t at = 1; at < length; ++at) {
    const auto byte = static_cast<unsigned char>(raw[at]);
    if ((byte & 0xC0) != 0x80) return {0, 0};
    value = (value << 6) | (byte & 0x3FU);
  }
  constexpr std::array<char32_t, 5> lowest = {0, 0, 0x80, 0x800, 0x10000};
  const bool valid =
      value >= lowest[length] && value <= 0x10FFFF && !is_high(value) && !is_low(value);
  return {value, valid ? length : 0};
}

}  // namespace

TextCodec::TextCodec(const Manner& manner)
    : page_(manner.utf8 ? nullptr : &CodePage::of(page_number(manner.code_page))),
      caret_escapes_(manner.caret_escapes) {}

void TextCodec::decode(std::string_view raw, std::wstring& out) const {
  out.resize(raw.size());  // no letter has more units than bytes
  wchar_t* to = out.data();
  if (is_plain(raw)) {
    for (const char byte : raw)
      *to++ = static_cast<unsigned char>(byte);
    return;
  }
  while (!raw.empty()) {
    const auto [letter, length] = read_letter(raw);
    to = put_letter(letter, to);
    raw.remove_prefix(length);
  }
  out.resize(static_cast<std::size_t>(to - out.data()));
}

std::wstring TextCodec::decode(std::string_view raw) const {
  std::wstring out;
  decode(raw, out);
  return out;
}

TextCodec::Letter TextCodec::read_letter(std::string_view raw) const {
  const auto first = static_cast<unsigned char>(raw[0]);
  if (first >= 0x80) return read_high(raw);
  if (first == '^' && caret_escapes_ && raw.size() > 1) {
    if (raw[1] >= '@' && raw[1] <= '_') return {static_cast<char32_t>(raw[1] - '@'), 2};
    if (raw[1] == ' ') return {U'^', 2};
  }
  if (first != '\\') return {first, 1};
  if (const int number = unicode_escape(raw); number >= 0) {
    const auto unit = static_cast<char32_t>(number);
    const std::string_view rest = raw.substr(unicode_escape_length);
    const int next = is_high(unit) ? unicode_escape(rest) : -1;
    if (next >= 0 && is_low(static_cast<char32_t>(next)) && rest[3] == raw[3]) {
      return {combined(unit, static_cast<char32_t>(next)), 2 * unicode_escape_length};
    }
    return {unit, unicode_escape_length};
  }
  if (const int number = multibyte_escape(raw); number >= 0) {
    const auto row = static_cast<std::size_t>(raw[3] - '1');
    const CodePage& page = CodePage::of(multibyte_escape_pages[row]);
    const char16_t letter = page.letter(static_cast<unsigned char>(number >> 8),
                                        static_cast<unsigned char>(number & 0xFF));
    if (letter != 0) return {letter, multibyte_escape_length};
  }
  return {U'\\', 1};
}

// A letter that begins with a byte above 7F; a byte that means nothing is carried.
TextCodec::Letter TextCodec::read_high(std::string_view raw) const {
  const auto first = static_cast<unsigned char>(raw[0]);
  if (page_ == nullptr) {
    const auto [letter, length] = read_utf8(raw);
    if (length > 0) return {letter, length};
    return {carried_byte(first), 1};
  }
  if (const char16_t letter = page_->letter(first); letter != 0) return {letter, 1};
  if (raw.size() > 1) {
    const char16_t letter = page_->letter(first, static_cast<unsigned char>(raw[1]));
    if (letter != 0) return {letter, 2};
  }
  return {carried_byte(first), 1};
}

void TextCodec::encode(std::wstring_view text, std::string& out) const {
  while (!text.empty()) {
    const auto* plain_end = std::find_if_not(text.data(), text.data() + text.size(),
                                             [](wchar_t u) { return is_plain(u); });
    const auto plain = static_cast<std::size_t>(plain_end - text.data());
    std::size_t at = out.size();
    out.resize(at + plain);
    for (const wchar_t unit : text.substr(0, plain))
      out[at++] = static_cast<char>(unit);
    text.remove_prefix(plain);
    if (!text.empty()) text.remove_prefix(append_letter(text, out));
  }
}

std::string TextCodec::encode(std::wstring_view text) const {
  std::string out;
  encode(text, out);
  return out;
}

// Returns how many characters of `text` were written: those of the first letter, or the whole run
// of carried bytes that it begins with.
std::size_t TextCodec::append_letter(std::wstring_view text, std::string& out) const {
  const char32_t unit = unit_at(text, 0);
  if (unit < 0x80) {
    const bool looks_like_escape = unit == '\\' && escape_look(text) > 0;
    const bool ends_strings = unit == 0 && !caret_escapes_;
    if (looks_like_escape || ends_strings) {
      append_unicode_escape(unit, out);
    } else if (unit == '^' && caret_escapes_) {
      out += "^ ";
    } else if (unit < ' ' && caret_escapes_) {
      out += {'^', static_cast<char>(unit + '@')};
    } else {
      out += static_cast<char>(unit);
    }
    return 1;
  }
  const std::size_t length = is_pair(text, 0) ? 2 : 1;
  if (length == 1 && is_carried_byte(unit)) return append_carried(text, out);
  if (length == 1 && (is_high(unit) || is_low(unit))) {
    append_lone_surrogate(unit, out);
    return 1;
  }
  char32_t letter = length == 2 ? combined(unit, unit_at(text, 1)) : unit;
  if (letter > 0x10FFFF) letter = 0xFFFD;
  if (page_ == nullptr) {
    append_utf8(letter, out);
  } else if (const unsigned code = page_->code(letter); code != 0) {
    if (code > 0xFF) out += static_cast<char>(code >> 8);
    out += static_cast<char>(code & 0xFF);
  } else if (letter > 0xFFFF) {
    append_unicode_escape(0xD800 + ((letter - 0x10000) >> 10), out);
    append_unicode_escape(0xDC00 + (letter & 0x3FF), out);
  } else {
    append_unicode_escape(letter, out);
  }
  return length;
}

// A carried byte may stand plain only where it is not read as part of a letter together with the
// bytes behind it, so the run is written from its end and then turned round.
std::size_t TextCodec::append_carried(std::wstring_view text, std::string& out) const {
  std::size_t length = 1;
  while (length < text.size() && is_carried_byte(unit_at(text, length)))
    ++length;
  std::string behind;
  if (length < text.size()) (void)append_letter(text.substr(length), behind);

  const std::size_t start = out.size();
  for (std::size_t at = length; at-- > 0;) {
    const char32_t unit = unit_at(text, at);
    std::string seen(1, static_cast<char>(unit & 0xFF));
    const std::size_t from = out.size() - std::min<std::size_t>(out.size() - start, 3);
    seen.append(out.rbegin(), out.rbegin() + static_cast<std::ptrdiff_t>(out.size() - from));
    seen.append(behind, 0, 1);
    if (read_high(seen).value == unit) {
      out += seen[0];
    } else {
      std::string escape;
      append_lone_surrogate(unit, escape);
      out.append(escape.rbegin(), escape.rend());
    }
  }
  std::reverse(out.begin() + static_cast<std::ptrdiff_t>(start), out.end());
  return length;
}

std::vector<std::string> TextCodec::encode_pieces(std::wstring_view text, std::size_t most) const {
  std::vector<std::string> pieces;
  do {
    std::size_t length = uncut(text, first_units(text, std::min(most, most_piece_bytes)));
    std::string piece = encode(text.substr(0, length));
    while (piece.size() > most_piece_bytes) {
      length = uncut(text, length / 2);
      piece = encode(text.substr(0, length));
    }
    pieces.push_back(std::move(piece));
    text.remove_prefix(length);
  } while (!text.empty());
  return pieces;
}

}  // namespace korvel::dxf
