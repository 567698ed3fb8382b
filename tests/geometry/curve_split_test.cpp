// Pieces of cut curves against closed formulas: where they begin and end, how long they are.
#include "geometry/curve_split.h"

#include <gtest/gtest.h>
#include <string>

#include "geometry/bulge.h"
#include "geometry/elliptic_arc.h"
#include "geometry/vector.h"
#include "tests/geometry/shapes.h"

namespace korvel {
namespace {

constexpr double tolerance = 1e-12;

struct Piece {
  Point3 start;
  Point3 end;
  double length = 0;  // angle for ellipses
};

Piece measured(const EllipticArc& arc, double length) {
  return {point_at(arc, arc.start), point_at(arc, arc.start + arc.sweep), length};
}

Piece measured(const Shape& shape) {
  if (const auto* line = std::get_if<LineShape>(&shape)) {
    return {line->start, line->end, length(line->end - line->start)};
  }
  if (const auto* arc = std::get_if<ArcShape>(&shape)) {
    return measured(elliptic_arc(*arc), arc->radius * arc->sweep);
  }
  if (const auto* ellipse = std::get_if<EllipseShape>(&shape)) {
    return measured(elliptic_arc(*ellipse), ellipse->end - ellipse->start);
  }
  const auto& line = std::get<PolylineShape>(shape);
  EXPECT_FALSE(line.closed);
  Piece piece{line.vertices.front().point, line.vertices.back().point};
  for (std::size_t i = 0; i + 1 < line.vertices.size(); ++i) {
    const auto arc = segment_arc(line, i);
    const Vector3 chord = line.vertices[i + 1].point - line.vertices[i].point;
    piece.length += arc ? arc->radius * arc->sweep : length(chord);
  }
  return piece;
}

void expect_near(const Piece& got, const Piece& expected, const std::string& name) {
  EXPECT_LT(length(got.start - expected.start), tolerance) << name;
  EXPECT_LT(length(got.end - expected.end), tolerance) << name;
  EXPECT_NEAR(got.length, expected.length, tolerance) << name;
}

const LineShape line{{0, 0, 0}, {10, 0, 0}};
const ArcShape half{{0, 0, 0}, up, {1, 0, 0}, 2, pi};
const ArcShape circle{{0, 0, 0}, up, {1, 0, 0}, 2, 2 * pi};
// In the plane x = 5, seen from beyond it; its start points up.
const ArcShape upright{{5, 0, 0}, {1, 0, 0}, {0, 0, 1}, 2, 2 * pi};
const EllipseShape ellipse{{0, 0, 0}, up, {4, 0, 0}, 0.5, 0, 2 * pi};
// Straight, half a circle to the right of it, straight.
const PolylineShape bent = polyline({{{0, 0, 0}}, {{4, 0, 0}, 1}, {{4, 4, 0}}, {{0, 4, 0}}}, false);
const PolylineShape square = polyline({{{0, 0, 0}}, {{4, 0, 0}}, {{4, 4, 0}}, {{0, 4, 0}}}, true);
const PolylineShape lens = polyline({{{0, 0, 0}, 1}, {{4, 0, 0}, 1}}, true);

PolylineShape spatial() {
  PolylineShape shape = polyline({{{0, 0, 0}}, {{0, 0, 8}}, {{6, 0, 16}}}, false);
  shape.kind = PolylineKind::ThreeD;
  return shape;
}

TEST(CurveSplit, LeavesWhatIsOutsideThePoints) {
  const double r = std::numbers::sqrt2;
  const struct {
    const char* name;
    Shape shape;
    Point3 first, second;
    std::vector<Piece> pieces;
  } cases[] = {
      {"line",
       line,
       {2, 5, 0},
       {7, -5, 0},
       {{{0, 0, 0}, {2, 0, 0}, 2}, {{7, 0, 0}, {10, 0, 0}, 3}}},
      {"line, against its direction",
       line,
       {7, 0, 0},
       {2, 0, 0},
       {{{0, 0, 0}, {2, 0, 0}, 2}, {{7, 0, 0}, {10, 0, 0}, 3}}},
      {"line, past its end", line, {2, 0, 0}, {99, 3, 0}, {{{0, 0, 0}, {2, 0, 0}, 2}}},
      {"line, past its start", line, {-1, 1, 0}, {2, 0, 0}, {{{2, 0, 0}, {10, 0, 0}, 8}}},
      {"line at one point",
       line,
       {4, 1, 0},
       {4, 1, 0},
       {{{0, 0, 0}, {4, 0, 0}, 4}, {{4, 0, 0}, {10, 0, 0}, 6}}},
      {"arc",
       half,
       {3, 3, 0},
       {-9, 9, 0},
       {{{2, 0, 0}, {r, r, 0}, pi / 2}, {{-r, r, 0}, {-2, 0, 0}, pi / 2}}},
      {"arc, past its end", half, {0, 9, 0}, {-1, -1, 0}, {{{2, 0, 0}, {0, 2, 0}, pi}}},
      {"arc, past its start", half, {0, 9, 0}, {1, -1, 0}, {{{0, 2, 0}, {-2, 0, 0}, pi}}},
      {"circle", circle, {9, 0, 0}, {0, 1, 0}, {{{0, 2, 0}, {2, 0, 0}, 3 * pi}}},
      {"circle, the larger part", circle, {0, 1, 0}, {9, 0, 0}, {{{2, 0, 0}, {0, 2, 0}, pi}}},
      {"upright circle", upright, {9, 0, 7}, {5, -7, 0}, {{{5, -2, 0}, {5, 0, 2}, 3 * pi}}},
      {"ellipse", ellipse, {9, 0, 0}, {0, 9, 0}, {{{0, 2, 0}, {4, 0, 0}, 1.5 * pi}}},
      {"ellipse, the other part", ellipse, {0, 9, 0}, {9, 0, 0}, {{{4, 0, 0}, {0, 2, 0}, pi / 2}}},
      {"bulge in two",
       bent,
       {9, 2, 0},
       {9, 2, 0},
       {{{0, 0, 0}, {6, 2, 0}, 4 + pi}, {{6, 2, 0}, {0, 4, 0}, 4 + pi}}},
      {"within a bulge",
       bent,
       {4 + 2 * r, 2 - 2 * r, 0},
       {4 + 2 * r, 2 + 2 * r, 0},
       {{{0, 0, 0}, {4 + r, 2 - r, 0}, 4 + pi / 2}, {{4 + r, 2 + r, 0}, {0, 4, 0}, 4 + pi / 2}}},
      {"first segment",
       bent,
       {1, 0, 0},
       {3, 0, 0},
       {{{0, 0, 0}, {1, 0, 0}, 1}, {{3, 0, 0}, {0, 4, 0}, 5 + 2 * pi}}},
      {"vertex to vertex",
       bent,
       {4, 0, 0},
       {4, 4, 0},
       {{{0, 0, 0}, {4, 0, 0}, 4}, {{4, 4, 0}, {0, 4, 0}, 4}}},
      {"last segment, past the end",
       bent,
       {1, 4, 0},
       {-9, 5, 0},
       {{{0, 0, 0}, {1, 4, 0}, 7 + 2 * pi}}},
      {"3D polyline",
       spatial(),
       {1, 0, 4},
       {3, 0, 12},
       {{{0, 0, 0}, {0, 0, 4}, 4}, {{3, 0, 12}, {6, 0, 16}, 5}}},
      {"square", square, {1, 0, 0}, {4, 1, 0}, {{{4, 1, 0}, {1, 0, 0}, 12}}},
      {"square, across its start", square, {0, 1, 0}, {1, 0, 0}, {{{1, 0, 0}, {0, 1, 0}, 14}}},
      {"square, within a side against it",
       square,
       {3, 0, 0},
       {1, 0, 0},
       {{{1, 0, 0}, {3, 0, 0}, 2}}},
      {"square at one point", square, {4, 1, 0}, {4, 1, 0}, {{{4, 1, 0}, {4, 1, 0}, 16}}},
      {"square at its start", square, {0, 0, 0}, {0, 0, 0}, {{{0, 0, 0}, {0, 0, 0}, 16}}},
      {"circle of bulges", lens, {2, -9, 0}, {2, 9, 0}, {{{2, 2, 0}, {2, -2, 0}, 2 * pi}}},
  };
  for (const auto& test : cases) {
    const CutCurve cut = cut_curve(test.shape, test.first, test.second);
    EXPECT_EQ(cut.result, CurveCut::Cut) << test.name;
    ASSERT_EQ(cut.pieces.size(), test.pieces.size()) << test.name;
    for (std::size_t i = 0; i < cut.pieces.size(); ++i) {
      EXPECT_EQ(cut.pieces[i].index(), test.shape.index()) << test.name;
      expect_near(measured(cut.pieces[i]), test.pieces[i], test.name);
    }
  }
}

TEST(CurveSplit, RefusesWhatCannotBeCut) {
  const struct {
    const char* name;
    Shape shape;
    Point3 first, second;
    CurveCut result;
  } cases[] = {
      {"spline", parabola(), {0, 0, 0}, {1, 0, 0}, CurveCut::NoCurve},
      {"text", TextShape{}, {0, 0, 0}, {1, 0, 0}, CurveCut::NoCurve},
      {"one vertex", polyline({{{0, 0, 0}}}, true), {0, 0, 0}, {1, 0, 0}, CurveCut::NoCurve},
      {"circle at one point", circle, {5, 0, 0}, {3, 0, 0}, CurveCut::CircleAtOnePoint},
      {"circle beside its seam", circle, {5, 0, 0}, {3, -1e-15, 0}, CurveCut::CircleAtOnePoint},
      {"ellipse at one point", ellipse, {1, 7, 0}, {1, 7, 0}, CurveCut::CircleAtOnePoint},
      {"both past the end", line, {11, 0, 0}, {12, 0, 0}, CurveCut::NothingCut},
      {"both past the start", bent, {-1, 0, 0}, {-2, 0, 0}, CurveCut::NothingCut},
      {"from end to end", half, {-3, -1, 0}, {3, -1, 0}, CurveCut::NothingLeft},
      {"without length", LineShape{}, {0, 0, 0}, {1, 0, 0}, CurveCut::NothingCut},
  };
  for (const auto& test : cases) {
    const CutCurve cut = cut_curve(test.shape, test.first, test.second);
    EXPECT_EQ(cut.result, test.result) << test.name;
    EXPECT_TRUE(cut.pieces.empty()) << test.name;
  }
}

TEST(CurveSplit, KeepsWidthsAndArcsOfPolylines) {
  PolylineShape wide =
      polyline({{{0, 0, 0}, -1, 1, 3}, {{4, 0, 0}, 0, 5, 9}, {{8, 0, 0}, 0, 7, 7}}, false, down);
  wide.kind = PolylineKind::Old2d;
  wide.linetype_runs_on = true;
  const CutCurve cut = cut_curve(wide, {2, -9, 0}, {5, 0, 0});
  ASSERT_EQ(cut.pieces.size(), 2u);
  const auto& before = std::get<PolylineShape>(cut.pieces[0]);
  const auto& behind = std::get<PolylineShape>(cut.pieces[1]);
  ASSERT_EQ(before.vertices.size(), 2u);
  EXPECT_NEAR(before.vertices[0].bulge, -std::tan(pi / 8), tolerance);
  EXPECT_EQ(before.vertices[0].start_width, 1);
  EXPECT_NEAR(before.vertices[0].end_width, 2, tolerance);
  ASSERT_EQ(behind.vertices.size(), 2u);
  EXPECT_NEAR(behind.vertices[0].start_width, 6, tolerance);
  EXPECT_EQ(behind.vertices[0].end_width, 9);
  EXPECT_EQ(behind.vertices[1].start_width, 7);
  for (const PolylineShape& piece : {before, behind}) {
    EXPECT_EQ(piece.kind, PolylineKind::Old2d);
    EXPECT_EQ(piece.normal, down);
    EXPECT_TRUE(piece.linetype_runs_on);
  }
}

TEST(CurveSplit, NearestPlaceOfAnEllipseIsWhereTheNormalMeetsThePoint) {
  // A point on the normal of the ellipse at t, in a tilted plane; the cut must be at t.
  const Vector3 normal = normalise({1, 2, 3});
  const Vector3 major = 4.0 * normalise(cross(normal, {0, 0, 1}));
  const EllipseShape tilted{{1, 2, 3}, normal, major, 0.25, 0.5, 5};
  const Vector3 minor = 0.25 * cross(normal, major);
  for (const double t : {0.6, 1.5, pi / 2, 2.0, 3.0, 4.9}) {
    const Point3 there = tilted.center + std::cos(t) * major + std::sin(t) * minor;
    const Vector3 outward = normalise(std::cos(t) * 0.25 * major + 4 * std::sin(t) * minor);
    const CutCurve cut = cut_curve(tilted, there + 3 * outward + 2 * normal, {1e6, 0, 0});
    ASSERT_FALSE(cut.pieces.empty());
    const auto is_at = [&](double place) { return std::abs(place - t) < 1e-11; };
    const auto& first = std::get<EllipseShape>(cut.pieces.front());
    EXPECT_TRUE(is_at(first.end) || is_at(first.start) ||
                is_at(std::get<EllipseShape>(cut.pieces.back()).start))
        << t;
  }
}

TEST(CurveSplit, PlanViewPicksWhatIsSeen) {
  const struct {
    const char* name;
    Shape shape;
    Point3 at, seen;
  } cases[] = {
      {"rising line", LineShape{{0, 0, 0}, {10, 0, 100}}, {2, 1, 0}, {2, 0, 20}},
      {"vertical line", LineShape{{0, 0, 0}, {0, 0, 100}}, {2, 1, 0}, {2, 1, 0}},
      {"3D polyline", spatial(), {3, 1, 0}, {3, 0, 12}},
      {"circle at a height", ArcShape{{0, 0, 7}, up, {1, 0, 0}, 2, 2 * pi}, {3, 1, 0}, {3, 1, 7}},
      {"tilted circle",
       ArcShape{{0, 0, 7}, {-1, 0, 1}, {0, 1, 0}, 2, 2 * pi},
       {3, 1, 0},
       {3, 1, 10}},
      {"upright circle", upright, {5, 1, 0}, {5, 1, 0}},
  };
  for (const auto& test : cases) {
    EXPECT_LT(length(seen_in_plan(test.shape, test.at) - test.seen), tolerance) << test.name;
  }
}

}  // namespace
}  // namespace korvel
