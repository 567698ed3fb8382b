// The text codec: what bytes mean, how letters are written, and that no text is ever lost.
#include "host/standalone/dxf/text_codec.h"

#include <gtest/gtest.h>
#include <random>

namespace korvel::dxf {
namespace {

using namespace std::string_literals;

TextCodec codec(const char* page, bool caret_escapes = true) {
  return TextCodec({.code_page = page, .caret_escapes = caret_escapes});
}

TextCodec utf8_codec(bool caret_escapes = true) {
  return TextCodec({.code_page = "ANSI_1252", .utf8 = true, .caret_escapes = caret_escapes});
}

std::wstring wide(std::initializer_list<unsigned> units) {
  std::wstring text;
  for (const unsigned unit : units)
    text += static_cast<wchar_t>(unit);
  return text;
}

// Spelled out so that the compiler cannot join the halves of a pair.
const std::wstring smile = sizeof(wchar_t) == 2 ? wide({0xD83D, 0xDE00}) : wide({0x1F600});

TEST(TextCodec, KnowsTheCodePagesInEverySpelling) {
  struct {
    const char* page;
    const char* raw;
    unsigned letter;
  } const cases[] = {
      {"ANSI_1252", "\xB0", 0xB0},
      {"ansi_1252", "\x80", 0x20AC},
      {"", "\x80", 0x20AC},
      {"ASCII", "\x80", 0x20AC},
      {"UNDEFINED", "\x80", 0x20AC},
      {"ANSI_4711", "\x80", 0x20AC},
      {"ANSI_037", "\x80", 0x20AC},
      {"ANSI_1251", "\xC0", 0x0410},
      {"ANSI_1250", "\xB9", 0x0105},
      {"ANSI_1255", "\xE0", 0x05D0},
      {"ANSI_1258", "\xF2", 0x0323},
      {"ANSI_874", "\xA1", 0x0E01},
      {"dos437", "\x81", 0xFC},
      {"DOS850", "\x81", 0xFC},
      {"DOS852", "\xA5", 0x0105},
      {"MAC-ROMAN", "\x8A", 0xE4},
      {"8859_1", "\x80", 0x80},
      {"ISO8859-2", "\xA1", 0x0104},
      {"iso_8859-15", "\xA4", 0x20AC},
      {"ANSI_932", "\x83\x5C", 0x30BD},
      {"dos932", "\xB1", 0xFF71},
      {"ANSI_936", "\xD6\xD0", 0x4E2D},
      {"gb2312", "\xD6\xD0", 0x4E2D},
      {"ANSI_949", "\xB0\xA1", 0xAC00},
      {"ksc5601", "\xB0\xA1", 0xAC00},
      {"ANSI_950", "\xA5\x5C", 0x529F},
      {"big5", "\xA5\x5C", 0x529F},
      {"ANSI_1361", "\x88\x61", 0xAC00},
      {"johab", "\x88\x61", 0xAC00},
  };
  for (const auto& [page, raw, letter] : cases) {
    EXPECT_EQ(codec(page).decode(raw), wide({letter})) << page;
    EXPECT_EQ(codec(page).encode(wide({letter})), raw) << page;
  }
  EXPECT_EQ(utf8_codec().decode("\xE2\x88\x85\xF0\x9F\x98\x80"), L"\x2205" + smile);
}

TEST(TextCodec, DecodesEscapesInOnePassFromTheLeft) {
  struct {
    std::string raw;
    std::wstring text;
  } const cases[] = {
      {"108\\U+00B0", L"108\xB0"},
      {"\\U+00b0\\U+00B01",
       L"\xB0\xB0"
       L"1"},
      {"\\U+00B \\U+00BG \\u+00B0 \\U+", L"\\U+00B \\U+00BG \\u+00B0 \\U+"},
      {"\\U+D83D\\U+DE00\\U+d83d\\U+de00", smile + smile},
      {"\\U+D83D\\U+00B0", wide({0xD83D, 0xB0})},
      {"\\U+005CU+00B0", L"\\U+00B0"},
      {"\\U+005EJ", L"^J"},
      {"\\M+1835C\\M+2A55C\\M+3B0A1\\M+48861\\M+5D6D0",
       wide({0x30BD, 0x529F, 0xAC00, 0xAC00, 0x4E2D})},
      {"\\M+1FFFF\\M+0835C\\M+6835C\\M+1835", L"\\M+1FFFF\\M+0835C\\M+6835C\\M+1835"},
      {"a^Jb^Ic^ d^^", L"a\nb\tc^d\x1E"},
      {"^j^1^\xB0^", L"^j^1^\xB0^"},
      {"^\\U+00B0", L"\x1CU+00B0"},
      {"\\S0.01^ 0.02;%%d\\P", L"\\S0.01^0.02;%%d\\P"},
      {"", L""},
  };
  for (const auto& [raw, text] : cases)
    EXPECT_EQ(codec("").decode(raw), text) << raw;
  EXPECT_EQ(codec("", false).decode("a^Jb^ \n"), L"a^Jb^ \n");
  EXPECT_EQ(utf8_codec().decode("\xC2\xB0\\U+00B0"), L"\xB0\xB0");
  // Trail bytes that look like a backslash or a caret belong to their letter.
  EXPECT_EQ(codec("ANSI_932").decode("\x83\x5CU+00B0\x83\x5EJ"), L"\x30BDU+00B0\x30BFJ");
}

TEST(TextCodec, FindsTheOneAwkwardByteAtEveryPlace) {
  for (std::size_t length = 1; length < 20; ++length) {
    for (std::size_t at = 0; at < length; ++at) {
      std::string raw(length, ']');
      std::wstring text(length, L']');
      raw[at] = '\xB0';
      text[at] = L'\xB0';
      EXPECT_EQ(codec("").decode(raw), text);
      raw.replace(at, 1, "^ ");
      text[at] = L'^';
      EXPECT_EQ(codec("").decode(raw), text);
      raw.replace(at, 2, "\\U+2205");
      text[at] = L'\x2205';
      EXPECT_EQ(codec("").decode(raw), text);
    }
  }
}

TEST(TextCodec, WritesTheSimplestFormThatReadsBack) {
  const std::wstring text = L"\\P\\U+1%%d^\n\xB0\x2205\\U+00B0" + smile + L'\0';
  EXPECT_EQ(codec("").encode(text), "\\P\\U+1%%d^ ^J\xB0\\U+2205\\U+005CU+00B0\\U+D83D\\U+DE00^@");
  EXPECT_EQ(codec("", false).encode(text),
            "\\P\\U+1%%d^\n\xB0\\U+2205\\U+005CU+00B0\\U+D83D\\U+DE00\\U+0000");
  EXPECT_EQ(utf8_codec().encode(text),
            "\\P\\U+1%%d^ ^J\xC2\xB0\xE2\x88\x85\\U+005CU+00B0\xF0\x9F\x98\x80^@");
  // A pair written as two characters is not the letter.
  if (sizeof(wchar_t) == 4) {
    EXPECT_EQ(codec("").decode(codec("").encode(wide({0xD83D, 0xDE00}))), wide({0xD83D, 0xDE00}));
    EXPECT_EQ(utf8_codec().encode(wide({0x110000})), "\xEF\xBF\xBD");
  }
  std::string out = "kept";
  codec("").encode(L"+", out);
  EXPECT_EQ(out, "kept+");
}

TEST(TextCodec, CarriesBytesThatMeanNothing) {
  EXPECT_EQ(codec("ANSI_1252").decode("a\x81z"), wide({'a', 0xDC81, 'z'}));
  for (const char* raw : {"\xC3", "\xE2\x88", "\xED\xA0\x80", "\xC0\x80", "\xF5\x80\x80\x80",
                          "\xB0z", "\xF4\x90\x80\x80", "\xE2\x88z\xC3\xC3\xB0"}) {
    EXPECT_EQ(utf8_codec().decode(raw)[0],
              static_cast<wchar_t>(0xDC00 + static_cast<unsigned char>(*raw)));
    EXPECT_EQ(utf8_codec().encode(utf8_codec().decode(raw)), raw);
  }
  for (const char* raw : {"\x83", "\x83 \x83\xFF", "\xFF\xFE", "\xA0\x80", "\xFD\\P"}) {
    EXPECT_EQ(codec("ANSI_932").encode(codec("ANSI_932").decode(raw)), raw);
  }
}

TEST(TextCodec, CutsPiecesBetweenLetters) {
  using Pieces = std::vector<std::string>;
  EXPECT_EQ(codec("").encode_pieces(L"", 250), Pieces{""});
  EXPECT_EQ(codec("").encode_pieces(L"abcde", 2), (Pieces{"ab", "cd", "e"}));
  EXPECT_EQ(codec("").encode_pieces(L"^^\x2205", 2), (Pieces{"^ ^ ", "\\U+2205"}));
  EXPECT_EQ(utf8_codec().encode_pieces(L"a" + smile + smile, 2),
            (Pieces{"a", "\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"}));
  EXPECT_EQ(codec("").encode_pieces(smile, 0), Pieces{"\\U+D83D\\U+DE00"});
  // Nobody who joins the pieces first shall see an escape that the text does not have.
  EXPECT_EQ(codec("").encode_pieces(L"1234\\U+00B0", 8), (Pieces{"1234", "\\U+005CU+00B0"}));
  for (const std::string& piece : codec("").encode_pieces(std::wstring(3000, L'\x2205'), 100000)) {
    EXPECT_LE(piece.size(), 2000U);
  }
}

std::vector<TextCodec> all_codecs() {
  std::vector<TextCodec> codecs;
  for (const bool caret : {false, true}) {
    for (const char* page :
         {"ANSI_1252", "ANSI_1251", "ANSI_1255", "ANSI_1258", "ANSI_874", "dos850", "MAC-ROMAN",
          "8859_5", "ANSI_932", "ANSI_936", "ANSI_949", "ANSI_950", "ANSI_1361"}) {
      codecs.push_back(codec(page, caret));
    }
    codecs.push_back(utf8_codec(caret));
  }
  return codecs;
}

TEST(TextCodec, EveryTextComesBackWholeAndInPieces) {
  const std::wstring pool = L"\\\\\\^^UM+++0015ABFab \"'%dPJ@_]\x7F\x01\x1B\x1C\x1F\t\r\n" +
                            wide({0, 0x80, 0x81, 0xA0, 0xB0, 0xE9, 0x2205, 0x20AC, 0x20A9, 0xA5}) +
                            wide({0x410, 0x5D0, 0x323, 0xE01, 0x30BD, 0x4E2D, 0xAC00, 0x529F}) +
                            wide({0xFFFD, 0xFFFF, 0xD83D, 0xDBFF, 0xDE00, 0xDC00, 0xDC7F}) + smile;
  const std::wstring snippets[] = {L"\\U+00B0", L"\\U+D83D", L"\\U+dE00", L"\\M+1835C", L"^J"};
  std::mt19937 random(7);
  const auto below = [&random](std::size_t end) { return random() % end; };
  for (const TextCodec& codec : all_codecs()) {
    for (int round = 0; round < 3000; ++round) {
      std::wstring text;
      for (std::size_t letters = below(24); letters > 0; --letters) {
        const std::size_t kind = below(10);
        if (kind == 0) text += snippets[below(std::size(snippets))];
        if (kind < 4) text += static_cast<wchar_t>(0xDC80 + below(0x80));
        if (kind >= 4) text += pool[below(pool.size())];
      }
      const std::string raw = codec.encode(text);
      ASSERT_EQ(codec.decode(raw), text) << raw;
      ASSERT_EQ(raw.find('\0'), std::string::npos);
      const std::size_t most = 1 + below(12);
      std::wstring joined;
      for (const std::string& piece : codec.encode_pieces(text, most)) {
        const std::wstring part = codec.decode(piece);
        ASSERT_LE(part.size(), std::max<std::size_t>(most, smile.size()));
        joined += part;
      }
      ASSERT_EQ(joined, text) << raw;
    }
  }
}

TEST(TextCodec, EveryBytesAreReadAndTheirTextComesBack) {
  std::mt19937 random(11);
  const std::string pool = "\\U+\\M+15DdE0F^J@ \n\x83\xC3\xE2\x88\x85\xB0\xF0\x9F\x98\x80\xFF"s;
  for (const TextCodec& codec : all_codecs()) {
    for (int round = 0; round < 3000; ++round) {
      std::string raw;
      for (std::size_t bytes = random() % 30; bytes > 0; --bytes) {
        raw += random() % 2 == 0 ? pool[random() % pool.size()] : static_cast<char>(random());
      }
      const std::wstring text = codec.decode(raw);
      ASSERT_EQ(codec.decode(codec.encode(text)), text);
    }
  }
  // Without escapes UTF-8 gives back the very bytes, valid or not.
  for (int round = 0; round < 20000; ++round) {
    std::string raw;
    for (std::size_t bytes = random() % 12; bytes > 0; --bytes) {
      raw += static_cast<char>(0x80 + random() % 0x80);
    }
    ASSERT_EQ(utf8_codec().encode(utf8_codec().decode(raw)), raw);
  }
}

}  // namespace
}  // namespace korvel::dxf
