// Sums along polylines, and over samples where there is no formula.
#include "host/console/commands/measure.h"

#include <cmath>
#include <numbers>

#include "geometry/bulge.h"
#include "geometry/curve_sampler.h"
#include "geometry/elliptic_arc.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

double sampled_length(const Shape& shape) {
  constexpr SamplingRule fine{.max_angle = std::numbers::pi / 4096};
  Path path;
  sample({shape}, fine, path);
  double sum = 0;
  any_segment(path, [&sum](Point3 from, Point3 to) {
    sum += length(to - from);
    return false;
  });
  return sum;
}

double polyline_length(const PolylineShape& polyline) {
  double sum = 0;
  const std::size_t segments = segment_count(polyline, polyline.closed);
  for (std::size_t i = 0; i < segments; ++i) {
    if (const std::optional<ArcShape> arc = segment_arc(polyline, i)) {
      sum += arc->radius * std::abs(arc->sweep);
    } else {
      const std::size_t next = (i + 1) % polyline.vertices.size();
      sum += length(polyline.vertices[next].point - polyline.vertices[i].point);
    }
  }
  return sum;
}

double polyline_area(const PolylineShape& polyline) {
  if (polyline.vertices.size() < 2) return 0;
  const Vector3 normal = normalise(polyline.normal);
  const Point3 origin = polyline.vertices.front().point;
  double twice = 0;
  for (std::size_t i = 0; i < polyline.vertices.size(); ++i) {
    const Vertex& vertex = polyline.vertices[i];
    const Point3 end = polyline.vertices[(i + 1) % polyline.vertices.size()].point;
    twice += dot(normal, cross(vertex.point - origin, end - origin));
    if (const std::optional<ArcShape> arc = segment_arc(polyline, i)) {
      const double piece = arc->radius * arc->radius * (arc->sweep - std::sin(arc->sweep));
      twice += vertex.bulge < 0 ? -piece : piece;
    }
  }
  return std::abs(twice) / 2;
}

}  // namespace

std::optional<double> length_of(const Shape& shape) {
  if (const auto* const line = std::get_if<LineShape>(&shape)) {
    return length(line->end - line->start);
  }
  if (const auto* const arc = std::get_if<ArcShape>(&shape)) return arc->radius * arc->sweep;
  if (const auto* const polyline = std::get_if<PolylineShape>(&shape)) {
    return polyline_length(*polyline);
  }
  if (std::holds_alternative<EllipseShape>(shape) || std::holds_alternative<SplineShape>(shape)) {
    return sampled_length(shape);
  }
  return std::nullopt;
}

std::optional<double> area_of(const Shape& shape) {
  if (const auto* const arc = std::get_if<ArcShape>(&shape); arc && is_whole_turn(arc->sweep)) {
    return std::numbers::pi * arc->radius * arc->radius;
  }
  const auto* const polyline = std::get_if<PolylineShape>(&shape);
  if (polyline && polyline->closed && polyline->kind != PolylineKind::ThreeD) {
    return polyline_area(*polyline);
  }
  return std::nullopt;
}

}  // namespace korvel
