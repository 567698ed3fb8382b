// Lengths and areas against figures from closed formulas.
#include "geometry/measures.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "geometry/vector.h"
#include "tests/geometry/shapes.h"

namespace korvel {
namespace {

constexpr std::optional<double> none;

struct MeasureCase {
  std::string name;
  Shape shape;
  std::optional<double> length;
  std::optional<double> area;
};

void expect_near(const std::optional<double>& measured, const std::optional<double>& expected,
                 double tolerance) {
  ASSERT_EQ(measured.has_value(), expected.has_value());
  if (!expected) return;
  EXPECT_NEAR(*measured, *expected, tolerance * (1 + std::abs(*expected)));
}

PolylineShape square(double from, double size, Vector3 normal = up) {
  const double to = from + size;
  return polyline({{{from, from, 0}}, {{to, from, 0}}, {{to, to, 0}}, {{from, to, 0}}}, true,
                  normal);
}

// A quarter of the unit circle, exactly.
SplineShape rational_quarter() {
  return {2,
          false,
          {0, 0, 0, 1, 1, 1},
          {1, std::numbers::sqrt2 / 2, 1},
          {{1, 0, 0}, {1, 1, 0}, {0, 1, 0}},
          {}};
}

TEST(Measures, MatchClosedFormulas) {
  const Vector3 tilted = normalise({1, 2, 3});
  const PlaneFrame frame = plane_frame(tilted);
  const auto in_plane = [&frame](double x, double y) { return to_world(frame, {x, y, 7}); };
  const double parabola_length = (std::numbers::sqrt2 + std::asinh(1.0)) / 2;
  SplineShape closed_parabola = parabola();
  closed_parabola.closed = true;
  SplineShape scattered;
  scattered.closed = true;
  scattered.fit_points = {{0, 0, 0}, {3, 0, 0}, {3, 4, 0}};
  PolylineShape in_space =
      polyline({{in_plane(0, 0)}, {in_plane(4, 0)}, {in_plane(4, 3)}, {in_plane(0, 3)}}, true);
  in_space.kind = PolylineKind::ThreeD;
  const double thin_bulge = 1e-5;  // its area is about a third of the bulge at chord 1
  const MeasureCase cases[] = {
      {"line", LineShape{{1, 2, 3}, {3, 5, 9}}, 7, none},
      {"arc", plan_arc(0, 90), 5 * pi, none},
      {"circle", plan_arc(10, 360), 20 * pi, 100 * pi},
      {"tilted ellipse of ratio 1", EllipseShape{{1, 2, 3}, tilted, 2 * frame.x, 1, 0, 2 * pi},
       4 * pi, 4 * pi},
      {"ellipse", EllipseShape{{0, 0, 0}, up, {2, 0, 0}, 0.5, 0, 2 * pi}, 9.688448220547676,
       2 * pi},
      {"flat ellipse", EllipseShape{{0, 0, 0}, up, {1, 0, 0}, 1e-9, 0, 2 * pi}, 4, 1e-9 * pi},
      {"half an ellipse", EllipseShape{{0, 0, 0}, up, {2, 0, 0}, 0.5, 0, pi}, 9.688448220547676 / 2,
       none},
      {"open polyline", polyline({{{0, 0, 0}}, {{3, 0, 0}}, {{3, 4, 0}}}, false), 7, none},
      {"closed polyline", square(5, 2), 8, 4},
      {"clockwise", polyline({{{0, 0, 0}}, {{3, 4, 0}}, {{3, 0, 0}}}, true), 12, 6},
      {"bow tie", polyline({{{0, 0, 0}}, {{2, 2, 0}}, {{2, 0, 0}}, {{0, 1, 0}}}, true),
       std::sqrt(8) + 2 + std::sqrt(5) + 1, 1},
      {"far away", polyline({{{1e7, 1e7, 0}}, {{1e7 + 1, 1e7, 0}}, {{1e7 + 1, 1e7 + 1, 0}}}, true),
       2 + std::numbers::sqrt2, 0.5},
      {"two half circles", polyline({{{0, 0, 0}, 1}, {{2, 0, 0}, 1}}, true), 2 * pi, pi},
      {"from below", polyline({{{0, 0, 0}, -1}, {{2, 0, 0}, -1}}, true, down), 2 * pi, pi},
      {"tilted half disc", polyline({{in_plane(0, 0), 1}, {in_plane(2, 0)}}, true, tilted), pi + 2,
       pi / 2},
      {"half disc bitten out",
       polyline({{{0, 0, 0}, -1}, {{2, 0, 0}}, {{2, 2, 0}}, {{0, 2, 0}}}, true), 6 + pi,
       4 - pi / 2},
      {"tiny bulge", polyline({{{0, 0, 0}, thin_bulge}, {{1e3, 0, 0}}}, true), 2e3,
       1e6 * thin_bulge / 3},
      {"3D polyline", in_space, 14, 12},
      {"no vertices", polyline({}, true), 0, 0},
      {"spline", parabola(), parabola_length, none},
      {"closed spline", closed_parabola, 1 + parabola_length, 1.0 / 6},
      {"rational spline", rational_quarter(), pi / 2, none},
      {"fit points", scattered, 12, 6},
      {"multiline", MlineShape{{{0, 0, 0}, {3, 0, 0}, {3, 4, 0}}, false}, 7, none},
      {"closed multiline", MlineShape{{{0, 0, 0}, {3, 0, 0}, {3, 4, 0}}, true}, 12, 6},
      {"face", FaceShape{{in_plane(0, 0), in_plane(4, 0), in_plane(4, 3)}}, none, 6},
      {"text", TextShape{}, none, none},
      {"infinite", LineShape{{}, {std::numeric_limits<double>::infinity(), 0, 0}}, none, none},
  };
  for (const MeasureCase& c : cases) {
    SCOPED_TRACE(c.name);
    expect_near(length_of(c.shape), c.length, 1e-9);
    expect_near(area_of(c.shape), c.area, 1e-9);
  }
}

PolylineShape upright(PolylineShape loop) {
  for (Vertex& vertex : loop.vertices)
    vertex.point = {vertex.point.x, 4, vertex.point.y};
  loop.normal = {0, -1, 0};
  return loop;
}

TEST(Measures, OutlinesOfAHatchBeyondAllNumbersHaveNoArea) {
  const PolylineShape thread = polyline({{{0, 0, 0}}, {{1e308, 1, 0}}, {{-1e308, -1, 0}}}, true);
  EXPECT_FALSE(area_of(HatchShape{{thread, square(0, 1)}}));
}

TEST(Measures, OutlinesOfAHatchAreHolesByTurns) {
  SplineShape shifted_parabola = parabola();
  for (Point3& point : shifted_parabola.control_points)
    point.x += 8;
  const PolylineShape disc = polyline({{{4, 5, 0}, 1}, {{6, 5, 0}, 1}}, true);
  // A half ellipse on a half disc, and a parabola on a line.
  const HatchShape curved{
      {polyline({{{2, 0, 0}}, {{-2, 0, 0}, 1}}, true), polyline({{{9, 0, 0}}, {{8, 0, 0}}}, true)},
      {{0, 0, EllipseShape{{}, up, {2, 0, 0}, 0.5, 0, pi}}, {1, 1, shifted_parabola}}};
  const std::pair<HatchShape, double> cases[] = {
      {curved, pi + 2 * pi + 1.0 / 6},
      {{{square(0, 10)}}, 100},
      {{{square(0, 10), square(20, 5)}}, 125},
      {{{square(2, 6), square(0, 10), disc}}, 100 - 36 + pi},
      {{{square(0, 10), square(0, 4)}}, 84},  // touches the outline
      {{{square(0, 10), square(0, 10)}}, 0},
      // A row that shares its corners, within one that shares theirs.
      {{{square(0, 1), square(1, 1), square(2, 1), square(0, 3)}}, 6},
      {{{square(0, 10), square(4, 3), square(4, 2), square(4, 1)}}, 100 - 9 + 4 - 1},
      {{{upright(square(0, 10)), upright(disc)}}, 100 - pi},  // a line in plan view
      {{}, 0},
  };
  for (const auto& [hatch, expected] : cases) {
    const auto measured = area_of(hatch);
    ASSERT_TRUE(measured.has_value());
    EXPECT_NEAR(*measured, expected, 1e-9);
    EXPECT_FALSE(length_of(hatch).has_value());
  }
}

}  // namespace
}  // namespace korvel
