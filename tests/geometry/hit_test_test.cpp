// Paths against points, areas and fences.
#include "geometry/hit_test.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace korvel {
namespace {

using Points = std::vector<Point3>;

constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

// An upright U, open above between x = 4 and x = 6.
const Points u_shape{{0, 0}, {10, 0}, {10, 10}, {6, 10}, {6, 4}, {4, 4}, {4, 10}, {0, 10}};
const Points triangle{{0, 0}, {10, 10}, {0, 10}};
const Points square{{0, 0}, {10, 0}, {10, 10}, {0, 10}};

TEST(PointInPolygon, CountsTheOutlineAsInside) {
  struct Place {
    Point3 point;
    bool inside;
  };
  const Place cases[] = {
      {{2, 5}, true},
      {{8, 5}, true},
      {{5, 2}, true},
      {{5, 5}, false},
      {{5, 10}, false},
      {{5, 4}, true},
      {{4, 7}, true},
      {{6, 4}, true},
      {{0, 0}, true},
      {{10, 10}, true},
      {{3, 10}, true},
      {{0, 7}, true},
      {{-1, 4}, false},
      {{-1, 10}, false},
      {{11, 0}, false},
      {{-1, 0}, false},
      {{2, 5, 99}, true},
      {{5, 4.0000001}, false},
      {{not_a_number, 5}, false},
  };
  const Points clockwise(u_shape.rbegin(), u_shape.rend());
  for (const auto& [point, inside] : cases) {
    EXPECT_EQ(point_in_polygon(point, u_shape), inside) << point.x << "," << point.y;
    EXPECT_EQ(point_in_polygon(point, clockwise), inside) << point.x << "," << point.y;
  }
  // On a sloping edge far from the origin, off by the rounding of the coordinates alone.
  const Points far{{5e6 + 0.1, 4e6 + 0.1}, {5e6 + 0.4, 4e6 + 0.8}, {5e6 - 3, 4e6 + 3}};
  EXPECT_TRUE(point_in_polygon({5e6 + 0.2, 4e6 + 0.1 + 0.7 / 3}, far));
  EXPECT_FALSE(point_in_polygon({5e6 + 0.201, 4e6 + 0.1 + 0.7 / 3}, far));
  EXPECT_FALSE(point_in_polygon({0, 0}, {}));
}

TEST(HitTest, AgainstAreas) {
  struct Case {
    const char* name;
    Path path;
    const Points& area;
    bool crosses;
    bool inside;
  };
  const Case cases[] = {
      {"within", {{{1, 1}, {2, 2}}, false}, square, true, true},
      {"out through an edge", {{{1, 1}, {20, 2}}, false}, square, true, false},
      {"in from outside", {{{20, 2}, {1, 1}}, false}, square, true, false},
      {"through and through", {{{-5, 5}, {15, 6}}, false}, square, true, false},
      {"through two corners", {{{-5, -5}, {15, 15}}, false}, square, true, false},
      {"touching a corner", {{{-5, 5}, {5, -5}}, false}, square, true, false},
      {"ending on an edge", {{{-5, 5}, {0, 5}}, false}, square, true, false},
      {"overlapping an edge", {{{-5, 0}, {5, 0}}, false}, square, true, false},
      {"along the whole outline", {square, true}, square, true, true},
      {"beside", {{{11, 0}, {11, 10}}, false}, square, false, false},
      {"past a corner", {{{-5, 4}, {4, -5}}, false}, square, false, false},
      {"in line with an edge", {{{11, 10}, {15, 10}}, false}, square, false, false},
      {"around the area", {{{-9, -9}, {19, -9}, {19, 19}, {-9, 19}}, true}, square, false, false},
      {"closing segment crosses", {{{-9, 5}, {5, 19}, {19, 5}}, true}, square, true, false},
      {"the same left open", {{{-9, 5}, {-9, 19}, {19, 19}, {19, 5}}, false}, square, false, false},
      {"later part inside",
       {{{30, 0}, {40, 0}, {30, 9}, {1, 1}, {2, 1}, {1, 2}}, true, {3}},
       square,
       true,
       false},
      {"parts are not joined",
       {{{-9, 5}, {-8, 5}, {19, 5}, {18, 5}}, false, {2}},
       square,
       false,
       false},
      {"point inside", {{{5, 5}}, false}, square, true, true},
      {"point on the edge", {{{10, 5}}, true}, square, true, true},
      {"point outside", {{{11, 5}}, true}, square, false, false},
      {"nothing", {{}, true}, square, false, false},
      {"across the gap of a U", {{{2, 7}, {8, 7}}, false}, u_shape, true, false},
      {"below the gap", {{{2, 3}, {8, 3}}, false}, u_shape, true, true},
      {"along the bottom of the gap", {{{2, 4}, {8, 4}}, false}, u_shape, true, true},
      {"across the tops of a U", {{{2, 10}, {8, 10}}, false}, u_shape, true, false},
      {"across the gap off its middle", {{{3, 7}, {10, 7}}, false}, u_shape, true, false},
      {"from top to top of a U", {{{4, 10}, {6, 10}}, false}, u_shape, true, false},
      {"in the gap", {{{5, 6}, {5, 20}}, false}, u_shape, false, false},
      {"pointing at a slope", {{{6, 1}, {5, 4}}, false}, triangle, false, false},
      {"no area", {{{5, 5}, {6, 6}}, false}, {}, false, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(path_crosses_polygon(c.path, c.area), c.crosses) << c.name;
    EXPECT_EQ(path_inside_polygon(c.path, c.area), c.inside) << c.name;
  }
}

TEST(HitTest, AgainstFences) {
  const Path fence{{{0, 0}, {10, 0}, {10, 10}}, false};
  const std::pair<Path, bool> cases[] = {
      {{{{5, -5}, {5, 5}}, false}, true},
      {{{{1, 1}, {9, 9}}, false}, false},
      {{{{1, 1}, {10, 10}}, false}, true},
      {{{{2, 0}, {3, 0}}, false}, true},
      {{{{-3, 0}, {-1, 0}}, false}, false},
      {{{{5, 5}, {9, 1}, {5, -5}}, false}, true},
      {{{{10, 5}}, false}, true},
      {{{{5, 5}}, false}, false},
      {{{{5, 0}, {5, 5}}, false}, true},
      {{{{-1, 1}, {1, -1}}, false}, true},
      {{{}, false}, false},
  };
  for (const auto& [path, crosses] : cases) {
    EXPECT_EQ(paths_cross(path, fence), crosses);
    EXPECT_EQ(paths_cross(fence, path), crosses);
  }
}

TEST(HitTest, DistanceFromAPoint) {
  const Path open{{{0, 0, 5}, {10, 0}, {10, 0}, {10, 10}}, false};
  const Path closed{{{0, 0}, {10, 0}, {10, 10}}, true};
  EXPECT_DOUBLE_EQ(distance_to_path(open, {4, -3}), 3);
  EXPECT_DOUBLE_EQ(distance_to_path(open, {-3, -4, 7}), 5);
  EXPECT_DOUBLE_EQ(distance_to_path(open, {4, 6}), 6);
  EXPECT_DOUBLE_EQ(distance_to_path(closed, {4, 6}), std::sqrt(2));
  EXPECT_DOUBLE_EQ(distance_to_path({{{1, 1}}, false}, {4, 5}), 5);
  EXPECT_EQ(distance_to_path({}, {4, 5}), std::numeric_limits<double>::infinity());
}

}  // namespace
}  // namespace korvel
