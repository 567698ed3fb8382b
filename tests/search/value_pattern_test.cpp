// What a value pattern says to values of every type, plain and with Extended.
#include "search/value_pattern.h"

#include <gtest/gtest.h>
#include <ostream>
#include <vector>

#include "frame/utf.h"
#include "frame/value_text.h"

namespace korvel {

void PrintTo(const ValuePattern& pattern, std::ostream* out) {
  *out << to_utf8(pattern.description());
}

namespace {

using Values = std::vector<ODValue>;

struct Case {
  const wchar_t* pattern;
  Values passing;
  Values failing;
};

const ODValue no_value;
const Point3 origin;
const Point3 one_two_three{1, 2, 3};

void expect_each(bool extended, const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    ValuePattern pattern(c.pattern, extended);
    const auto ask = [&pattern](const ODValue& value, bool expected) {
      EXPECT_EQ(pattern(view_of(value)), expected)
          << testing::PrintToString(pattern) << ": " << to_utf8(type_name(type_of(value))) << " "
          << to_utf8(value_text(view_of(value)));
    };
    for (const ODValue& value : c.passing)
      ask(value, true);
    for (const ODValue& value : c.failing)
      ask(value, false);
  }
}

TEST(ValuePattern, PlainIsContainedWhateverItHolds) {
  expect_each(false, {{L"road", {L"ROAD1", L"Main Road"}, {L"roa d", L"ro", L""}},
                      {L"\u00D6L", {L"\u00F6l", L"K\u00D6LN"}, {L"OL"}},
                      {L"\t\n a\n", {L"b A"}, {L"a", L"ba"}},
                      {L"<5", {L"x<5y"}, {4, 4.0, L"4"}},
                      {L"<>a", {L"<>A"}, {L"b"}},
                      {L"a*b", {L"xA*By"}, {L"ab", L"acb"}},
                      {L"**", {L"x**"}, {L"*"}},
                      {L"*", {L"", 0, origin, no_value}, {}},
                      {L"", {L"", 0, origin, no_value}, {}},
                      {L"5", {5, -150, 0.5, Point3{5, 0, 0}}, {4, 4.0, origin, no_value}},
                      {L"3.0", {3.0, 13.0, Point3{3, 0, 0}}, {3, 3.5}},
                      {L"0,2", {one_two_three}, {0.2}}});
}

TEST(ValuePattern, OperatorsCompareByType) {
  expect_each(true, {{L"<>abc", {L"abcd", L"", 1, 0.5}, {L"ABC", 0, 0.0, origin, no_value}},
                     {L"<> a b \n", {L" a b ", 0.5}, {L"A B"}},
                     {L"<>", {L"a", 1}, {L"", 0, no_value}},
                     {L"<>5", {L"5.0", 4, 5.1, 4.999999999999999}, {L"5", 5, 5.0, one_two_three}},
                     {L">abc", {L"abd", L"b", L"abcd"}, {L"ABD", L"abc", L"Z", L"", no_value}},
                     {L"> 12abc", {13, 12.5}, {12, 12.0, -13, L"", one_two_three}},
                     {L">=5", {1, 0.1, L"=6"}, {0, -1, L"5"}},
                     {L"<abc", {L"ABD", L"abb", L""}, {L"abc", L"abd", no_value}},
                     {L"<-1.5", {-2, -1.6}, {-1, -1.5, 0.0, origin}},
                     {L"<2147483648", {2147483646, 2147483647.5}, {2147483647, 2147483648.0}},
                     {L">*", {L"a", 1}, {L"*", L" ", 0}},
                     {L" >5", {L" >5", 0}, {6, L">5"}}});
}

TEST(ValuePattern, WithoutOperatorItIsEquality) {
  expect_each(true, {{L"abc", {L"abc", 0, 0.0}, {L"ABC", L"abcd", 1, origin, no_value}},
                     {L" abc\t", {L" abc"}, {L"abc", L" abc\t"}},
                     {L"7.9", {7, 7.9}, {8, 7.0, 7.900000000000001}},
                     {L"", {L"", 0, 0.0}, {L" ", origin, no_value}},
                     {L"1,2,3", {1, 1.0, L"1,2,3"}, {one_two_three}}});
}

TEST(ValuePattern, WildcardsMatchTheText) {
  expect_each(true, {{L"*", {L"", 0, origin, no_value}, {}},
                     {L"***", {L"", 0, origin, no_value}, {}},
                     {L"ab*", {L"abc", L"ABab"}, {L"ab", L"xab", L"a", no_value}},
                     {L"*ab", {L"xab", L"abab", L"ABxAB"}, {L"ab", L"abx", L"b"}},
                     {L"*aa", {L"aaaa", L"xaa"}, {L"aaa", L"aa"}},
                     {L"*ab*", {L"xabx", L"abab", L"abxabx"}, {L"ab", L"abx", L"xab"}},
                     {L"a*b", {L"ab", L"acb", L"aBb", L"abab"}, {L"a", L"b", L"aba", L"bab"}},
                     {L"a*c*b", {L"acb", L"axcyb", L"ACCB"}, {L"ab", L"abc", L"acbx"}},
                     {L"*b*a*", {L"xbay", L"bxbay"}, {L"ab", L"xba", L"bay", L"xabx"}},
                     {L"aba*ba", {L"ababa", L"abaxba"}, {L"aba", L"abaa"}},
                     {L"a**b", {L"ab", L"axb"}, {L"a*bc"}},
                     {L"**ab**", {L"xabx", L"abab"}, {L"ab", L"abx", L"xab"}},
                     {L"*\u0414\u041E*", {L"\u0434\u0434\u043e\u0434"}, {L"\u0434\u043e\u0434"}},
                     {L"1*", {10, 1.0, one_two_three}, {1, 21, no_value}},
                     {L"*5", {15, 0.5, 55}, {5, 5.0}},
                     {L"*.5*", {0.51, Point3{0.5, 0, 0}}, {0.5, 5}}});
}

TEST(ValuePattern, SaysWhatItAsksFor) {
  const std::pair<ValuePattern, std::wstring> cases[] = {{{L"Road\n", false}, L"contains \"Road\""},
                                                         {{L"<>5", false}, L"contains \"<>5\""},
                                                         {{L"<> 5 ", true}, L"differs from \"5\""},
                                                         {{L">5", true}, L"is greater than \"5\""},
                                                         {{L"<5", true}, L"is smaller than \"5\""},
                                                         {{L"3.5 ", true}, L"is \"3.5 \""},
                                                         {{L"*ab", true}, L"matches \"*ab\""},
                                                         {{L"*\t", true}, L"any value"},
                                                         {{L"*", false}, L"any value"}};
  for (const auto& [pattern, description] : cases)
    EXPECT_EQ(pattern.description(), description);
}

}  // namespace
}  // namespace korvel
