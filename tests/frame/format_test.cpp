// Formatting: what is printed, and what must not compile.
#include "frame/format.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace korvel {
namespace {

static_assert(placeholders_match<>(L"100%% sure, %%i\n"));
static_assert(placeholders_match<int, std::size_t, std::wstring>(L"%i of %lu: %s"));
static_assert(placeholders_match<std::int64_t, const wchar_t*, wchar_t[4]>(L"%i%s%s"));

static_assert(!placeholders_match<>(L"%i"), "an argument is missing");
static_assert(!placeholders_match<int, int>(L"%i"), "an argument is left over");
static_assert(!placeholders_match<int>(L"%s"), "a number is no text");
static_assert(!placeholders_match<std::wstring>(L"%i"), "a text is no number");
static_assert(!placeholders_match<const char*>(L"%s"), "a text is wide");
static_assert(!placeholders_match<int>(L"%lu"), "a signed number is not unsigned");
static_assert(!placeholders_match<bool>(L"%i"), "a truth value is no number");
static_assert(!placeholders_match<wchar_t>(L"%i"), "a character is no number");
static_assert(!placeholders_match<double>(L"%i"), "a real is no integer");
static_assert(!placeholders_match<int>(L"%d"), "there is no such placeholder");
static_assert(!placeholders_match<unsigned>(L"%l"), "a placeholder is cut short");
static_assert(!placeholders_match<>(L"50%"), "a percent sign at the end is doubled");

TEST(FormatText, PutsArgumentsInOrderBetweenTheLiteralText) {
  EXPECT_EQ(format_text(L"%s: %i out of %lu%%\n", std::wstring(L"ROADS"), -4, 10u),
            L"ROADS: -4 out of 10%\n");
  EXPECT_EQ(format_text(L"%s%s%s", L"a", std::wstring_view(), L"b"), L"ab");
  EXPECT_EQ(format_text(L"%%%i%%", 7), L"%7%");
}

TEST(FormatText, LeavesPlaceholdersInsideArgumentsAlone) {
  EXPECT_EQ(format_text(L"'%s' %i", L"%i %s %%", 1), L"'%i %s %%' 1");
}

TEST(FormatText, PrintsTheLimitsOfEveryWidth) {
  using Signed = std::numeric_limits<std::int64_t>;
  using Unsigned = std::numeric_limits<std::uint64_t>;
  EXPECT_EQ(format_text(L"%i %lu", Signed::min(), Unsigned::max()),
            L"-9223372036854775808 18446744073709551615");
  EXPECT_EQ(format_text(L"%i %i", std::int8_t{-128}, std::uint8_t{255}), L"-128 255");
}

}  // namespace
}  // namespace korvel
