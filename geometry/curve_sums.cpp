// What adds up along a curve: its length and the area that it sweeps.
#include "geometry/curve_sums.h"

#include <cmath>
#include <cstddef>
#include <vector>

#include "geometry/elliptic_arc.h"
#include "geometry/spline.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

CurveSums operator*(double factor, const CurveSums& sums) {
  return {factor * sums.length, factor * sums.twice_area};
}

struct Place {
  double parameter = 0;
  Point3 point;
};

// Sums over chords are off by even powers of their size where the curve is smooth. One, two and
// four chords together cancel the first two powers; where that does not settle the sum, the piece
// is halved.
template <class PointAt>
class Refinement {
 public:
  explicit Refinement(const PointAt& point_at) : point_at_(point_at) {}

  // `pieces` is enough when no piece can look straight and be curved at five places.
  [[nodiscard]] CurveSums over(Point3 origin, double start, double end, int pieces) const {
    CurveSums sums;
    Place from = place(start);
    for (int i = 1; i <= pieces; ++i) {
      const Place to = place(start + (end - start) * i / pieces);
      sums = sums + between(origin, from, to, deepest);
      from = to;
    }
    return sums;
  }

 private:
  static constexpr int deepest = 16;

  [[nodiscard]] Place place(double parameter) const { return {parameter, point_at_(parameter)}; }
  [[nodiscard]] Place middle(const Place& from, const Place& to) const {
    return place(from.parameter + (to.parameter - from.parameter) / 2);
  }

  [[nodiscard]] CurveSums between(Point3 origin, const Place& from, const Place& to,
                                  int depth) const {
    const Place half = middle(from, to);
    const Point3 first = middle(from, half).point;
    const Point3 last = middle(half, to).point;
    const CurveSums one = chord_sums(origin, from.point, to.point);
    const CurveSums two =
        chord_sums(origin, from.point, half.point) + chord_sums(origin, half.point, to.point);
    const CurveSums four =
        chord_sums(origin, from.point, first) + chord_sums(origin, first, half.point) +
        chord_sums(origin, half.point, last) + chord_sums(origin, last, to.point);
    const CurveSums coarse = 4.0 / 3 * two + -1.0 / 3 * one;
    const CurveSums fine = 4.0 / 3 * four + -1.0 / 3 * two;
    const CurveSums best = 16.0 / 15 * fine + -1.0 / 15 * coarse;
    if (depth == 0 || is_settled(origin, from.point, best, fine)) return best;
    return between(origin, from, half, depth - 1) + between(origin, half, to, depth - 1);
  }

  [[nodiscard]] static bool is_settled(Point3 origin, Point3 at, const CurveSums& best,
                                       const CurveSums& fine) {
    // The best sum is nearer by powers than the one that it is compared with.
    constexpr double settled = 1e-9;
    constexpr double rounding = 1e-15;
    const double tolerance = settled * best.length + rounding * length(at - Point3{});
    const double reach = length(at - origin) + best.length;
    // Written so that what is not finite is settled at once.
    return !(std::abs(best.length - fine.length) > tolerance) &&
           !(length(best.twice_area - fine.twice_area) > tolerance * reach);
  }

  const PointAt& point_at_;
};

}  // namespace

CurveSums operator+(const CurveSums& a, const CurveSums& b) {
  return {a.length + b.length, a.twice_area + b.twice_area};
}

CurveSums chord_sums(Point3 origin, Point3 from, Point3 to) {
  return {length(to - from), cross(from - origin, to - origin)};
}

CurveSums chain_sums(const std::vector<Point3>& points, bool closed) {
  CurveSums sums;
  if (points.empty()) return sums;
  for (std::size_t i = 1; i < points.size(); ++i)
    sums = sums + chord_sums(points.front(), points[i - 1], points[i]);
  return closed ? sums + chord_sums(points.front(), points.back(), points.front()) : sums;
}

CurveSums ellipse_sums(const EllipseShape& ellipse) {
  constexpr int pieces = 8;
  const EllipticArc arc = elliptic_arc(ellipse);
  const auto at = [&arc](double parameter) { return point_at(arc, parameter); };
  return Refinement(at).over(at(arc.start), arc.start, arc.start + arc.sweep, pieces);
}

Vector3 twice_segment_area(const EllipseShape& ellipse) {
  const EllipticArc arc = elliptic_arc(ellipse);
  const Point3 start = point_at(arc, arc.start);
  const Vector3 chord =
      is_whole_turn(arc.sweep) ? Vector3{0, 0, 0} : point_at(arc, arc.start + arc.sweep) - start;
  return cross(arc.center - start, chord) + arc.sweep * cross(arc.cosine_axis, arc.sine_axis);
}

CurveSums spline_sums(const SplineShape& spline) {
  if (!has_curve(spline)) {
    return chain_sums(spline.fit_points.empty() ? spline.control_points : spline.fit_points,
                      spline.closed);
  }
  const std::vector<double>& knots = spline.knots;
  std::size_t span = span_from(spline, static_cast<std::size_t>(spline.degree));
  const Point3 origin = spline_point(spline, span, knots[span]);
  CurveSums sums;
  Point3 end = origin;
  for (; span < spline.control_points.size(); span = span_from(spline, span + 1)) {
    const auto at = [&](double parameter) { return spline_point(spline, span, parameter); };
    sums = sums + chord_sums(origin, end, at(knots[span])) +
           Refinement(at).over(origin, knots[span], knots[span + 1], 2 * spline.degree);
    end = at(knots[span + 1]);
  }
  return spline.closed ? sums + chord_sums(origin, end, origin) : sums;
}

}  // namespace korvel
