#include "geometry/hatch_path.h"

#include <cmath>
#include <numbers>
#include <utility>

#include "geometry/elliptic_arc.h"
#include "geometry/spline.h"
#include "geometry/vector.h"

namespace korvel {

void HatchPath::join(Point3 start) {
  constexpr double tolerance = 1e-9;
  if (vertices_.empty()) return;
  const double gap = std::hypot(start.x - end_.x, start.y - end_.y);
  if (gap > tolerance * (std::abs(end_.x) + std::abs(end_.y))) vertices_.push_back({end_});
}

void HatchPath::add_line(Point3 start, Point3 end) {
  join(start);
  vertices_.push_back({start});
  end_ = end;
}

void HatchPath::add_arc(const ArcShape& arc) {
  // A bulge carries no whole turn, and little more than half of one exactly.
  const int pieces = arc.sweep > std::numbers::pi ? 2 : 1;
  const double sense = arc.normal.z < 0 ? -1 : 1;
  const double bulge = sense * std::tan(arc.sweep / (4 * pieces));
  const EllipticArc curve = elliptic_arc(arc);
  const auto at = [&](int piece) { return point_at(curve, curve.sweep * piece / pieces); };
  join(at(0));
  for (int piece = 0; piece < pieces; ++piece)
    vertices_.push_back({at(piece), bulge});
  end_ = at(is_whole_turn(curve.sweep) ? 0 : pieces);
}

void HatchPath::add_ellipse(const EllipseShape& ellipse) {
  const EllipticArc arc = elliptic_arc(ellipse);
  const Point3 start = point_at(arc, arc.start);
  const bool is_whole = is_whole_turn(arc.sweep);
  add_curve(start, is_whole ? start : point_at(arc, arc.start + arc.sweep), ellipse);
}

void HatchPath::add_spline(const SplineShape& spline) {
  if (has_curve(spline)) return add_curve(spline_start(spline), spline_end(spline), spline);
  const auto& chain = spline.fit_points.empty() ? spline.control_points : spline.fit_points;
  for (std::size_t i = 1; i < chain.size(); ++i)
    add_line(chain[i - 1], chain[i]);
}

void HatchPath::add_curve(Point3 start, Point3 end, decltype(CurvedEdge::curve) curve) {
  join(start);
  curves_.push_back({0, vertices_.size(), std::move(curve)});
  vertices_.push_back({start});
  end_ = end;
}

void HatchPath::finish(HatchShape& hatch) {
  if (vertices_.empty()) return;
  join(vertices_.front().point);
  for (CurvedEdge& edge : curves_) {
    edge.loop = hatch.loops.size();
    hatch.curved_edges.push_back(std::move(edge));
  }
  hatch.loops.push_back({.vertices = std::move(vertices_), .normal = {}, .closed = true});
}

void place_in_plane(HatchShape& hatch, Vector3 normal, Point3 origin) {
  const PlaneFrame frame = plane_frame(normal);
  const bool is_plan = normal == Vector3{0, 0, 1};  // spares the rounding
  const auto move = [&](Point3& point) {
    point = point + (origin - Point3{});
    if (!is_plan) point = to_world(frame, point);
  };
  const auto turn = [&](Vector3 v) { return v.x * frame.x + v.y * frame.y + v.z * frame.normal; };
  for (PolylineShape& loop : hatch.loops) {
    loop.normal = frame.normal;
    for (Vertex& vertex : loop.vertices)
      move(vertex.point);
  }
  for (CurvedEdge& edge : hatch.curved_edges) {
    if (auto* const ellipse = std::get_if<EllipseShape>(&edge.curve)) {
      move(ellipse->center);
      ellipse->major = turn(ellipse->major);
      ellipse->normal = turn(ellipse->normal);
    } else {
      auto& spline = std::get<SplineShape>(edge.curve);
      for (Point3& point : spline.control_points)
        move(point);
      for (Point3& point : spline.fit_points)
        move(point);
    }
  }
}

}  // namespace korvel
