// What becomes of single values, by search text and type, and of every occurrence of a pattern.
#include "values/value_replacement.h"

#include <gtest/gtest.h>
#include <vector>

#include "frame/utf.h"
#include "frame/value_text.h"

namespace korvel {
namespace {

constexpr const wchar_t* unchanged = nullptr;

TEST(TextReplacement, ReplacesEveryOccurrence) {
  struct Case {
    const wchar_t* pattern;
    const wchar_t* text;
    const wchar_t* replacement;
    const wchar_t* expected;
  };
  for (const Case& c : std::vector<Case>{
           {L"ab", L"Abcab", L"X", L"XcX"},
           {L"ab", L"ba", L"X", unchanged},
           {L"", L"ab", L"X", unchanged},
           {L"ab", L"", L"X", unchanged},
           {L"aa", L"aaaaa", L"b", L"bba"},
           // A replacement that holds the pattern, or nothing.
           {L"a", L"aba", L"aa", L"aabaa"},
           {L"b", L"abab", L"", L"aa"},
           {L"ab", L"aabb", L"", L"ab"},
           {L"x", L"x", L"a*", L"a*"},
           // Letters that change neither their number nor their place when lowered.
           {L"\u00E4", L"\u00C4\u00E4\u00DF\u0130i", L"-", L"--\u00DF\u0130i"},
           // Wildcards: inside, at the beginning, at the end.
           {L"a*c", L"xabcxc", L"-", L"x-xc"},
           {L"a*c", L"ac-aXC", L"-", L"---"},
           {L"a*c", L"cba", L"-", unchanged},
           {L"a*b*c", L"abbbcc", L"-", L"-c"},
           {L"a**c", L"xac", L"-", L"x-"},
           {L"*b", L"xabyb.", L"-", L"--."},
           {L"*b", L"bab", L"-", L"-"},
           {L"*b", L"b", L"-", unchanged},
           {L"b*", L"abc", L"-", L"a-"},
           {L"b*", L"ab", L"-b", L"a-b"},
           {L"*b*", L"abc", L"abc", L"abc"},
           {L"*b*", L"bcd", L"-", unchanged},
           {L"**", L"abc", L"-", L"-"},
           {L"**", L"", L"-", unchanged},
       }) {
    std::wstring out;
    const bool replaced = replace_occurrences(TextPattern(c.pattern), c.text, c.replacement, out);
    EXPECT_EQ(replaced, c.expected != unchanged) << to_utf8(c.pattern) << " in " << to_utf8(c.text);
    if (replaced && c.expected != unchanged) {
      EXPECT_EQ(out, c.expected) << to_utf8(c.pattern) << " in " << to_utf8(c.text);
    }
  }
}

TEST(ValueReplacement, TheTypeDecidesWhatMatchesAndHowTheTextIsRead) {
  using Text = std::wstring;
  struct Case {
    const wchar_t* search;
    const wchar_t* replacement;
    ODValue value;
    const wchar_t* expected;  // the text of the new value
  };
  const ODValue no_value;
  const Point3 point{1, 2, 3};
  for (const Case& c : std::vector<Case>{
           {L"*", L"7.9", 3, L"7"},
           {L"*", L"7.9", 3.0, L"7.9"},
           {L"*", L"n/a", 3, L"0"},
           {L"*", L"N/A", Text(), L"N/A"},
           {L"*", L"4,5,6", point, L"4.000000,5.000000,6.000000"},
           {L"*", L"4,5", point, unchanged},
           {L"*", L"4", no_value, unchanged},
           {L"<>5", L"0", 5, unchanged},
           {L"<>5", L"0", -5, L"0"},
           {L"<> 5\t", L"0", 5.0, unchanged},
           {L"<>5", L"0", 5.5, L"0.0"},
           {L"<>Abc", L"x", Text(L"aBC"), unchanged},
           {L"<>\tAbc ", L"x", Text(L"abc"), unchanged},
           {L"<>abc", L"x", Text(L"abcd"), L"x"},
           {L"<>", L"x", Text(), unchanged},
           {L"<>", L"x", Text(L" "), L"x"},
           {L"<>1,2,3", L"4,5,6", point, unchanged},
           // The sign is reversed.
           {L">10", L"0", 9, L"0"},
           {L">10", L"0", 10, unchanged},
           {L">10", L"0", 12, unchanged},
           {L"> 1E1", L"0", 9.999, L"0.0"},
           {L">10", L"x", Text(L"09"), L"x"},
           {L">10", L"x", Text(L"9"), unchanged},
           {L">0,0,0", L"4,5,6", point, unchanged},
           // Letter case counts, but the search text is taken in lower case.
           {L">B", L"x", Text(L"B"), L"x"},
           {L">B", L"x", Text(L"b"), unchanged},
           // The character behind the sign is skipped.
           {L"< 10", L"0", 9, L"0"},
           {L"< 10", L"0", 10, unchanged},
           {L"<10", L"7", 9, unchanged},
           {L"<10", L"7", -1, L"7"},
           {L"<=ab", L"x", Text(L"aa"), L"x"},
           {L"<", L"7", -1, L"7"},
           {L"<", L"7", Text(), unchanged},
           // Patterns look at the value's text.
           {L"1", L"2", 101, L"202"},
           {L"0.", L"x", 10.5, L"1.0"},
           {L".0", L"", 10.0, L"10.0"},
           {L"*.", L"9.", 10.5, L"9.5"},
           {L"2.000000", L"5", point, L"1.000000,5.000000,3.000000"},
           {L",", L";", point, unchanged},
           {L"", L"x", Text(L"abc"), unchanged},
           {L" ", L"", Text(L" a b "), L"ab"},
       }) {
    ValueReplacement replacement(c.search, c.replacement);
    const std::optional<ODValueView> value = replacement(view_of(c.value));
    const std::string name =
        to_utf8(c.search) + " asked about " + to_utf8(value_text(view_of(c.value)));
    EXPECT_EQ(value.has_value(), c.expected != unchanged) << name;
    if (!value || c.expected == unchanged) continue;
    EXPECT_EQ(value_text(*value), c.expected) << name;
    EXPECT_EQ(type_of(*value), type_of(c.value)) << name;
  }
}

}  // namespace
}  // namespace korvel
