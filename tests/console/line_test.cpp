#include <array>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

#include "host/console/output.h"
#include "host/console/scripted_lines.h"
#include "host/console/selection_set.h"
#include "host/console/typed_text.h"

namespace korvel {
namespace {

using Read = LineSource::Read;

// A file without a name that holds the bytes; the reader closes it.
int file_with(std::string_view bytes) {
  std::FILE* const file = std::tmpfile();
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fflush(file);
  const int copy = dup(fileno(file));
  std::fclose(file);
  lseek(copy, 0, SEEK_SET);
  return copy;
}

TEST(LineReader, CutsLinesWhateverEndsThem) {
  LineReader reader(file_with("\xEF\xBB\xBFone\r\n\ntwo\rthree\n;four"), L"a.scr");
  for (const std::string_view expected : {"one", "", "two\rthree", ";four"}) {
    std::string line;
    ASSERT_EQ(reader.next(line), Read::Line);
    EXPECT_EQ(line, expected);
  }
  std::string line;
  EXPECT_EQ(reader.next(line), Read::End);
}

TEST(LineReader, LosesAnOverlongLineAlone) {
  LineReader reader(file_with(std::string(max_typed_bytes, 'a') + "\r\n" +
                              std::string(max_typed_bytes + 1, 'b') + "\nnext\n"),
                    L"a.scr");
  std::string line;
  EXPECT_EQ(reader.next(line), Read::Line);
  EXPECT_EQ(line.size(), max_typed_bytes);
  EXPECT_EQ(reader.next(line), Read::TooLong);
  EXPECT_EQ(reader.next(line), Read::Line);
  EXPECT_EQ(line, "next");
}

TEST(ScriptedLines, EchoesAndSkipsCommentsOfTheReaderAlone) {
  LineReader reader(file_with("; a comment\nd\xFF\n;\nlast"), L"a.scr");
  ScriptedLines lines({";not one", std::string(1, '\0')}, &reader);
  testing::internal::CaptureStdout();
  std::wstring line;
  EXPECT_FALSE(lines.at_end());
  EXPECT_EQ(lines.next(L"A: ", line), Read::Line);
  EXPECT_EQ(line, L";not one");
  EXPECT_EQ(lines.next(L"A: ", line), Read::NotUtf8);
  EXPECT_EQ(lines.place(), L"-c, line 2");
  EXPECT_EQ(lines.next(L"B: ", line), Read::NotUtf8);
  EXPECT_EQ(lines.next(L"C: ", line), Read::Line);
  EXPECT_TRUE(lines.at_end());
  EXPECT_EQ(lines.place(), L"a.scr, line 4");
  EXPECT_EQ(lines.next(L"D: ", line), Read::End);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "A: ;not one\nA: \nB: \nC: last\nD: \n");
}

TEST(Script, IsReadAsAWholeOrNotAtAll) {
  const std::filesystem::path script = std::filesystem::path(testing::TempDir()) / "a.scr";
  const std::string name = script.string();
  const auto read = [&script](std::string_view bytes) {
    std::ofstream(script, std::ios::binary) << bytes;
    const Result<std::string> whole = read_script(script);
    return whole ? *whole : whole.reason();
  };
  EXPECT_EQ(read("\xEF\xBB\xBF"
                 "a\xC3\xA9\n"),
            "\xEF\xBB\xBF"
            "a\xC3\xA9\n");
  for (const std::string_view bytes : {"\n\nr\xE9gion\n", "\n\na\xC3", "\n\n\xED\xA0\x80\n"}) {
    EXPECT_EQ(read(bytes), name + ", line 3: this is not valid UTF-8; scripts are UTF-8");
  }
  EXPECT_EQ(read({"L\0I\0", 4}), name + ", line 1: this is not valid UTF-8; scripts are UTF-8");
  if (std::filesystem::exists("/dev/zero")) {
    EXPECT_EQ(read_script("/dev/zero").reason(), "/dev/zero: the script is longer than 128 MB");
  }
  std::filesystem::remove(script);
}

TEST(Output, ShowsWhatATerminalWouldObey) {
  const auto cases = std::to_array<std::pair<std::wstring_view, std::wstring_view>>({
      {L"\tRoads: 3\nend", L"\tRoads: 3\nend"},
      {L"a\x1B[2Jb\r\x7F", L"a\\x1B[2Jb\\x0D\\x7F"},
      {L"\x9B\xA0\u061C\u200D\u200E", L"\\u009B\xA0\\u061C\u200D\\u200E"},
      {L"\u200F\u2029\u202A\u202E\u202F", L"\\u200F\u2029\\u202A\\u202E\u202F"},
      {L"\u2065\u2066\u2069\u206A\U0001F600", L"\u2065\\u2066\\u2069\u206A\U0001F600"},
  });
  for (const auto& [text, shown] : cases)
    EXPECT_EQ(visible(text), shown);
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  write_output(
      L"a\x1B"
      L"b");
  complain("a\x1B\xC2\x9B");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "korvel: a\\x1B\\u009B\n");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "a\\x1Bb");
}

TEST(TypedText, Points) {
  struct Case {
    std::wstring_view text;
    std::optional<Point3> point;
  };
  const auto cases = std::to_array<Case>({
      {L"1,2", Point3{1, 2, 0}},
      {L"-1.5,+2e3,.25", Point3{-1.5, 2000, 0.25}},
      {L"1", std::nullopt},
      {L"1,2,3,4", std::nullopt},
      {L"1,2,", std::nullopt},
      {L"1,,2", std::nullopt},
      {L"1, 2", std::nullopt},
      {L"inf,1", std::nullopt},
      {L"1e999,1", std::nullopt},
      {L"+-1,1", std::nullopt},
      {L"\uFF11,1", std::nullopt},
  });
  for (const auto& [text, point] : cases)
    EXPECT_EQ(point_of(text), point) << std::wstring(text);
}

TEST(TypedText, PointsFromTheLastOne) {
  EXPECT_EQ(point_of(L"@1,-2", Point3{10, 20, 30}), (Point3{11, 18, 30}));
  EXPECT_EQ(point_of(L"@1,2,3", Point3{10, 20, 30}), (Point3{11, 22, 33}));
  EXPECT_EQ(point_of(L"@", Point3{10, 20, 30}), (Point3{10, 20, 30}));
  EXPECT_EQ(point_of(L"@"), std::nullopt);
  EXPECT_EQ(point_of(L"@1,2"), std::nullopt) << "there is no last one";
  EXPECT_EQ(point_of(L"@1e308,0", Point3{1e308, 0, 0}), std::nullopt) << "beyond the numbers";
}

TEST(TypedText, Integers) {
  EXPECT_EQ(integer_of(L"+2147483647"), 2147483647);
  EXPECT_EQ(integer_of(L"-2147483648"), -2147483647 - 1);
  for (const std::wstring_view text : {L"", L"+", L"+-1", L"2147483648", L"1.0", L"1 ", L"0x1"})
    EXPECT_EQ(integer_of(text), std::nullopt) << std::wstring(text);
}

TEST(SelectionSet, UndoPutsEverythingBackInItsPlace) {
  SelectionSet set;
  EXPECT_EQ(set.add({{1}, {2}, {3}, {4}}), 0U);
  EXPECT_EQ(set.add({{4}, {5}, {5}}), 2U);
  EXPECT_EQ(set.remove({{1}, {3}, {5}, {9}}), 3U);
  EXPECT_EQ(set.entities(), (EntityList{{2}, {4}}));
  EXPECT_TRUE(set.undo());
  EXPECT_EQ(set.entities(), (EntityList{{1}, {2}, {3}, {4}, {5}}));
  EXPECT_TRUE(set.undo());
  EXPECT_EQ(set.add({{5}}), 0U) << "what was taken back can be added again";
  EXPECT_TRUE(set.undo());
  EXPECT_TRUE(set.undo());
  EXPECT_TRUE(set.entities().empty());
  EXPECT_FALSE(set.undo());
}

}  // namespace
}  // namespace korvel
