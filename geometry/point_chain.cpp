// Chains of entities and the way along them.
#include "geometry/point_chain.h"

#include <cstddef>

#include "geometry/bulge.h"
#include "geometry/curve_sampler.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

constexpr SamplingRule arc_pieces{.pieces_per_curve = 99};

bool has_arcs(const PolylineShape& polyline) {
  for (std::size_t i = 0; i < segment_count(polyline, polyline.closed); ++i) {
    if (segment_arc(polyline, i)) return true;
  }
  return false;
}

void add_vertices(const PolylineShape& polyline, std::vector<Point3>& out) {
  for (const Vertex& vertex : polyline.vertices)
    out.push_back(vertex.point);
}

void add_segments(const PolylineShape& polyline, std::vector<Point3>& out) {
  EntityGeometry geometry{PolylineShape{}};
  auto& segment = std::get<PolylineShape>(geometry.shape);
  segment.normal = polyline.normal;
  Path arc;
  for (std::size_t i = 0; i < segment_count(polyline, polyline.closed); ++i) {
    segment.vertices.assign(
        {polyline.vertices[i], polyline.vertices[(i + 1) % polyline.vertices.size()]});
    if (segment_arc(polyline, i)) {
      sample(geometry, arc_pieces, arc);
      out.insert(out.end(), arc.points.begin(), arc.points.end());
    } else {
      add_vertices(segment, out);
    }
  }
}

void add_polyline(const PolylineShape& polyline, double closing_gap, std::vector<Point3>& out) {
  if (polyline.kind == PolylineKind::Old2d) return;
  if (has_arcs(polyline)) add_segments(polyline, out);
  if (out.size() < 2) {
    out.clear();
    add_vertices(polyline, out);
  }
  if (!polyline.closed || out.size() < 2) return;
  const Point3 first = out.front();
  if (length(out.back() - first) > closing_gap) out.push_back(first);
}

}  // namespace

void point_chain(const Shape& shape, double closing_gap, std::vector<Point3>& out) {
  out.clear();
  if (const auto* polyline = std::get_if<PolylineShape>(&shape)) {
    add_polyline(*polyline, closing_gap, out);
  } else if (const auto* line = std::get_if<LineShape>(&shape)) {
    out.assign({line->start, line->end});
  } else if (const auto* mline = std::get_if<MlineShape>(&shape)) {
    out = mline->vertices;
  }
}

std::optional<Point3> point_at_half(std::span<const Point3> chain) {
  if (chain.size() < 2) return std::nullopt;
  if (chain.size() == 2) return chain[0] + 0.5 * (chain[1] - chain[0]);
  double whole = 0;
  for (std::size_t i = 1; i < chain.size(); ++i)
    whole += length(chain[i] - chain[i - 1]);
  const double half = whole / 2;
  double passed = 0;
  for (std::size_t i = 1; i < chain.size(); ++i) {
    const Vector3 back = chain[i - 1] - chain[i];
    passed += length(back);
    if (passed == half) return chain[i];
    if (passed > half) return chain[i] + (passed - half) * normalise(back);
  }
  return std::nullopt;
}

}  // namespace korvel
