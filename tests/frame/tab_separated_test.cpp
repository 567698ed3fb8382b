// Lines of mapping and alias files cut into fields.
#include "frame/tab_separated.h"

#include <gtest/gtest.h>
#include <string_view>
#include <vector>

namespace korvel {
namespace {

using Fields = std::vector<std::wstring_view>;

TEST(TabSeparated, CutsLinesIntoFields) {
  struct {
    std::wstring_view line;
    std::wstring_view said;
    Fields fields;
  } const cases[] = {
      {L"Door\tNUM\tDoors\tNumber\t? note\tmore\r\n",
       L"Door\tNUM\tDoors\tNumber",
       {L"Door", L"NUM", L"Doors", L"Number"}},
      {L"\t\ta\t\t\tb\t\n", L"\t\ta\t\t\tb", {L"a", L"b"}},
      {L" a b \t  c?", L" a b \t  c", {L"a b", L"c"}},
      {L"a\t \tb", L"a\t \tb", {L"a", L"", L"b"}},
      {L"?a\tb", L"", {}},
      {L" \t\r\n", L"", {}},
      {L"", L"", {}},
      {L"a\rb\t\x0b"
       L"c\x0b",
       L"a\rb\t\x0b"
       L"c\x0b",
       {L"a\rb",
        L"\x0b"
        L"c\x0b"}},
      {std::wstring_view(L"a\0\tb\n", 5),
       std::wstring_view(L"a\0\tb", 4),
       {std::wstring_view(L"a\0", 2), L"b"}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(without_comment(c.line, L'?'), c.said);
    EXPECT_EQ(fields_of(c.line, L'?', only_blanks), c.fields);
  }
}

TEST(TabSeparated, TakesMarkAndTrimmedCharactersFromTheCaller) {
  EXPECT_EQ(fields_of(L"\x0b"
                      L"Roads \r\tWhy?\f# a note",
                      L'#', white_space),
            (Fields{L"Roads", L"Why?"}));
}

}  // namespace
}  // namespace korvel
