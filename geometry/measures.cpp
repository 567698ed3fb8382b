// Length and area of shapes.
#include "geometry/measures.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <vector>

#include "geometry/bulge.h"
#include "geometry/curve_sampler.h"
#include "geometry/curve_sums.h"
#include "geometry/elliptic_arc.h"
#include "geometry/hatch_loops.h"
#include "geometry/nesting.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

std::optional<double> if_finite(std::optional<double> measure) {
  return measure && std::isfinite(*measure) ? measure : std::nullopt;
}

// Without the loss of digits that the difference has for small angles.
double angle_less_sine(double angle) {
  if (angle > 0.1) return angle - std::sin(angle);
  const double square = angle * angle;
  return angle * square / 6 * (1 - square / 20 * (1 - square / 42 * (1 - square / 72)));
}

CurveSums polyline_sums(const PolylineShape& polyline, bool closed) {
  CurveSums sums;
  const std::vector<Vertex>& vertices = polyline.vertices;
  const Vector3 normal = normalise(polyline.normal);
  const std::size_t segments = segment_count(polyline, closed);
  for (std::size_t i = 0; i < segments; ++i) {
    const std::size_t next = i + 1 == vertices.size() ? 0 : i + 1;
    CurveSums segment = chord_sums(vertices.front().point, vertices[i].point, vertices[next].point);
    if (const std::optional<ArcShape> arc = segment_arc(polyline, i)) {
      const double piece = arc->radius * arc->radius * angle_less_sine(arc->sweep);
      segment.length = arc->radius * arc->sweep;
      segment.twice_area = segment.twice_area + (vertices[i].bulge < 0 ? -piece : piece) * normal;
    }
    sums = sums + segment;
  }
  return sums;
}

double area(const CurveSums& sums) { return length(sums.twice_area) / 2; }

double loop_area(const HatchLoop& loop) {
  CurveSums sums = polyline_sums(loop.outline, true);
  for (const CurvedEdge& edge : loop.curves) {
    const auto* const ellipse = std::get_if<EllipseShape>(&edge.curve);
    sums.twice_area =
        sums.twice_area + (ellipse != nullptr
                               ? twice_segment_area(*ellipse)
                               : spline_sums(std::get<SplineShape>(edge.curve)).twice_area);
  }
  return area(sums);
}

// Whether there are points, and none is so far that the square of its distance is no number.
bool are_near(const std::vector<Point3>& points) {
  constexpr double far = 1e150;
  return !points.empty() && std::ranges::all_of(points, [](const Point3& point) {
    return std::abs(point.x) < far && std::abs(point.y) < far;
  });
}

double hatch_area(const HatchShape& hatch) {
  std::vector<double> areas;
  for_each_loop(hatch, [&](const HatchLoop& loop) { areas.push_back(loop_area(loop)); });
  const double sum = std::accumulate(areas.begin(), areas.end(), 0.0);
  if (areas.size() < 2 || !std::isfinite(sum)) return sum;
  Path outlines;
  sample({hatch}, {}, outlines);
  const PlaneFrame frame = plane_frame(hatch.loops.front().normal);
  for (Point3& point : outlines.points)
    point = from_world(frame, point);
  if (!are_near(outlines.points)) return std::numeric_limits<double>::quiet_NaN();
  const std::vector<bool> holes = parts_within_others(outlines, areas);
  double filled = 0;
  for (std::size_t i = 0; i < areas.size(); ++i)
    filled += holes[i] ? -areas[i] : areas[i];
  return filled;
}

struct Length {
  using Result = std::optional<double>;
  template <class Other>
  Result operator()(const Other& /*no curve*/) const {
    return std::nullopt;
  }
  Result operator()(const LineShape& line) const { return length(line.end - line.start); }
  Result operator()(const ArcShape& arc) const { return arc.radius * std::abs(arc.sweep); }
  Result operator()(const EllipseShape& ellipse) const { return ellipse_sums(ellipse).length; }
  Result operator()(const PolylineShape& polyline) const {
    return polyline_sums(polyline, polyline.closed).length;
  }
  Result operator()(const SplineShape& spline) const { return spline_sums(spline).length; }
  Result operator()(const MlineShape& mline) const {
    return chain_sums(mline.vertices, mline.closed).length;
  }
};

struct Area {
  using Result = std::optional<double>;
  template <class Other>
  Result operator()(const Other& /*encloses nothing*/) const {
    return std::nullopt;
  }
  Result operator()(const ArcShape& arc) const {
    if (!is_whole_turn(arc.sweep)) return std::nullopt;
    return std::numbers::pi * arc.radius * arc.radius;
  }
  Result operator()(const EllipseShape& ellipse) const {
    const EllipticArc arc = elliptic_arc(ellipse);
    if (!is_whole_turn(arc.sweep)) return std::nullopt;
    return std::numbers::pi * length(arc.cosine_axis) * length(arc.sine_axis);
  }
  Result operator()(const PolylineShape& polyline) const {
    if (!polyline.closed) return std::nullopt;
    return area(polyline_sums(polyline, true));
  }
  Result operator()(const SplineShape& spline) const {
    if (!spline.closed) return std::nullopt;
    return area(spline_sums(spline));
  }
  Result operator()(const MlineShape& mline) const {
    if (!mline.closed) return std::nullopt;
    return area(chain_sums(mline.vertices, true));
  }
  Result operator()(const HatchShape& hatch) const { return hatch_area(hatch); }
  Result operator()(const FaceShape& face) const { return area(chain_sums(face.corners, true)); }
};

}  // namespace

std::optional<double> length_of(const Shape& shape) {
  return if_finite(std::visit(Length{}, shape));
}

std::optional<double> area_of(const Shape& shape) { return if_finite(std::visit(Area{}, shape)); }

}  // namespace korvel
