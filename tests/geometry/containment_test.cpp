// Areas of shapes against points whose place is known from closed formulas.
#include "geometry/containment.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "tests/geometry/shapes.h"

namespace korvel {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

using Points = std::vector<Point3>;

PolylineShape straight(const Points& points, bool closed = true) {
  PolylineShape shape{PolylineKind::Light, {}, up, closed};
  for (const Point3& point : points)
    shape.vertices.push_back({point, 0});
  return shape;
}

PolylineShape square(double from, double to) {
  return straight({{from, from}, {to, from}, {to, to}, {from, to}});
}

// The circle of radius 1 about the origin in four rational arcs.
SplineShape round_spline() {
  const double w = std::sqrt(0.5);
  return {2,
          true,
          {0, 0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 4},
          {1, w, 1, w, 1, w, 1, w, 1},
          {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}, {1, 0}},
          {}};
}

Point3 polar(double radius, double degrees) {
  return {radius * std::cos(radians(degrees)), radius * std::sin(radians(degrees)), 0};
}

TEST(AreaContains, MatchesClosedFormulas) {
  const Points pentagram{polar(10, 90), polar(10, 234), polar(10, 18), polar(10, 162),
                         polar(10, 306)};
  const PolylineShape bowtie = straight({{0, 0}, {10, 10}, {10, 0}, {0, 10}});
  PolylineShape bitten = square(0, 10);  // a half circle about (5, 0) is cut out of its side
  bitten.vertices[0].bulge = -1;
  PolylineShape bitten_from_below = bitten;
  bitten_from_below.normal = down;
  bitten_from_below.vertices[0].bulge = 1;
  PolylineShape in_space = straight({{0, 0, 0}, {10, 0, 50}, {10, 10, 0}, {0, 10, -50}});
  in_space.kind = PolylineKind::ThreeD;
  const double slant = 10 * std::sqrt(0.5);
  const ArcShape tilted{{0, 0, 0}, {0, -1, 1}, {1, 0, 0}, 10, 2 * pi};
  const HatchShape ring_and_island{{square(0, 10), square(2, 8), square(4, 6)}};
  SplineShape by_fit_points{3, true, {}, {}, {}, {{0, 0}, {10, 0}, {5, 10}}};

  const struct {
    const char* name;
    Shape shape;
    Points inside;
    Points outside;
  } cases[] = {
      {"square with its outline",
       square(0, 10),
       {{5, 5, 99}, {0, 0}, {10, 10}, {10, 5}, {3, 0}},
       {{10.000001, 5}, {-1, 10}, {-1, 0}}},
      {"rays through vertices",
       straight({{0, -5}, {5, 0}, {0, 5}, {-5, 0}}),
       {{-4, 0}, {-5, 0}, {2, 3}},
       {{-6, 0}, {-1, 5}, {-1, -5}}},
      {"in space", in_space, {{5, 5}, {0, 7}}, {{-0.1, 5}}},
      {"bow tie", bowtie, {{1, 5}, {9, 5}, {5, 5}}, {{5, 1}, {5, 9}}},
      {"pentagram", straight(pentagram), {polar(8, 90), polar(8, 18)}, {{0, 0}, polar(5, 54)}},
      {"two half circles",
       polyline({{{0, 0, 0}, 1}, {{10, 0, 0}, 1}}, true),
       {{5, 0}, {8, 3.999999}, {2, -3.999999}, {0, 0}},
       {{8, 4.000001}, {2, -4.000001}, {-0.001, 0}}},
      {"bitten", bitten, {{5, 5.000001}, {8.01, 4}, {0, 5}, {10, 0}}, {{5, 4.999999}, {5, 0}}},
      {"bitten, seen from below", bitten_from_below, {{5, 5.000001}}, {{5, 4.999999}, {5, -1}}},
      {"two half circles in a tilted plane",
       polyline({{{-10, 0, 0}, 1}, {{10, 0, 0}, 1}}, true, {0, -1, 1}),
       {{0, slant - 1e-5}, {-6, -0.8 * slant + 1e-5}},
       {{0, slant + 1e-5}, {-6, -0.8 * slant - 1e-5}}},
      {"circle", plan_arc(0, 360), {{1, 2}, {7, 10}, {-7, -4}}, {{7.000001, 10}, {-9, -8}}},
      {"circle from below",
       ArcShape{{0, 0, 0}, down, {0, 1, 0}, 10, 2 * pi},
       {{6, 8}},
       {{6, 8.000001}}},
      {"tilted circle",
       tilted,
       {{0, slant - 1e-9}, {10, 0}, {6, 0.8 * slant}},
       {{0, slant + 1e-9}, {6, 0.8 * slant + 1e-9}}},
      {"upright circle",
       ArcShape{{0, 0, 0}, {0, -1, 0}, {1, 0, 0}, 10, 2 * pi},
       {{9, 0}, {-10, 0}},
       {{9, 0.001}, {10.001, 0}}},
      {"far circle",
       ArcShape{{5e6, 4e6, 0}, up, {1, 0, 0}, 10, 2 * pi},
       {{5e6 + 6, 4e6 + 8}, {5e6 - 8, 4e6 + 6}},
       {{5e6 + 6.00001, 4e6 + 8}}},
      {"ellipse",
       EllipseShape{{0, 0, 0}, up, {0, 4, 0}, 0.5, 1, 1 + 2 * pi},
       {{1.2, 3.2}, {0, 0}},
       {{1.200001, 3.2}, {2, 3}}},
      {"round spline",
       round_spline(),
       {polar(1 - 3e-7, 20), polar(1 - 3e-7, 200), {0, 0}},
       {polar(1 + 3e-7, 20), polar(1 + 3e-7, 200)}},
      {"spline by fit points", by_fit_points, {{5, 5}}, {{0, 5}}},
      {"closed multiline", MlineShape{{{0, 0}, {10, 0}, {0, 10}}, true}, {{2, 2}}, {{6, 6}}},
      {"hatch with a hole",
       ring_and_island,
       {{1, 5}, {5, 5}, {2, 5}, {4, 5}},
       {{3, 5}, {7, 7}, {11, 5}}},
      {"hatch with a round hole",
       HatchShape{{square(-5, 5), polyline({{{-1, 0, 0}, 1}, {{1, 0, 0}, 1}}, false)}},
       {{0, 1.001}, {4, -4}},
       {{0, 0}, {0, 0.999}}},
      {"triangular face", FaceShape{{{0, 0, 0}, {10, 0, 5}, {0, 10, 9}}}, {{3, 3}}, {{6, 6}}},
  };
  for (const auto& c : cases) {
    for (const Point3& point : c.inside)
      EXPECT_TRUE(area_contains({c.shape}, point)) << c.name << ": " << point.x << "," << point.y;
    for (const Point3& point : c.outside)
      EXPECT_FALSE(area_contains({c.shape}, point)) << c.name << ": " << point.x << "," << point.y;
  }
}

TEST(AreaContains, WhatAnOpenPolylineRunsRoundWhenItReturns) {
  const Shape returning = straight({{-1, -1}, {1, -1}, {0, 1}, {-1, -1}}, false);
  EXPECT_TRUE(area_contains({returning}, {0, 0, 0}));
  EXPECT_FALSE(area_contains({returning}, {2, 0, 0}));
}

TEST(AreaContains, NothingWhereThereIsNoAreaOrNoNumber) {
  SplineShape open = round_spline();
  open.closed = false;
  PolylineShape broken = square(-10, 10);
  broken.vertices[2].point.x = not_a_number;
  const std::pair<const char*, Shape> shapes[] = {
      {"unknown", {}},
      {"point", PointShape{{0, 0, 0}}},
      {"line", LineShape{{-1, 0, 0}, {1, 0, 0}}},
      {"nearly a circle", ArcShape{{0, 0, 0}, up, {1, 0, 0}, 10, 2 * pi - 1e-6}},
      {"half an ellipse", EllipseShape{{0, 0, 0}, up, {4, 0, 0}, 0.5, 0, pi}},
      {"open polyline", straight({{-1, -1}, {1, -1}, {0, 1}, {-1, -0.9}}, false)},
      {"open spline", open},
      {"open multiline", MlineShape{{{-1, -1}, {1, -1}, {0, 1}}, false}},
      {"text", TextShape{{-1, -1, 0}, up, L"abcd", 10, 0, 1}},
      {"paragraph text", MtextShape{{-1, 1, 0}, up, {1, 0, 0}, L"a", 8, 8, 1}},
      {"block reference", BlockReferenceShape{}},
      {"no vertices", straight({})},
      {"no loops", HatchShape{}},
      {"vertex that is no number", broken},
      {"infinite radius", ArcShape{{0, 0, 0}, up, {1, 0, 0}, infinity, 2 * pi}},
      {"centre at infinity", ArcShape{{infinity, 0, 0}, up, {1, 0, 0}, 10, 2 * pi}},
  };
  for (const auto& [name, shape] : shapes)
    EXPECT_FALSE(area_contains({shape}, {0, 0, 0})) << name;
  for (const double odd : {not_a_number, infinity, -infinity}) {
    EXPECT_FALSE(area_contains({square(0, 10)}, {odd, 5, 0})) << odd;
    EXPECT_FALSE(area_contains({square(0, 10)}, {5, odd, 0})) << odd;
    EXPECT_FALSE(area_contains({plan_arc(0, 360)}, {odd, 2, 0})) << odd;
    EXPECT_TRUE(area_contains({square(0, 10)}, {5, 5, odd})) << odd;
    EXPECT_TRUE(area_contains({plan_arc(0, 360)}, {1, 2, odd})) << odd;
  }
}

}  // namespace
}  // namespace korvel
