// How the strings of one drawing file are written as bytes: code page or UTF-8, and the escapes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korvel::dxf {

class CodePage;

// Cheap to copy; the tables behind it are made once for each code page and live as long as the
// program. Safe to use from several threads.
//
// A string is read on its own, never together with its neighbours, in one pass from the left, so
// what an escape yields is never taken for the start of another one:
//   \U+XXXX   a UTF-16 unit in hex digits of either case; a high and a low half directly after
//             each other are one letter if their first digits (the D) have the same case
//   \M+nxxxx  two bytes of code page 932, 950, 949, 1361 or 936 for n = 1 to 5
//   ^c        c from @ to _: control character c - 64; "^ " is a caret (ASCII framing only)
// Whatever looks like one of these but is not stays as it stands.
class TextCodec {
 public:
  struct Manner {
    std::string code_page;      // value of $DWGCODEPAGE in any spelling; unknown or empty: 1252
    bool utf8 = false;          // AC1021 and later; the code page then does not matter
    bool caret_escapes = true;  // ASCII framing
  };
  explicit TextCodec(const Manner& manner);

  // Replaces `out`. Bytes that mean nothing in the encoding become lone surrogates U+DC80 to
  // U+DCFF with the byte in the low half; encode gives the same byte back.
  void decode(std::string_view raw, std::wstring& out) const;
  [[nodiscard]] std::wstring decode(std::string_view raw) const;

  // Appends bytes such that decode gives `text` back, whatever it holds: letters outside the code
  // page, control characters, lone surrogates, text that looks like an escape. The result holds
  // no NUL, and no line break either in ASCII framing. Only numbers above U+10FFFF, which are no
  // letters, are written as U+FFFD.
  void encode(std::wstring_view text, std::string& out) const;
  [[nodiscard]] std::string encode(std::wstring_view text) const;

  // The text in encoded pieces of at most `most` UTF-16 units and 2,000 bytes each, but at least
  // one letter. No cut lies inside a letter or an escape, nor (if `most` leaves room) inside text
  // that looks like one. The decoded pieces, one after the other, give the text; empty text is
  // one empty piece.
  [[nodiscard]] std::vector<std::string> encode_pieces(std::wstring_view text,
                                                       std::size_t most) const;

 private:
  struct Letter {
    char32_t value;
    std::size_t length;  // bytes read
  };

  [[nodiscard]] Letter read_letter(std::string_view raw) const;
  [[nodiscard]] Letter read_high(std::string_view raw) const;
  [[nodiscard]] std::size_t append_letter(std::wstring_view text, std::string& out) const;
  [[nodiscard]] std::size_t append_carried(std::wstring_view text, std::string& out) const;

  const CodePage* page_;  // null: UTF-8
  bool caret_escapes_;
};

}  // namespace korvel::dxf
