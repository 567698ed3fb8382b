// Points found by place, against looking at each.
#include "geometry/plan_points.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace korvel {
namespace {

TEST(PlanPoints, AreThoseInTheBox) {
  std::mt19937 random(1);
  std::uniform_int_distribution<int> place(0, 20);  // many share an x, a y or both
  for (std::size_t count : {0, 1, 2, 3, 50, 1000}) {
    std::vector<Point3> points;
    for (std::size_t i = 0; i < count; ++i)
      points.push_back({place(random) / 2.0, place(random) / 2.0, place(random) * 1.0});
    if (count == 50) points[7].x = std::numeric_limits<double>::quiet_NaN();
    const PlanPoints index(points);
    for (int trial = 0; trial < 200; ++trial) {
      const Extents box{{place(random) / 2.0 - 1, place(random) / 2.0 - 1, 0},
                        {place(random) / 2.0, place(random) / 2.0, 0}};
      std::vector<std::size_t> expected;
      for (std::size_t i = 0; i < count; ++i) {
        if (contains_in_plan(box, points[i])) expected.push_back(i);
      }
      std::vector<std::size_t> found;
      EXPECT_FALSE(index.any_in(box, [&found](std::size_t i) {
        found.push_back(i);
        return false;
      }));
      std::ranges::sort(found);
      EXPECT_EQ(found, expected);
      EXPECT_EQ(index.any_in(box, [](std::size_t) { return true; }), !expected.empty());
    }
  }
}

}  // namespace
}  // namespace korvel
