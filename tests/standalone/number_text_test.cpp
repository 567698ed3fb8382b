// Numbers and handles of DXF values: forms written, forms read and refused, exact round trips.
#include "host/standalone/dxf/number_text.h"

#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <utility>

namespace korvel::dxf {
namespace {

std::string real_text(double value) {
  std::string out;
  append_real(out, value);
  return out;
}

TEST(NumberText, WritesRealsWithAPointAndTheShortestDigits) {
  const std::pair<double, const char*> cases[] = {
      {0.0, "0.0"},
      {-0.0, "-0.0"},
      {-2.5, "-2.5"},
      {0.1, "0.1"},
      {100, "100.0"},
      {1.0 / 3, "0.3333333333333333"},
      {0.00001, "0.00001"},
      {0.000009, "9.0E-06"},
      {9007199254740993, "9007199254740992.0"},
      {1e16, "1.0E+16"},
      {-1.25e20, "-1.25E+20"},
      {1e300, "1.0E+300"},
      {5e-324, "5.0E-324"},
      {std::numeric_limits<double>::quiet_NaN(), "0.0"},
      {-std::numeric_limits<double>::infinity(), "0.0"},
  };
  for (const auto& [value, text] : cases)
    EXPECT_EQ(real_text(value), text);
}

TEST(NumberText, EveryDoubleReadsBackBitForBit) {
  std::mt19937_64 random(1);
  for (int round = 0; round < 20000; ++round) {
    // Half of them over all bit patterns, half of the size of coordinates.
    double value = std::bit_cast<double>(random());
    if (round % 2 == 0) value = static_cast<double>(static_cast<std::int64_t>(random())) * 1e-13;
    if (!std::isfinite(value)) continue;
    double read = 0;
    ASSERT_TRUE(read_real(real_text(value), read)) << real_text(value);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(read), std::bit_cast<std::uint64_t>(value));
  }
}

TEST(NumberText, ReadsRealsAndRefusesWhatIsNone) {
  const std::pair<const char*, double> good[] = {
      {"0", 0},          {" 1.5\t", 1.5}, {"+2", 2},        {"-.5", -0.5},
      {"7.", 7},         {"1e2", 100},    {"1.0E+02", 100}, {"1.000000000000000E+20", 1e20},
      {"1e-310", 1e-310}};
  for (const auto& [text, expected] : good) {
    double value = -1;
    EXPECT_TRUE(read_real(text, value)) << text;
    EXPECT_EQ(value, expected) << text;
  }
  for (const char* text : {"", " ", ".", "-", "+", "+-1", "--1", "nan", "-nan", "inf", "-inf",
                           "1.#QNAN", "1,5", "1.5 2", "0x10", "1e", "1e400", "abc"}) {
    double value = 4711;
    EXPECT_FALSE(read_real(text, value)) << text;
    EXPECT_EQ(value, 4711) << text;
  }
}

TEST(NumberText, ReadsIntegersInTheirWholeRangeOnly) {
  const std::pair<const char*, std::int64_t> good[] = {
      {"     0", 0},
      {"+12 ", 12},
      {"-32768", -32768},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
      {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()}};
  for (const auto& [text, expected] : good) {
    std::int64_t value = -1;
    EXPECT_TRUE(read_integer(text, value)) << text;
    EXPECT_EQ(value, expected) << text;
  }
  for (const char* text : {"", "  ", "-", "+-5", "1.0", "1 2", "12a", "9223372036854775808"}) {
    std::int64_t value = 4711;
    EXPECT_FALSE(read_integer(text, value)) << text;
    EXPECT_EQ(value, 4711) << text;
  }
}

TEST(NumberText, HandlesAreHexOfUpToSixteenDigits) {
  const std::pair<const char*, std::uint64_t> good[] = {
      {"0", 0}, {" 2b4\t", 0x2B4}, {"002B4", 0x2B4}, {"D9B071D01A0BAA4C", 0xD9B071D01A0BAA4C}};
  for (const auto& [text, expected] : good) {
    std::uint64_t value = 1;
    EXPECT_TRUE(read_handle(text, value)) << text;
    EXPECT_EQ(value, expected) << text;
  }
  for (const char* text : {"", " ", "-1", "+1", "0x1F", "1G", "1 2", "0D9B071D01A0BAA4C"}) {
    std::uint64_t value = 4711;
    EXPECT_FALSE(read_handle(text, value)) << text;
    EXPECT_EQ(value, 4711U) << text;
  }
  std::string out = "h";
  for (const std::uint64_t handle : {0ULL, 0xABCULL, 0xD9B071D01A0BAA4CULL}) {
    out += ' ';
    append_handle(out, handle);
  }
  EXPECT_EQ(out, "h 0 ABC D9B071D01A0BAA4C");
}

}  // namespace
}  // namespace korvel::dxf
