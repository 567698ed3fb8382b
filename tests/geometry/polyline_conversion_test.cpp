// Curves turned into polylines, against the curves themselves.
#include "geometry/polyline_conversion.h"

#include <gtest/gtest.h>

#include "geometry/bulge.h"
#include "geometry/curve_sampler.h"
#include "geometry/vector.h"
#include "tests/geometry/shapes.h"

namespace korvel {
namespace {

PolylineShape chain(PolylineKind kind, std::vector<Vertex> vertices, bool closed = false) {
  PolylineShape shape = polyline(std::move(vertices), closed);
  shape.kind = kind;
  return shape;
}

const EllipseShape half_ellipse{{1, 2, 3}, up, {4, 0, 0}, 0.5, 0, pi};

TEST(PolylineConversion, LightPolylinesLieOnTheCurve) {
  const Vector3 slanted = normalise({1, 0, 1});
  const Vector3 start = {0, 1, 0};
  const struct {
    const char* name;
    Shape shape;
    std::size_t vertices;
    bool closed;
    double error;  // how far the curve of the polyline may be from the vertices of the other
  } cases[] = {
      {"level line", LineShape{{0, 0, 3}, {4, 0, 3}}, 2, false, 0},
      {"arc", plan_arc(30, 90), 2, false, 1e-12},
      {"long arc", plan_arc(30, 300), 3, false, 1e-12},
      {"circle", plan_arc(30, 360), 2, true, 1e-12},
      {"slanted circle", ArcShape{{1, 2, 3}, slanted, start, 5, 2 * pi}, 2, true, 1e-12},
      {"ellipse", half_ellipse, 11, false, 0.0493},
      {"round ellipse", EllipseShape{{1, 2, 3}, slanted, 5 * start, 1, 0, 2 * pi}, 2, true, 1e-12},
      {"round elliptic arc", EllipseShape{{1, 2, 3}, up, {0, 4, 0}, 1, 1, 6}, 3, false, 1e-12},
      {"spline", parabola(), 11, false, 0.01},
      {"old-style one", chain(PolylineKind::Old2d, {{{0, 0, 1}, 1}, {{2, 0, 1}}}), 2, false, 0},
  };
  for (const auto& test : cases) {
    EntityGeometry geometry{test.shape, 0};
    ASSERT_TRUE(PolylineConversion(PolylineTarget::Light, 10).convert(geometry)) << test.name;
    const auto& made = std::get<PolylineShape>(geometry.shape);
    EXPECT_EQ(made.kind, PolylineKind::Light) << test.name;
    EXPECT_EQ(made.vertices.size(), test.vertices) << test.name;
    EXPECT_EQ(made.closed, test.closed) << test.name;
    for (const Vertex& vertex : made.vertices) {
      EXPECT_NEAR(dot(vertex.point - made.vertices.front().point, made.normal), 0, 1e-12)
          << test.name;
    }
    // Equal divisions of equal curves are equal points; halved arcs are divided as often.
    const SamplingRule rule{.max_angle = pi / 60};
    Path before;
    Path after;
    sample({test.shape, 0}, rule, before);
    sample(geometry, rule, after);
    for (const Point3& point : before.points) {
      double off = 1e9;
      any_segment(after, [&](Point3 from, Point3 to) {
        const Vector3 along = to - from;
        const double share = std::clamp(dot(point - from, along) / dot(along, along), 0.0, 1.0);
        off = std::min(off, length(point - (from + share * along)));
        return false;
      });
      EXPECT_LE(off, test.error) << test.name;
    }
  }
}

// Also where the points lie in one plane, whatever rounding says of them.
TEST(PolylineConversion, LinesSplinesAnd3dPolylinesGoToPlan) {
  SplineShape rising = parabola();
  rising.degree = 1;
  rising.knots = {0, 0, 1, 2, 2};
  rising.control_points = {{0, 0, 5}, {1, 0, 6}, {1, 5, 6}};
  const struct {
    Shape shape;
    std::vector<Point3> expected;  // empty: not converted
  } cases[] = {
      {LineShape{{0, 0, 5}, {4, 3, 12}}, {{0, 0, 5}, {4, 3, 5}}},
      {LineShape{{5, 6, 0}, {5, 6, 12}}, {}},
      {chain(PolylineKind::ThreeD, {{{0, 0, 5}}, {{1, 0, 6}}, {{1, 5, 6}}, {{1, 5, 9}}}, true),
       {{0, 0, 5}, {1, 0, 5}, {1, 5, 5}}},
      {rising, {{0, 0, 5}, {1, 0, 5}, {1, 5, 5}}},
  };
  for (const auto& [shape, expected] : cases) {
    EntityGeometry geometry{shape, 0};
    const bool converted = PolylineConversion(PolylineTarget::Light, 1).convert(geometry);
    ASSERT_EQ(converted, !expected.empty());
    if (!converted) continue;
    const auto& made = std::get<PolylineShape>(geometry.shape);
    EXPECT_EQ(made.normal, up);
    std::vector<Point3> points;
    for (const Vertex& vertex : made.vertices)
      points.push_back(vertex.point);
    EXPECT_EQ(points, expected);
  }
}

TEST(PolylineConversion, WidthsAndThicknessStay) {
  PolylineShape wide = chain(PolylineKind::Old2d, {{{0, 0, 0}, 1, 2, 3}, {{4, 0, 0}, 0, 5, 5}});
  wide.linetype_runs_on = true;
  EntityGeometry geometry{wide, 6};
  ASSERT_TRUE(PolylineConversion(PolylineTarget::Light, 10).convert(geometry));
  const auto& made = std::get<PolylineShape>(geometry.shape);
  EXPECT_EQ(geometry.thickness, 6);
  EXPECT_TRUE(made.linetype_runs_on);
  EXPECT_EQ(made.vertices[0].bulge, 1);
  EXPECT_EQ(made.vertices[0].end_width, 3);
  EXPECT_EQ(made.vertices[1].start_width, 5);
}

TEST(PolylineConversion, SpatialPolylinesHaveThePiecesAskedFor) {
  const PolylineShape bulged = polyline({{{0, 0, 0}, 1, 2, 2}, {{2, 0, 0}}, {{2, 9, 0}, -1}}, true);
  const struct {
    const char* name;
    Shape shape;
    int precision;
    std::size_t vertices;  // 0: not converted
  } cases[] = {
      {"line", LineShape{{0, 0, 0}, {4, 3, 12}}, 0, 2},
      {"chord", plan_arc(30, 90), 0, 2},
      {"arc", plan_arc(30, 90), 4, 5},
      {"circle without pieces", plan_arc(30, 360), 0, 0},
      {"circle", plan_arc(30, 360), 8, 8},
      {"circle of one piece", plan_arc(30, 360), 1, 3},
      {"half an ellipse without pieces", half_ellipse, 0, 2},
      {"half an ellipse", half_ellipse, 99, 100},
      {"spline without pieces", parabola(), 0, 2},
      {"spline", parabola(), 5, 6},
      {"bulges without pieces", bulged, 0, 3},
      {"bulges", bulged, 4, 9},
      {"3D already", chain(PolylineKind::ThreeD, {{{0, 0, 0}}, {{1, 1, 1}}}), 4, 0},
      {"one place", polyline({{{1, 1, 1}}, {{1, 1, 1}}}, true), 4, 0},
      {"no curve", TextShape{}, 4, 0},
  };
  for (const auto& test : cases) {
    EntityGeometry geometry{test.shape, 3};
    const bool converted =
        PolylineConversion(PolylineTarget::ThreeD, test.precision).convert(geometry);
    EXPECT_EQ(converted, test.vertices > 0) << test.name;
    EXPECT_EQ(geometry.thickness, converted ? 0 : 3) << test.name;
    if (!converted) continue;
    const auto& made = std::get<PolylineShape>(geometry.shape);
    EXPECT_EQ(made.kind, PolylineKind::ThreeD) << test.name;
    EXPECT_EQ(made.vertices.size(), test.vertices) << test.name;
    for (const Vertex& vertex : made.vertices)
      EXPECT_EQ(vertex.bulge + vertex.start_width, 0) << test.name;
  }
}

}  // namespace
}  // namespace korvel
