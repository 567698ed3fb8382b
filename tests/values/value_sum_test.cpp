// Sums of single values, for every pair of types and at the ends of the range.
#include "values/value_sum.h"

#include <gtest/gtest.h>
#include <limits>
#include <vector>

#include "frame/utf.h"
#include "frame/value_text.h"

namespace korvel {
namespace {

using Text = std::wstring;
constexpr auto largest = std::numeric_limits<std::int32_t>::max();
constexpr auto smallest = std::numeric_limits<std::int32_t>::min();

TEST(ValueSum, HasTheTypeThatIsAddedTo) {
  struct Case {
    ODValue to;
    ODValue from;
    ODValue sum;  // without a value: none
  };
  const Point3 point{1, 2, 3};
  for (const Case& c : std::vector<Case>{
           {2, 3, 5},
           {largest - 1, 1, largest},
           {largest, 1, {}},
           {smallest, largest, -1},
           {smallest, -1, {}},
           {2, 3.9, 5},
           {2, -3.9, -1},  // toward zero, and only after adding
           {largest, 0.9, largest},
           {largest, 1.0, {}},
           {smallest, -0.9, smallest},
           {0, 1e300, {}},
           {0, -std::numeric_limits<double>::infinity(), {}},
           {0.5, largest, 2147483647.5},
           {0.5, 0.25, 0.75},
           {Text(L"a"), 7, Text(L"a7")},
           {Text(L"a"), 7.0, Text(L"a7.0")},
           {Text(L"a"), Text(L"bc"), Text(L"abc")},
           {Text(), point, Text(L"1.000000,2.000000,3.000000")},
           {point, Point3{0.5, -2, 1}, Point3{1.5, 0, 4}},
           {2, Text(L"3"), {}},
           {2, point, {}},
           {2.0, Text(L"3"), {}},
           {2.0, point, {}},
           {point, 1, {}},
           {point, 1.0, {}},
           {point, Text(L"1,2,3"), {}},
           {Text(L"a"), {}, {}},
           {{}, 1, {}},
       }) {
    ValueSum sum_of;
    const std::optional<ODValueView> sum = sum_of(view_of(c.to), view_of(c.from));
    EXPECT_EQ(sum ? copy_of(*sum) : ODValue(), c.sum)
        << to_utf8(value_text(view_of(c.to))) << " and " << to_utf8(value_text(view_of(c.from)));
  }
}

}  // namespace
}  // namespace korvel
