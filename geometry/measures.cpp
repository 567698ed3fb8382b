// Length and area of shapes.
#include "geometry/measures.h"

#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

#include "geometry/bulge.h"
#include "geometry/curve_sampler.h"
#include "geometry/curve_sums.h"
#include "geometry/elliptic_arc.h"
#include "geometry/hit_test.h"
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

// The outline of one loop of a hatch, in the plane of the hatch.
Path flat_outline(const PolylineShape& loop, const PlaneFrame& frame) {
  Path outline;
  PolylineShape closed = loop;
  closed.closed = true;
  sample({std::move(closed)}, {}, outline);
  for (Point3& point : outline.points)
    point = from_world(frame, point);
  return outline;
}

// Decided by the first corner that is not on the other's outline. Of outlines that share all
// corners the later one lies in the earlier one.
bool lies_in(const Path& outline, const Path& other, bool later) {
  for (const Point3& corner : outline.points) {
    const double reach = std::hypot(corner.x, corner.y);
    constexpr double same_place = 1e-10;
    if (distance_to_path(other, corner) <= same_place * reach) continue;
    return point_in_outlines(corner, other);
  }
  return later;
}

double hatch_area(const HatchShape& hatch) {
  if (hatch.loops.size() == 1) return area(polyline_sums(hatch.loops.front(), true));
  std::vector<Path> outlines;
  for (const PolylineShape& loop : hatch.loops)
    outlines.push_back(flat_outline(loop, plane_frame(hatch.loops.front().normal)));
  double sum = 0;
  for (std::size_t i = 0; i < outlines.size(); ++i) {
    bool hole = false;
    for (std::size_t j = 0; j < outlines.size(); ++j) {
      if (i != j && lies_in(outlines[i], outlines[j], i > j)) hole = !hole;
    }
    const double enclosed = area(polyline_sums(hatch.loops[i], true));
    sum += hole ? -enclosed : enclosed;
  }
  return sum;
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
