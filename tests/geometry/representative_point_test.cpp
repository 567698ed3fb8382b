// The point of an entity and half the way along it, against figures from closed formulas.
#include "geometry/representative_point.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "geometry/extents.h"
#include "geometry/point_chain.h"
#include "geometry/vector.h"
#include "tests/geometry/shapes.h"

namespace korvel {
namespace {

constexpr double unknown = std::numeric_limits<double>::max();
constexpr double gap = 1e-8;

PolylineShape in_space(std::vector<Vertex> vertices, bool closed) {
  PolylineShape shape = polyline(std::move(vertices), closed);
  shape.kind = PolylineKind::ThreeD;
  return shape;
}

PolylineShape old_style(PolylineShape shape) {
  shape.kind = PolylineKind::Old2d;
  return shape;
}

void expect_near(Point3 found, Point3 expected, double tolerance) {
  EXPECT_NEAR(found.x, expected.x, tolerance);
  EXPECT_NEAR(found.y, expected.y, tolerance);
  EXPECT_NEAR(found.z, expected.z, tolerance);
}

struct PointCase {
  std::string name;
  Shape shape;
  Point3 first_min, last_max, center_average;
};

TEST(RepresentativePoint, FollowsTheRules) {
  const std::vector<Vertex> corner = {{{0, 0, 0}}, {{10, 0, 0}}, {{10, 10, 0}}};
  const std::vector<Vertex> square = {{{0, 0, 0}}, {{10, 0, 0}}, {{10, 10, 0}}, {{0, 10, 0}}};
  const TextShape text{{1, 2, 3}, up, L"text", 5};
  const BlockReferenceShape reference{{1, 2, 3}, up, L"BLOCK"};
  // A half circle of radius 5 from (0, 0) over (5, -5), its chord back.
  const std::vector<Vertex> half_moon = {{{0, 0, 0}, 1}, {{10, 0, 0}}};
  const PointCase cases[] = {
      {"closed square", polyline(square, true), {0, 0, 0}, {0, 0, 0}, {5, 5, 0}},
      {"square that is closed by a vertex, too",
       polyline({square[0], square[1], square[2], square[3], square[0]}, true),
       {0, 0, 0},
       {0, 0, 0},
       {5, 5, 0}},
      {"open, half exactly at a vertex",
       polyline(corner, false),
       {0, 0, 0},
       {10, 10, 0},
       {10, 0, 0}},
      {"open, half within a segment",
       polyline({{{0, 0, 0}}, {{10, 0, 0}}, {{10, 4, 0}}}, false),
       {0, 0, 0},
       {10, 4, 0},
       {7, 0, 0}},
      {"all vertices at one place",
       polyline({{{3, 4, 0}}, {{3, 4, 0}}, {{3, 4, 0}}}, false),
       {3, 4, 0},
       {3, 4, 0},
       {3, 4, 0}},
      {"one vertex", polyline({{{3, 4, 0}}}, false), {3, 4, 0}, {3, 4, 0}, {unknown, unknown, 0}},
      {"one vertex, closed", polyline({{{3, 4, 0}}}, true), {3, 4, 0}, {3, 4, 0}, {3, 4, 0}},
      {"no vertex",
       polyline({}, false),
       {unknown, unknown, unknown},
       {unknown, unknown, unknown},
       {unknown, unknown, unknown}},
      {"line", LineShape{{0, 0, 0}, {4, 0, 2}}, {0, 0, 0}, {4, 0, 2}, {2, 0, 1}},
      {"line downwards", LineShape{{4, 2, 2}, {0, 0, -2}}, {4, 2, -2}, {0, 0, 2}, {2, 1, 0}},
      {"3D polyline, half by its length in space",
       in_space({{{0, 0, 0}}, {{3, 0, 4}}, {{3, 0, 7}}}, false),
       {0, 0, 0},
       {3, 0, 7},
       {2.4, 0, 3.5}},
      {"closed 3D polyline",
       in_space({{{0, 0, 0}}, {{6, 0, 0}}, {{0, 3, 3}}}, true),
       {0, 0, 0},
       {0, 0, 3},
       {2, 1, 1.5}},
      {"closed multiline has no mean",
       MlineShape{{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}}, true},
       {0, 0, 0},
       {10, 10, 0},
       {10, 0, 0}},
      {"open half circle", polyline(half_moon, false), {0, 0, 0}, {10, 0, 0}, {5, -5, 0}},
      {"closed half circle: a hundred points of the arc, one of the chord",
       polyline(half_moon, true),
       {0, 0, 0},
       {0, 0, 0},
       {510.0 / 101, -5 / std::tan(pi / 198) / 101, 0}},
      {"old-style polyline goes by its extents",
       old_style(polyline(corner, false)),
       {0, 0, 0},
       {10, 10, 0},
       {5, 5, 0}},
      {"arc goes by its extents", plan_arc(0, 360), {-9, -8, 3}, {11, 12, 3}, {1, 2, 3}},
      {"text", text, {1, 2, 3}, {1, 2, 3}, {1, 2, 3}},
      {"block reference", reference, {1, 2, 3}, {1, 2, 3}, {1, 2, 3}},
      {"unknown shape",
       std::monostate{},
       {unknown, unknown, unknown},
       {unknown, unknown, unknown},
       {unknown, unknown, unknown}},
  };
  for (const PointCase& c : cases) {
    SCOPED_TRACE(c.name);
    const auto found = [&c](PlanRule plan, ElevationRule elevation) {
      RepresentativePoint point({plan, elevation}, gap);
      return position_of(c.shape).value_or(point(c.shape, extents_of(EntityGeometry{c.shape})));
    };
    // The middle of an arc of 99 pieces lies on a chord, off by 1 - cos(pi / 198) of the radius.
    const double tolerance = c.name == "open half circle" ? 7e-4 : 1e-12;
    expect_near(found(PlanRule::First, ElevationRule::Min), c.first_min, 1e-12);
    expect_near(found(PlanRule::Last, ElevationRule::Max), c.last_max, 1e-12);
    expect_near(found(PlanRule::Center, ElevationRule::Average), c.center_average, tolerance);
  }
}

TEST(PointChain, GoesSegmentBySegmentWhereThereAreArcs) {
  std::vector<Point3> chain;
  const PolylineShape moon = polyline({{{0, 0, 0}, 1}, {{10, 0, 0}}}, true);
  point_chain(moon, gap, chain);
  ASSERT_EQ(chain.size(), 102u);
  EXPECT_EQ(chain[0], (Point3{0, 0, 0}));
  EXPECT_EQ(chain[99], (Point3{10, 0, 0}));
  EXPECT_EQ(chain[100], chain[99]) << "the corner comes twice";
  EXPECT_EQ(chain[101], chain[0]) << "and nothing is added to close it";
  for (int i = 0; i < 100; ++i)
    EXPECT_NEAR(length(chain[static_cast<std::size_t>(i)] - Point3{5, 0, 0}), 5, 1e-12);
}

TEST(PointChain, ClosesAtTheFirstPointUnlessItIsThere) {
  std::vector<Point3> chain;
  for (const double distance : {2e-8, 0.5e-8}) {
    point_chain(in_space({{{0, 0, 0}}, {{1, 0, 0}}, {{0, distance, 0}}}, true), gap, chain);
    EXPECT_EQ(chain.size(), distance > gap ? 4u : 3u);
  }
}

}  // namespace
}  // namespace korvel
