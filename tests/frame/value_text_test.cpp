// Values as text and text as values, at the edges where numbers go wrong.
#include "frame/value_text.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/utf.h"

namespace korvel {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

TEST(ValueText, ShowsEveryType) {
  struct {
    ODValueView value;
    std::wstring_view text;
  } const cases[] = {
      {std::monostate{}, L""},
      {std::int32_t{-2147483647 - 1}, L"-2147483648"},
      {3.0, L"3.0"},
      {2.5, L"2.5"},
      {-0.0, L"-0.0"},
      {100.0, L"100.0"},
      {0.1, L"0.1"},
      {1e-13, L"0.0"},
      {0.123456789012345, L"0.123456789012"},
      {1e20, L"100000000000000000000.0"},
      {infinity, L"inf"},
      {-infinity, L"-inf"},
      {-not_a_number, L"nan"},
      {std::wstring_view(L" as it is 1.500 "), L" as it is 1.500 "},
      {Point3{1, 2, 3}, L"1.000000,2.000000,3.000000"},
      {Point3{-0.0000001, 1e20, 0.5}, L"-0.000000,100000000000000000000.000000,0.500000"},
  };
  std::wstring all;
  std::wstring expected;
  for (const auto& c : cases) {
    EXPECT_EQ(value_text(c.value), c.text);
    append_value_text(c.value, all);
    expected += c.text;
  }
  EXPECT_EQ(all, expected) << "appending must not touch what stands before";
}

// Near zero, around the powers of two, ties, carries, and reals of any kind.
TEST(ValueText, RealsAreRoundedAsFixedTextRoundsThem) {
  std::mt19937_64 random(7);
  std::vector<double> numbers = {0.25,
                                 0.2499999999999999,
                                 0.9999999999995,
                                 0.99999999999951,
                                 9.9999999999999,
                                 4503599627370496.5,
                                 9007199254740992.0,
                                 1e300,
                                 5e-324,
                                 0x1.000002p-1,
                                 1 + 0x1p-13,
                                 3 + 0x1p-13};
  for (int exponent = -1080; exponent < 1024; ++exponent)
    numbers.push_back(std::ldexp(1 + static_cast<double>(random() % 1000) / 1000, exponent));
  for (int i = 0; i < 20'000; ++i) {
    const auto digits = static_cast<double>(random() % 100'000'000);
    numbers.push_back(digits / std::pow(10, random() % 13));
    numbers.push_back(std::ldexp(digits, -static_cast<int>(random() % 50)));
    const double any = std::bit_cast<double>(random());
    if (std::isfinite(any)) numbers.push_back(any);
  }
  RealRoom room;
  for (const double number : numbers) {
    for (const double signed_number : {number, -number}) {
      const std::wstring expected = shorten_real(fixed_text(signed_number, 12));
      const std::string_view seen = real_text(signed_number, room);
      ASSERT_EQ(std::wstring(seen.begin(), seen.end()), expected);
    }
  }
}

TEST(ShortenReal, KeepsOneDigitBehindTheFirstStop) {
  const std::pair<std::wstring_view, std::wstring_view> cases[] = {
      {L"3.000000000000", L"3.0"},
      {L"2.500", L"2.5"},
      {L"1000", L"1000"},
      {L"1.", L"1."},
      {L"-0.000000000000", L"-0.0"},
      {L"10.010", L"10.01"},
      {L"1.00.00", L"1.00."},
      {L"", L""},
      {L"0.00", L"0.0"},
  };
  for (const auto& [text, shortened] : cases) {
    EXPECT_EQ(shorten_real(std::wstring(text)), shortened);
  }
}

TEST(ReadInteger, TakesTheLeadingNumber) {
  const std::pair<std::wstring_view, std::int32_t> cases[] = {
      {L"12abc", 12},
      {L"abc", 0},
      {L"7.9", 7},
      {L" \t\n-5", -5},
      {L"+8", 8},
      {L"- 5", 0},
      {L"+-5", 0},
      {L"", 0},
      {L"-", 0},
      {L"0x10", 0},
      {L"007", 7},
      {L"2147483647", 2147483647},
      {L"2147483648", 2147483647},
      {L"-2147483648", -2147483647 - 1},
      {L"-2147483649", -2147483647 - 1},
      {L"99999999999999999999999999999999", 2147483647},
  };
  for (const auto& [text, number] : cases)
    EXPECT_EQ(read_integer(text), number) << to_utf8(text);
}

TEST(ReadReal, TakesTheLeadingNumber) {
  const std::wstring many_zeros(400, L'0');
  const std::pair<std::wstring, double> cases[] = {
      {L"2.5", 2.5},
      {L" \t+2.5e1x", 25},
      {L"-.5", -0.5},
      {L"5.", 5},
      {L"1e", 1},
      {L"1e+", 1},
      {L"1.5E-2", 0.015},
      {L"abc", 0},
      {L".", 0},
      {L"-", 0},
      {L"", 0},
      {L"1,5", 1},
      {L"--1", 0},
      {L"inf", 0},
      {L"nan", 0},
      {L"-infinity", 0},
      {L"0x1p3", 0},
      {L"1.5.7", 1.5},
      {L"1e999", infinity},
      {L"-1e99999999999999999999", -infinity},
      {L"1e-999", 0},
      {L"1e-99999999999999999999", 0},
      {L"0e99999999999999999999", 0},
      {L"4.9e-324", 4.9e-324},
      {L"1" + many_zeros, infinity},
      {L"1" + many_zeros + L"e-400", 1},
      {L"0." + many_zeros + L"1", 0},
      {L"0." + many_zeros + L"1e401", 1},
      {L"1.7976931348623157e308", std::numeric_limits<double>::max()},
  };
  for (const auto& [text, number] : cases)
    EXPECT_EQ(read_real(text), number) << to_utf8(text);
  EXPECT_TRUE(std::signbit(read_real(L"-0")));
}

TEST(WholeReal, IsTheWholeTextOrNone) {
  const std::pair<std::wstring_view, std::optional<double>> cases[] = {
      {L"0", 0.0},    {L" -1.5e1\t", -15.0}, {L".5", 0.5},  {L"", {}},  {L" ", {}},
      {L"12abc", {}}, {L"1,5", {}},          {L"1 2", {}},  {L"-", {}}, {L"1e", {}},
      {L"1e999", {}}, {L"inf", {}},          {L"0x10", {}},
  };
  for (const auto& [text, expected] : cases)
    EXPECT_EQ(whole_real(text), expected) << to_utf8(text);
}

TEST(WholeValue, IsTheWholeTextInItsTypeOrNone) {
  using enum ODType;
  const struct {
    std::wstring_view text;
    ODType type;
    std::optional<ODValue> value;
  } cases[] = {
      {L" -2147483648 ", Integer, ODValue(std::numeric_limits<std::int32_t>::min())},
      {L"+007", Integer, ODValue(7)},
      {L"2147483648", Integer, {}},
      {L"99999999999999999999", Integer, {}},
      {L"7.0", Integer, {}},
      {L"1e5", Integer, {}},
      {L"", Integer, {}},
      {L"2.50", Real, ODValue(2.5)},
      {L"1e999", Real, {}},
      {L" a ", Character, ODValue(std::wstring(L" a "))},
      {L" 1, 2e0,-3 ", Point, ODValue(Point3{1, 2, -3})},
      {L"1,2,3,4", Point, {}},
      {L"1,2", Point, {}},
      {L"1", Unknown, {}},
  };
  for (const auto& test : cases)
    EXPECT_EQ(whole_value(test.text, test.type), test.value) << to_utf8(test.text);
}

TEST(StoreText, ReadsAPointOnlyIfItHasThreeNumbers) {
  const std::wstring_view good[] = {L"1,2,3", L" 1.0,\t2e0,+3", L"1,2,3 and more", L"1,2,3,4"};
  for (const std::wstring_view text : good) {
    ODValue value = Point3{};
    EXPECT_TRUE(store_text(text, value)) << to_utf8(text);
    EXPECT_EQ(value, ODValue(Point3{1, 2, 3})) << to_utf8(text);
  }
  const std::wstring_view bad[] = {L"1;2;3", L"1,2",  L"1 ,2,3", L"",      L"1,2,",
                                   L",2,3",  L"1,,3", L"1,2,x",  L"1,2 3", L"nan,2,3"};
  for (const std::wstring_view text : bad) {
    ODValue value = Point3{7, 8, 9};
    EXPECT_FALSE(store_text(text, value)) << to_utf8(text);
    EXPECT_EQ(value, ODValue(Point3{7, 8, 9})) << to_utf8(text);
  }
}

TEST(StoreText, KeepsTheTypeOfTheValue) {
  struct {
    ODValue before;
    std::wstring_view text;
    ODValue after;
    bool stored;
  } const cases[] = {
      {std::int32_t{9}, L"12abc", std::int32_t{12}, true},
      {9.5, L"12abc", 12.0, true},
      {9.5, L"abc", 0.0, true},
      {std::wstring(L"old"), L" new ", std::wstring(L" new "), true},
      {std::monostate{}, L"1", std::monostate{}, false},
  };
  for (const auto& c : cases) {
    ODValue value = c.before;
    EXPECT_EQ(store_text(c.text, value), c.stored) << to_utf8(c.text);
    EXPECT_EQ(value, c.after) << to_utf8(c.text);
  }
}

TEST(FixedText, RoundsCorrectlyAndBoundsItsDecimals) {
  EXPECT_EQ(fixed_text(0.125, 2), L"0.12");
  EXPECT_EQ(fixed_text(2.5, 0), L"2");
  EXPECT_EQ(fixed_text(1.005, 2), L"1.00");
  EXPECT_EQ(fixed_text(-7, -3), L"-7");
  EXPECT_EQ(fixed_text(1, 1000), L"1." + std::wstring(99, L'0'));
  EXPECT_EQ(fixed_text(-std::numeric_limits<double>::max(), 99).size(), 1u + 309 + 1 + 99);
}

}  // namespace
}  // namespace korvel
