// Points along curves: on the curve, exact at the ends, close enough together.
#include "geometry/curve_sampler.h"

#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "geometry/vector.h"
#include "tests/geometry/shapes.h"

namespace korvel {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

Path sampled(const Shape& shape, SamplingRule rule = {}) {
  Path path{{{9, 9, 9}}, true, {7}};  // what an earlier use left behind
  sample({shape, 0}, rule, path);
  return path;
}

struct CurveCase {
  std::string name;
  Shape shape;
  std::function<double(Point3)> error;  // distance from the curve, as closed formula
  Point3 first;
  Point3 last;
  bool closed;
};

TEST(Sampler, StaysOnTheCurveAndWithinTheChordErrorAndEndsExactly) {
  const auto off_circle = [](Point3 center, double radius) {
    return [=](Point3 p) { return std::abs(length(p - center) - radius) / radius; };
  };
  const auto off_ellipse = [](Point3 p) { return std::abs(std::hypot(p.x / 4, p.y / 2) - 1); };
  const auto off_parabola = [](Point3 p) { return std::abs(p.y - p.x * (1 - p.x)); };
  const Point3 a{0.1, 0.7, 0.3};
  const Point3 b{7.3, 3.1, 0.3};
  const Point3 middle{3.7, 1.9, 0.3};
  // A quarter of a circle, with weights that multiplied and divided again would round its ends.
  SplineShape quarter = parabola();
  quarter.weights = {0.1, 0.05 * std::numbers::sqrt2, 0.1};
  quarter.control_points = {{0.4, 0, 0}, {0.4, 0.4, 0}, {0, 0.4, 0}};
  // The same parabola as two spans, joined at t = 1/2 and left open at its ends.
  SplineShape open = parabola();
  open.knots = {-1, 0, 0, 0.5, 1, 1, 2};
  open.control_points = {{0, 0, 0}, {0.25, 0.25, 0}, {0.75, 0.25, 0}, {1, 0, 0}};
  const CurveCase cases[] = {
      {"circle", plan_arc(0, 360), off_circle({1, 2, 3}, 10), {11, 2, 3}, {}, true},
      {"circle with a rounded sweep",
       plan_arc(0, 359.99999999999),
       off_circle({1, 2, 3}, 10),
       {11, 2, 3},
       {},
       true},
      {"arc",
       ArcShape{{1, 2, 3}, up, {1, 0, 0}, 10, pi / 2},
       off_circle({1, 2, 3}, 10),
       {11, 2, 3},
       Point3{1, 2, 3} + 10 * Vector3{std::cos(pi / 2), 1, 0},
       false},
      {"bulge 1", polyline({{a, 1}, {b, 5}}, false), off_circle(middle, length(b - a) / 2), a, b,
       false},
      {"bulge -1 from below", polyline({{a, -1}, {b, 0}}, false, down),
       off_circle(middle, length(b - a) / 2), a, b, false},
      {"circle of two bulges",
       polyline({{a, 1}, {b, 1}}, true),
       off_circle(middle, length(b - a) / 2),
       a,
       {},
       true},
      {"ellipse",
       EllipseShape{{0, 0, 0}, up, {4, 0, 0}, 0.5, 0, 2 * pi},
       off_ellipse,
       {4, 0, 0},
       {},
       true},
      {"ellipse arc",
       EllipseShape{{0, 0, 0}, up, {4, 0, 0}, 0.5, 0, 1},
       off_ellipse,
       {4, 0, 0},
       {4 * std::cos(1), 2 * std::sin(1), 0},
       false},
      {"parabola", parabola(), off_parabola, {0, 0, 0}, {1, 0, 0}, false},
      {"parabola of two spans", open, off_parabola, {0, 0, 0}, {1, 0, 0}, false},
      {"rational quarter", quarter, off_circle({0, 0, 0}, 0.4), {0.4, 0, 0}, {0, 0.4, 0}, false},
  };
  const double chord_error = 1 - std::cos(SamplingRule{}.max_angle / 2);
  for (const CurveCase& c : cases) {
    SCOPED_TRACE(c.name);
    const Path path = sampled(c.shape);
    ASSERT_GT(path.points.size(), 15u);
    EXPECT_EQ(path.closed, c.closed);
    EXPECT_TRUE(path.later_parts.empty());
    EXPECT_EQ(path.points.front(), c.first);
    if (!c.closed) {
      EXPECT_EQ(path.points.back(), c.last);
    }
    for (const Point3& point : path.points)
      EXPECT_LT(c.error(point), 1e-13);
    any_segment(path, [&](Point3 from, Point3 to) {
      EXPECT_NE(from, to);
      // Pieces of equal parameter differ a little in turn where the curve is no circle.
      EXPECT_LT(c.error(from + 0.5 * (to - from)), 1.3 * chord_error);
      return false;
    });
  }
}

TEST(Sampler, DividesByTheRule) {
  struct Division {
    const char* name;
    Shape shape;
    SamplingRule rule;
    std::size_t points;
  };
  const Division cases[] = {
      {"pieces of an arc", plan_arc(0, 90), {4}, 5},
      {"pieces of a circle", plan_arc(0, 360), {4}, 4},
      {"a circle has an area", plan_arc(0, 360), {1}, 3},
      {"pieces of each bulge",
       polyline({{{0, 0, 0}, 1}, {{1, 0, 0}, -1}, {{2, 0, 0}, 0}}, false),
       {4},
       9},
      {"pieces of a span", parabola(), {4}, 5},
      {"angle that divides but for rounding", plan_arc(0, 150), {0, radians(30)}, 6},
      {"angle that does not", plan_arc(0, 100), {0, radians(30)}, 5},
      {"no angle", plan_arc(0, 90), {0, 0}, 33},
      {"angle beyond memory", plan_arc(0, 90), {0, 1e-300}, 1'000'001},
      {"degree 1", SplineShape{1, false, {0, 0, 1, 1}, {}, {{0, 0, 0}, {1, 1, 0}}, {}}, {}, 2},
  };
  for (const Division& c : cases) {
    EXPECT_EQ(sampled(c.shape, c.rule).points.size(), c.points) << c.name;
  }
}

TEST(Sampler, KeepsNeitherRepeatedNorSenselessPoints) {
  struct Remains {
    const char* name;
    Shape shape;
    std::vector<Point3> points;
  };
  const Point3 a{0, 0, 0};
  const Point3 b{1, 0, 0};
  const Point3 c{1, 1, 0};
  SplineShape knots_fall = parabola();
  knots_fall.knots = {0, 0, 1, 0, 1, 1};
  SplineShape one_knot = parabola();
  one_knot.knots = {2, 2, 2, 2, 2, 2};
  SplineShape knots_missing = parabola();
  knots_missing.knots.pop_back();
  knots_missing.fit_points = {a, c};
  SplineShape weightless = parabola();
  weightless.weights = {1, 0, 1};
  SplineShape high_degree{26, false, std::vector<double>(27, 0), {}, {}, {}};
  high_degree.knots.resize(54, 1);
  for (int i = 0; i < 27; ++i)
    high_degree.control_points.push_back({0.5 * i, 0, 0});
  SplineShape jumping{1, false, {0, 0, 1, 1, 2, 2}, {}, {a, b, c, {5, 5, 0}}, {}};
  const std::vector<Point3> hull = parabola().control_points;
  const Remains cases[] = {
      {"closed one that repeats its first vertex",
       polyline({{a}, {b}, {b}, {c}, {a}}, true),
       {a, b, c}},
      {"open one that ends where it began", polyline({{a}, {b}, {a}}, false), {a, b, a}},
      {"one vertex", polyline({{a, 1}}, true), {a}},
      {"all at one place", polyline({{a, 1}, {a, 1}}, true), {a}},
      {"no vertices", polyline({}, true), {}},
      {"line without length", LineShape{b, b}, {b}},
      {"zero radius", ArcShape{b, up, {1, 0, 0}, 0, 2 * pi}, {b}},
      {"senseless bulges", polyline({{a, infinity}, {b, not_a_number}, {c, 0}}, false), {a, b, c}},
      {"bulge of a 3D polyline",
       PolylineShape{PolylineKind::ThreeD, {{a, 1}, {b}}, up, false},
       {a, b}},
      {"not a number", LineShape{a, {0, not_a_number, 0}}, {}},
      {"face", FaceShape{{a, b, c, c}}, {a, b, c}},
      {"fit points alone", SplineShape{3, false, {}, {}, {}, {a, b, c}}, {a, b, c}},
      {"falling knots", knots_fall, hull},
      {"knots without a span", one_knot, hull},
      {"knots missing", knots_missing, {a, c}},
      {"jump between spans", jumping, {a, b, c, {5, 5, 0}}},
      {"weight 0", weightless, hull},
      {"degree too high", high_degree, high_degree.control_points},
      {"unknown shape", std::monostate{}, {}},
  };
  for (const Remains& r : cases) {
    EXPECT_EQ(sampled(r.shape).points, r.points) << r.name;
  }
}

TEST(Sampler, GivesEveryOutlineOfAHatch) {
  const PolylineShape outer = polyline({{{0, 0, 0}}, {{9, 0, 0}}, {{0, 9, 0}}, {{0, 0, 0}}}, false);
  const PolylineShape inner = polyline({{{1, 1, 0}}, {{2, 1, 0}}, {{1, 2, 0}}}, false);
  const Path path = sampled(HatchShape{{outer, polyline({}, true), inner}});
  EXPECT_EQ(path.later_parts, std::vector<std::size_t>{3});
  EXPECT_TRUE(path.closed);
  std::vector<std::pair<double, double>> ends;
  any_segment(path, [&](Point3 from, Point3 to) {
    ends.emplace_back(10 * from.x + from.y, 10 * to.x + to.y);
    return false;
  });
  const std::vector<std::pair<double, double>> expected{{0, 90},  {90, 9},  {9, 0},
                                                        {11, 21}, {21, 12}, {12, 11}};
  EXPECT_EQ(ends, expected);
}

}  // namespace
}  // namespace korvel
