#include <array>
#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

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
  LineReader reader(file_with("\xEF\xBB\xBFone\r\n\ntwo\rthree\n;four"));
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
                              std::string(max_typed_bytes + 1, 'b') + "\nnext\n"));
  std::string line;
  EXPECT_EQ(reader.next(line), Read::Line);
  EXPECT_EQ(line.size(), max_typed_bytes);
  EXPECT_EQ(reader.next(line), Read::TooLong);
  EXPECT_EQ(reader.next(line), Read::Line);
  EXPECT_EQ(line, "next");
}

TEST(ScriptedLines, EchoesAndSkipsCommentsOfTheScriptAlone) {
  LineReader reader(file_with("; a comment\nd\xFF\n;\n"));
  ScriptedLines lines({";not one"}, &reader, ScriptedLines::Comments::Skip);
  testing::internal::CaptureStdout();
  std::wstring line;
  EXPECT_FALSE(lines.at_end());
  EXPECT_EQ(lines.next(L"A: ", line), Read::Line);
  EXPECT_EQ(line, L";not one");
  EXPECT_EQ(lines.next(L"B: ", line), Read::Line);
  EXPECT_EQ(line, L"d\uFFFD");
  EXPECT_TRUE(lines.at_end());
  EXPECT_EQ(lines.next(L"C: ", line), Read::End);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "A: ;not one\nB: d\xEF\xBF\xBD\nC: \n");
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
