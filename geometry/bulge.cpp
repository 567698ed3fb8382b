// Arc segments of polylines, given by two vertices and a bulge.
#include "geometry/bulge.h"

#include <cmath>

#include "geometry/vector.h"

namespace korvel {
namespace {

// Below this the height of the arc is less than the rounding error of its far centre.
constexpr double straight_bulge = 1e-8;

}  // namespace

std::optional<ArcShape> bulge_arc(Point3 start, Point3 end, double bulge, Vector3 normal) {
  const double size = std::abs(bulge);
  if (!(size > straight_bulge) || !std::isfinite(size)) return std::nullopt;

  ArcShape arc;
  arc.normal = bulge > 0 ? normalise(normal) : -normalise(normal);
  const Vector3 chord = end - start;
  const Vector3 left = cross(arc.normal, chord);
  const Vector3 to_center = 0.5 * chord + (1 / size - size) / 4 * left;
  arc.center = start + to_center;
  arc.radius = length(to_center);
  arc.sweep = 4 * std::atan(size);
  if (!(arc.radius > 0) || !std::isfinite(arc.radius) || left == Vector3{0, 0, 0}) {
    return std::nullopt;
  }
  arc.start = normalise(-to_center);
  return arc;
}

std::size_t segment_count(const PolylineShape& polyline, bool closed) {
  const std::size_t vertices = polyline.vertices.size();
  return vertices == 0 || closed ? vertices : vertices - 1;
}

std::optional<ArcShape> segment_arc(const PolylineShape& polyline, std::size_t index) {
  const Vertex& from = polyline.vertices[index];
  if (from.bulge == 0 || polyline.kind == PolylineKind::ThreeD) return std::nullopt;
  const std::size_t next = index + 1 == polyline.vertices.size() ? 0 : index + 1;
  return bulge_arc(from.point, polyline.vertices[next].point, from.bulge, polyline.normal);
}

}  // namespace korvel
