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
      const auto anywhere = [](const Extents&) { return true; };
      EXPECT_FALSE(index.any_in(box, anywhere, [&found](std::size_t i) {
        found.push_back(i);
        return false;
      }));
      std::ranges::sort(found);
      EXPECT_EQ(found, expected);
      EXPECT_EQ(index.any_in(box, anywhere, [](std::size_t) { return true; }), !expected.empty());
    }
  }
}

// All that lie on the diagonal are found through parts that it crosses; most others are not seen.
TEST(PlanPoints, ArePassedOverInPartsThatHoldNone) {
  std::vector<Point3> points;
  for (int x = 0; x < 100; ++x) {
    for (int y = 0; y < 100; ++y)
      points.push_back({x * 1.0, y * 1.0, 0});
  }
  int seen = 0;
  int on_diagonal = 0;
  const bool stopped = PlanPoints(points).any_in(
      {{0, 0, 0}, {99, 99, 0}},
      [](const Extents& part) { return part.min.x <= part.max.y && part.min.y <= part.max.x; },
      [&](std::size_t i) {
        ++seen;
        if (points[i].x == points[i].y) ++on_diagonal;
        return false;
      });
  EXPECT_FALSE(stopped);
  EXPECT_EQ(on_diagonal, 100);
  EXPECT_LT(seen, 2500);
}

}  // namespace
}  // namespace korvel
