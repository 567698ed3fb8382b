// Lower-casing across alphabets, and the promise that it never changes a length.
#include "frame/case_mapping.h"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>

#include "frame/utf.h"

namespace korvel {
namespace {

struct Case {
  std::wstring_view upper;
  std::wstring_view lower;
};

constexpr Case cases[] = {
    {L"", L""},
    {L"ROADS_1@[`{", L"roads_1@[`{"},
    {L"\u00C4\u00D6\u00D7\u00DE\u00DF", L"\u00E4\u00F6\u00D7\u00FE\u00DF"},
    {L"\u0100\u0101\u0139\u013A\u0178", L"\u0101\u0101\u013A\u013A\u00FF"},
    {L"\u0130I", L"ii"},
    {L"\u03A3\u0391\u03A3", L"\u03C3\u03B1\u03C3"},
    {L"\u0414\u041E\u0420\u041E\u0413\u0410\u0401", L"\u0434\u043E\u0440\u043E\u0433\u0430\u0451"},
    {L"\u10A0\u13A0\u1E9E\u1F08", L"\u2D00\uAB70\u00DF\u1F00"},
    {L"\u2126\u212A\u2C62\uFF21", L"\u03C9k\u026B\uFF41"},
    {L"\U00010400\U0001E900\U0001F600", L"\U00010428\U0001E922\U0001F600"},
};

TEST(Lower, MapsEveryAlphabetWhateverTheLocale) {
  for (const Case& c : cases) {
    EXPECT_EQ(lower(c.upper), c.lower) << to_utf8(c.upper);
    EXPECT_EQ(lower(c.lower), c.lower) << to_utf8(c.lower);
    EXPECT_TRUE(equal_ignoring_case(c.upper, c.lower)) << to_utf8(c.upper);
  }
}

TEST(Lower, IsIdempotentAndKeepsTheLengthOfEveryCodePoint) {
  std::wstring all;
  for (char32_t code = 1; code <= 0x10FFFF; ++code) {
    if (code < 0xD800 || code > 0xDFFF) append_code_point(code, all);
  }
  const std::wstring once = lower(all);
  EXPECT_EQ(once.size(), all.size());
  EXPECT_TRUE(lower(once) == once);
  EXPECT_TRUE(equal_ignoring_case(all, once));
}

TEST(CaselessFinder, FindsEveryLetterInAllItsCases) {
  for (char32_t code = 1; code <= 0x1FFFF; ++code) {
    std::wstring letter;
    append_code_point(code, letter);
    if (lower(letter) == letter) continue;
    for (const std::wstring& wanted : {letter, lower(letter)}) {
      const CaselessFinder finder(wanted + L"X");
      EXPECT_EQ(finder.find(L"ab" + letter + L"x"), 2U) << to_utf8(letter);
      EXPECT_EQ(finder.find(L"ab" + letter + L"y"), std::wstring::npos) << to_utf8(letter);
    }
  }
}

// Short texts of few letters, so that parts of a find overlap and come again; K has a third form.
TEST(CaselessFinder, FindsWhereTheLowerCasedTextHoldsIt) {
  std::mt19937 random(1);
  const auto letters = [&random](std::size_t most) {
    std::wstring text(random() % (most + 1), L'\0');
    for (wchar_t& letter : text)
      letter = L"aAkK\u212A"[random() % 5];
    return text;
  };
  for (int i = 0; i < 20000; ++i) {
    const std::wstring text = letters(9);
    const std::wstring wanted = letters(3);
    const std::size_t from = random() % 11;
    EXPECT_EQ(CaselessFinder(wanted).find(text, from), lower(text).find(lower(wanted), from))
        << to_utf8(wanted) << " in " << to_utf8(text) << " from " << from;
  }
}

TEST(CaselessFinder, FindsAtEveryPlaceOfALongText) {
  for (std::size_t place = 0; place < 200; ++place) {
    std::wstring text(202, L'x');
    text.replace(place, 2, L"aK");
    EXPECT_EQ(CaselessFinder(L"Ak").find(text, 0), place);
  }
}

TEST(Lower, LeavesLoneSurrogatesAsTheyStand) {
  const std::wstring broken = {L'A', static_cast<wchar_t>(0xD801), L'B',
                               static_cast<wchar_t>(0xDC00)};
  std::wstring expected = broken;
  expected[0] = L'a';
  expected[2] = L'b';
  EXPECT_TRUE(lower(broken) == expected);
}

TEST(LowerInto, ReplacesWhatTheBufferHeld) {
  std::wstring buffer = L"something longer than the text";
  lower_into(L"NAME", buffer);
  EXPECT_EQ(buffer, L"name");
}

TEST(EqualIgnoringCase, TellsDifferentTextsApart) {
  EXPECT_FALSE(equal_ignoring_case(L"road", L"roads"));
  EXPECT_FALSE(equal_ignoring_case(L"@", L"`"));
  EXPECT_FALSE(equal_ignoring_case(L"\u0414", L"\u0435"));
  EXPECT_FALSE(equal_ignoring_case(L"\U00010400", L"\U00010429"));
}

}  // namespace
}  // namespace korvel
