// Extents of curves against figures from closed formulas.
#include "geometry/extents.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

#include "geometry/bulge.h"
#include "geometry/vector.h"
#include "tests/geometry/shapes.h"

namespace korvel {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double not_a_number = std::numeric_limits<double>::quiet_NaN();

struct BoxCase {
  std::string name;
  EntityGeometry geometry;
  Extents expected;
};

TEST(Extents, MatchClosedFormulas) {
  const double r = 10 * std::numbers::sqrt2 / 2;
  const Vertex a{{0, 0, 0}, 1};
  const Vertex b{{10, 0, 0}, 0};
  const PolylineShape hole = polyline({{{4, 4, 0}, 0}, {{5, 4, 0}, 0}, {{5, 5, 0}, 0}}, false);
  SplineShape hanging = parabola();
  hanging.control_points[1].y = -0.5;
  SplineShape uneven = parabola();  // y = t (1 - t) (1 + t), highest at t = 1 / sqrt 3
  uneven.degree = 3;
  uneven.knots = {0, 0, 0, 0, 1, 1, 1, 1};
  uneven.control_points = {{0, 0, 0}, {1, 1.0 / 3, 0}, {2, 2.0 / 3, 0}, {3, 0, 0}};
  const BoxCase cases[] = {
      {"circle", {plan_arc(0, 360)}, {{-9, -8, 3}, {11, 12, 3}}},
      {"circle without start",
       {ArcShape{{1, 2, 3}, up, {}, 10, 2 * pi}},
       {{-9, -8, 3}, {11, 12, 3}}},
      {"arc over 0", {plan_arc(-45, 90)}, {{1 + r, 2 - r, 3}, {11, 2 + r, 3}}},
      {"arc over 90", {plan_arc(45, 90)}, {{1 - r, 2 + r, 3}, {1 + r, 12, 3}}},
      {"arc over 180", {plan_arc(135, 90)}, {{-9, 2 - r, 3}, {1 - r, 2 + r, 3}}},
      {"arc over 270", {plan_arc(225, 90)}, {{1 - r, -8, 3}, {1 + r, 2 - r, 3}}},
      {"arc inside a quadrant", {plan_arc(0, 45)}, {{1 + r, 2, 3}, {11, 2 + r, 3}}},
      {"arc without one quadrant", {plan_arc(45, 315)}, {{-9, -8, 3}, {11, 12, 3}}},
      {"arc seen from below",
       {ArcShape{{0, 0, 0}, down, {1, 0, 0}, 10, pi}},
       {{-10, -10, 0}, {10, 0, 0}}},
      {"standing circle",
       {ArcShape{{0, 0, 0}, {0, -1, 0}, {1, 0, 0}, 10, 2 * pi}},
       {{-10, 0, -10}, {10, 0, 10}}},
      {"zero radius and normal",
       {ArcShape{{1, 2, 3}, {0, 0, 0}, {1, 0, 0}, 0, pi}},
       {{1, 2, 3}, {1, 2, 3}}},
      {"ellipse",
       {EllipseShape{{0, 0, 0}, up, {0, 4, 0}, 0.5, 0, 2 * pi}},
       {{-2, -4, 0}, {2, 4, 0}}},
      {"turned ellipse",
       {EllipseShape{{0, 0, 0}, up, {3, 3, 0}, 1.0 / 3, 0, 2 * pi}},
       {{-std::sqrt(10), -std::sqrt(10), 0}, {std::sqrt(10), std::sqrt(10), 0}}},
      {"ellipse arc past its start",
       {EllipseShape{{0, 0, 0}, up, {4, 0, 0}, 0.5, 1.5 * pi, 0.5 * pi}},
       {{0, -2, 0}, {4, 2, 0}}},
      {"bulge 1", {polyline({a, b}, false)}, {{0, -5, 0}, {10, 0, 0}}},
      {"bulge -1", {polyline({{{0, 0, 0}, -1}, b}, false)}, {{0, 0, 0}, {10, 5, 0}}},
      {"bulge 1 seen from below", {polyline({a, b}, false, down)}, {{0, 0, 0}, {10, 5, 0}}},
      {"quarter bulge",
       {polyline({{{10, 0, 0}, std::tan(pi / 8)}, {{0, 10, 0}, 0}}, false)},
       {{0, 0, 0}, {10, 10, 0}}},
      {"bulge above 1",
       {polyline({{{0, -10, 0}, std::tan(3 * pi / 8)}, {{-10, 0, 0}, 0}}, false)},
       {{-10, -10, 0}, {10, 10, 0}}},
      {"last bulge closes",
       {polyline({{{0, 0, 0}, 0}, {{10, 0, 0}, -1}}, true)},
       {{0, -5, 0}, {10, 0, 0}}},
      {"last bulge of an open one",
       {polyline({{{0, 0, 0}, 0}, {{10, 0, 0}, -1}}, false)},
       {{0, 0, 0}, {10, 0, 0}}},
      {"senseless bulges",
       {polyline({{{0, 0, 0}, not_a_number}, {{5, 0, 0}, infinity}, {{9, 0, 0}, 1e-300}}, true)},
       {{0, 0, 0}, {9, 0, 0}}},
      {"bulge without length", {polyline({a, a}, false)}, {{0, 0, 0}, {0, 0, 0}}},
      {"one vertex", {polyline({a}, true)}, {{0, 0, 0}, {0, 0, 0}}},
      {"hatch of two loops",
       {HatchShape{{polyline({a, b}, false), hole}}},
       {{0, -5, 0}, {10, 5, 0}}},
      {"curved edges of a hatch",
       {HatchShape{{polyline({{{2, 0, 0}}, {{-2, 0, 0}}}, true), polyline({{{1, 0, 0}}}, true)},
                   {{0, 0, EllipseShape{{}, up, {2, 0, 0}, 1.5, 0, pi}}, {1, 0, hanging}}}},
       {{-2, -0.25, 0}, {2, 3, 0}}},
      {"parabola", {parabola()}, {{0, 0, 0}, {1, 0.25, 0}}},
      {"hanging parabola", {hanging}, {{0, -0.25, 0}, {1, 0, 0}}},
      {"cubic", {uneven}, {{0, 0, 0}, {3, 2 / std::sqrt(27), 0}}},
      {"text", {TextShape{{1, 1, 0}, up, L"abcd", 10, pi / 2, 0.5}}, {{-9, 1, 0}, {1, 15, 0}}},
      {"mtext by its middle",
       {MtextShape{{0, 0, 0}, up, {0, 1, 0}, L"a", 8, 2, 5}},
       {{-1, -4, 0}, {1, 4, 0}}},
      {"mtext by bottom right",
       {MtextShape{{0, 0, 0}, up, {1, 0, 0}, L"a", 8, 2, 9}},
       {{-8, 0, 0}, {0, 2, 0}}},
      {"mtext by top left",
       {MtextShape{{0, 0, 0}, up, {1, 0, 0}, L"a", 8, 2, 1}},
       {{0, -2, 0}, {8, 0, 0}}},
      {"thick line", {LineShape{{0, 0, 0}, {1, 1, 0}}, -5}, {{0, 0, -5}, {1, 1, 0}}},
      {"thick circle from below",
       {ArcShape{{0, 0, 0}, {0, 0, -9}, {1, 0, 0}, 1, 2 * pi}, 5},
       {{-1, -1, -5}, {1, 1, 0}}},
  };
  for (const BoxCase& c : cases) {
    SCOPED_TRACE(c.name);
    const auto box = extents_of(c.geometry);
    ASSERT_TRUE(box.has_value());
    EXPECT_LT(length(box->min - c.expected.min), 1e-12);
    EXPECT_LT(length(box->max - c.expected.max), 1e-12);
  }
}

TEST(Extents, AbsentWhereThereIsNoShapeOrNoNumber) {
  SplineShape broken = parabola();
  broken.control_points[1].y = not_a_number;
  const std::pair<const char*, EntityGeometry> cases[] = {
      {"unknown", {std::monostate{}, 5}},
      {"block reference", {BlockReferenceShape{}}},
      {"no vertices", {polyline({}, true), 5}},
      {"no vertices of an open one", {polyline({}, false)}},
      {"no loops", {HatchShape{}}},
      {"empty spline", {SplineShape{}}},
      {"not a number amid vertices",
       {polyline({{{0, 0, 0}, 0}, {{0, not_a_number, 0}, 0}, {{1, 0, 0}, 0}}, false)}},
      {"infinite line", {LineShape{{0, 0, 0}, {infinity, 0, 0}}}},
      {"infinite radius", {ArcShape{{0, 0, 0}, up, {1, 0, 0}, infinity, pi}}},
      {"not a number in a spline", {broken}},
      {"infinite thickness", {PointShape{}, infinity}},
  };
  for (const auto& [name, geometry] : cases) {
    EXPECT_FALSE(extents_of(geometry).has_value()) << name;
  }
}

TEST(BulgeArc, BeginsAtTheStartAndIsAbsentWhereStraight) {
  const auto arc = bulge_arc({10, 0, 0}, {0, 10, 0}, -std::tan(pi / 8), up);
  ASSERT_TRUE(arc.has_value());
  EXPECT_LT(length(arc->center - Point3{10, 10, 0}), 1e-14);
  EXPECT_LT(length(arc->start - Vector3{0, -1, 0}), 1e-15);
  EXPECT_EQ(arc->normal, down);
  EXPECT_DOUBLE_EQ(arc->radius, 10);
  EXPECT_DOUBLE_EQ(arc->sweep, pi / 2);
  for (const double bulge : {0.0, 1e-9, infinity, not_a_number}) {
    EXPECT_FALSE(bulge_arc({0, 0, 0}, {1, 0, 0}, bulge, up).has_value()) << bulge;
  }
  EXPECT_FALSE(bulge_arc({1, 1, 0}, {1, 1, 0}, 1, up).has_value());
  EXPECT_FALSE(bulge_arc({1, 1, 0}, {1, 1, 9}, 1, up).has_value());
}

TEST(PlaneFrame, FollowsTheArbitraryAxisRule) {
  const double n = std::sqrt(1.0 / 3);
  const std::pair<Vector3, Vector3> cases[] = {
      {{0, 0, 1}, {1, 0, 0}},
      {{0, 0, -1}, {-1, 0, 0}},
      {{5, 0, 0}, {0, 1, 0}},
      {{n, n, n}, {-std::sqrt(0.5), std::sqrt(0.5), 0}},
      {{0.01, 0, 1}, {1 / std::sqrt(1.0001), 0, -0.01 / std::sqrt(1.0001)}},
      {{0.02, 0, 1}, {0, 1, 0}},
      {{0, 0, 0}, {1, 0, 0}},
  };
  for (const auto& [normal, x] : cases) {
    const PlaneFrame frame = plane_frame(normal);
    EXPECT_LT(length(frame.x - x), 1e-15);
    const Point3 there_and_back = from_world(frame, to_world(frame, {1, 2, 3}));
    EXPECT_LT(length(there_and_back - Point3{1, 2, 3}), 1e-14);
  }
}

}  // namespace
}  // namespace korvel
