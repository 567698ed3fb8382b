// Text files: encodings, line ends, refusals.
#include "frame/text_file.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/utf.h"

namespace korvel {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

using Lines = std::vector<std::wstring>;

Lines lines_of(TextReader& text) {
  Lines lines;
  while (const auto line = text.next_line()) {
    lines.emplace_back(line->text);
    EXPECT_EQ(line->number, lines.size());
  }
  return lines;
}

TEST(ReadText, DecodesByMarkAndPolicy) {
  constexpr auto ansi = TextEncoding::Ansi;
  constexpr auto utf16 = TextEncoding::Utf16;
  struct {
    const char* name;
    std::string bytes;
    TextEncoding unmarked;
    Lines lines;
  } const cases[] = {
      {"empty", "", ansi, {}},
      {"only a mark", "\xEF\xBB\xBF", utf16, {}},
      {"last line without end", "a\nb", ansi, {L"a\n", L"b"}},
      {"blank lines", "\n\n", ansi, {L"\n", L"\n"}},
      {"CR LF", "a\r\nb\r\n", ansi, {L"a\n", L"b\n"}},
      {"lone CR", "a\rb\r\r\nc\r", ansi, {L"a\rb\r\n", L"c\r"}},
      {"NUL and Ctrl+Z", "a\0b\x1A\n"s, ansi, {L"a\0b\x1A\n"s}},
      {"UTF-8 under its mark", "\xEF\xBB\xBF\xD0\x94\n", utf16, {L"\u0414\n"}},
      {"UTF-8 recognised", "\xD0\x94 \xF0\x90\x90\x80", ansi, {L"\u0414 \U00010400"}},
      {"Windows-1252 otherwise", "\x80 caf\xE9 \x81", ansi, {L"\u20AC caf\u00E9 \u0081"}},
      {"ill-formed under its mark", "\xEF\xBB\xBF\xE9\n", ansi, {L"\uFFFD\n"}},
      {"mark cut short", "\xEF\xBB", ansi, {L"\u00EF\u00BB"}},
      {"second mark is text", "\xEF\xBB\xBF\xEF\xBB\xBF", ansi, {L"\uFEFF"}},
      {"UTF-16 little-endian", "\xFF\xFE\x14\x04\r\0\n\0"s, ansi, {L"\u0414\n"}},
      {"UTF-16 big-endian", "\xFE\xFF\x04\x14\0\r\0\n"s, ansi, {L"\u0414\n"}},
      {"UTF-16 without mark", "a\0\n\0b\0"s, utf16, {L"a\n", L"b"}},
      {"line feed inside a unit", "\xFF\xFE\x0A\x0A"s, ansi, {L"\u0A0A"}},
      {"surrogate pair", "\xFF\xFE\x01\xD8\x00\xDC"s, ansi, {L"\U00010400"}},
      {"lone surrogates", "\xFF\xFE\x00\xDC\x01\xD8\n\0"s, ansi, {L"\uFFFD\uFFFD\n"}},
      {"odd byte", "\xFF\xFE\x61\x00\x62"s, ansi, {L"a\uFFFD"}},
      {"one byte of a mark", "\xFF", utf16, {L"\uFFFD"}},
  };
  for (const auto& c : cases) {
    TextReading reading = read_text(c.bytes, c.unmarked);
    EXPECT_FALSE(reading.error) << c.name;
    EXPECT_TRUE(lines_of(reading.text) == c.lines) << c.name;
  }
}

TEST(ReadText, RefusesALineThatIsTooLongAndNamesIt) {
  const std::string longest(max_line_length, 'x');
  EXPECT_FALSE(read_text("\n" + longest + "\r\n" + longest, TextEncoding::Ansi).error);
  TextReading reading = read_text("a\nb\n" + longest + "x\n", TextEncoding::Ansi);
  ASSERT_TRUE(reading.error);
  EXPECT_EQ(reading.error->kind, TextFileErrorKind::LineTooLong);
  EXPECT_EQ(reading.error->line, 3u);
  EXPECT_EQ(reading.error->message, L"Line 3 is longer than 10240 characters.");
  EXPECT_FALSE(reading.text.next_line()) << "nothing of a refused text may be used";
}

TEST(FromUtf8, ReplacesEachIllFormedSequenceOnce) {
  const std::pair<std::string, std::wstring_view> cases[] = {
      {"\xC0\xAF", L"\uFFFD\uFFFD"},
      {"\xE2\x82", L"\uFFFD"},
      {"\xE2\x82x", L"\uFFFDx"},
      {"\xF0\x9F\x98\xC3\xA9", L"\uFFFD\u00E9"},
      {"\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},
      {"\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"\x80", L"\uFFFD"},
      {"\xE0\x80\xAF", L"\uFFFD\uFFFD\uFFFD"},
  };
  for (const auto& [bytes, text] : cases) {
    EXPECT_EQ(from_utf8(bytes), text);
    EXPECT_FALSE(is_valid_utf8(bytes));
  }
  const std::wstring whole = L"a\u007F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF";
  EXPECT_EQ(from_utf8(to_utf8(whole)), whole);
  const std::wstring lone = {static_cast<wchar_t>(0xDC00), L'a', static_cast<wchar_t>(0xD800)};
  EXPECT_EQ(from_utf8(to_utf8(lone)), L"\uFFFDa\uFFFD");
}

class TextFile : public testing::Test {
 protected:
  void SetUp() override { fs::create_directories(folder_); }
  void TearDown() override { fs::remove_all(folder_); }

  static void put(const fs::path& path, std::string_view bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
  }

  const fs::path folder_ =
      fs::path(testing::TempDir()) /
      ("text_file_"s + testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(TextFile, IsReadBackAsItWasWritten) {
  const Lines lines = {L"Roads\tStra\u00DFen\n", L"\n", L"\u0414\U00010400"};
  for (const TextEncoding encoding : {TextEncoding::Ansi, TextEncoding::Utf16}) {
    TextFileWriter writer(encoding);
    for (const std::wstring& line : lines)
      writer.write(line);
    put(folder_ / "a.txt", writer.bytes());
    TextReading reading = read_text_file(folder_ / "a.txt", TextEncoding::Ansi);
    EXPECT_FALSE(reading.error);
    EXPECT_TRUE(lines_of(reading.text) == lines);
  }
}

TEST_F(TextFile, HasTheBytesOfItsEncoding) {
  TextFileWriter utf16(TextEncoding::Utf16);
  utf16.write(L"\u0414\n\U00010400");
  EXPECT_EQ(utf16.bytes(), "\xFF\xFE\x14\x04\r\0\n\0\x01\xD8\x00\xDC"s);
#ifndef _WIN32
  TextFileWriter ansi(TextEncoding::Ansi);
  ansi.write(L"\u0414\n\nx");
  EXPECT_EQ(ansi.bytes(), "\xD0\x94\n\nx");
#endif
}

TEST_F(TextFile, ReportsWhatCannotBeReadWithItsName) {
  put(folder_ / "long.txt", std::string(max_line_length + 1, 'x'));
  put(folder_ / "large.txt", "");
  fs::resize_file(folder_ / "large.txt", max_text_file_bytes + 1);
  const std::pair<const char*, TextFileErrorKind> cases[] = {
      {"missing.txt", TextFileErrorKind::CannotOpen},
      {".", TextFileErrorKind::CannotOpen},
      {"long.txt", TextFileErrorKind::LineTooLong},
      {"large.txt", TextFileErrorKind::TooLarge},
  };
  for (const auto& [name, kind] : cases) {
    TextReading reading = read_text_file(folder_ / name, TextEncoding::Ansi);
    ASSERT_TRUE(reading.error) << name;
    EXPECT_EQ(reading.error->kind, kind) << name;
    EXPECT_NE(reading.error->message.find(path_text(folder_ / name)), std::wstring::npos) << name;
  }
}

TEST_F(TextFile, LargeOnesAreReadAsUtf8WhateverTheirLines) {
  const std::string line(max_line_length + 1, 'x');
  const struct {
    std::string bytes;
    std::string utf8;
  } cases[] = {
      {line + "\r\n\xC3\xA9", line + "\r\n\xC3\xA9"},
      {"\xEF\xBB\xBF"
       "a\r",
       "a\r"},
      {"\xEF\xBB\xBF"
       "a\xFF",
       "a\xEF\xBF\xBD"},
      {"\xE9\x80", "\xC3\xA9\xE2\x82\xAC"},
      {std::string("\xFF\xFE\x34\xD8\x1E\xDD\x34\xD8x", 9),
       "\xF0\x9D\x84\x9E\xEF\xBF\xBD\xEF\xBF\xBD"},
  };
  for (const auto& c : cases) {
    put(folder_ / "a.csv", c.bytes);
    std::string utf8;
    EXPECT_FALSE(read_utf8_file(folder_ / "a.csv", 1 << 20, TextEncoding::Ansi, utf8));
    EXPECT_EQ(utf8, c.utf8);
  }
  std::string utf8;
  put(folder_ / "a.csv", line);
  const auto error = read_utf8_file(folder_ / "a.csv", max_line_length, TextEncoding::Ansi, utf8);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->kind, TextFileErrorKind::TooLarge);
}

}  // namespace
}  // namespace korvel
