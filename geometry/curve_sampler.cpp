// Points along the curve of an entity.
#include "geometry/curve_sampler.h"

#include <algorithm>
#include <cmath>
#include <ranges>

#include "geometry/bulge.h"
#include "geometry/elliptic_arc.h"
#include "geometry/hatch_loops.h"
#include "geometry/spline.h"
#include "geometry/text_box.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

constexpr std::size_t most_curve_points = 1'000'000;

// How many pieces a curve that turns by `turn` takes under the rule, from 1 to `limit`.
std::size_t piece_count(double turn, const SamplingRule& rule, std::size_t limit) {
  const double most = static_cast<double>(std::max<std::size_t>(limit, 1));
  const double angle = rule.max_angle > 0 ? rule.max_angle : SamplingRule{}.max_angle;
  // A turn that is a multiple of the angle but for rounding takes no extra piece.
  const double wanted =
      rule.pieces_per_curve > 0 ? rule.pieces_per_curve : std::ceil(std::abs(turn) / angle - 1e-9);
  return wanted > 1 ? static_cast<std::size_t>(std::min(wanted, most)) : 1;
}

// Angle between two directions, 0 to pi; 0 when one of them is no direction.
double angle_between(Vector3 a, Vector3 b) { return std::atan2(length(cross(a, b)), dot(a, b)); }

double control_turn(const SplineShape& spline, std::size_t span) {
  const auto& points = spline.control_points;
  double turn = 0;
  Vector3 before{0, 0, 0};
  for (std::size_t i = span - static_cast<std::size_t>(spline.degree); i < span; ++i) {
    const Vector3 leg = points[i + 1] - points[i];
    if (leg == Vector3{0, 0, 0}) continue;
    turn += angle_between(before, leg);
    before = leg;
  }
  return turn;
}

class Sampler {
 public:
  Sampler(const SamplingRule& rule, Path& out) : rule_(rule), out_(out) {}

  void operator()(std::monostate) {}
  void operator()(const BlockReferenceShape&) {}
  void operator()(const PointShape& point) { add(point.position); }

  void operator()(const LineShape& line) {
    add(line.start);
    add(line.end);
  }

  void operator()(const ArcShape& arc) { add_whole(elliptic_arc(arc)); }
  void operator()(const EllipseShape& ellipse) { add_whole(elliptic_arc(ellipse)); }
  void operator()(const PolylineShape& polyline) { add_polyline({polyline, {}}, polyline.closed); }
  void operator()(const MlineShape& mline) { add_chain(mline.vertices, mline.closed); }
  void operator()(const TextShape& text) { add_chain(text_box(text), true); }
  void operator()(const MtextShape& text) { add_chain(text_box(text), true); }
  void operator()(const FaceShape& face) { add_chain(face.corners, true); }

  void operator()(const SplineShape& spline) {
    if (has_curve(spline)) {
      add_spline(spline);
      finish_part(spline.closed);
    } else {
      add_chain(spline.fit_points.empty() ? spline.control_points : spline.fit_points,
                spline.closed);
    }
  }

  void operator()(const HatchShape& hatch) {
    for_each_loop(hatch, [this](const HatchLoop& loop) {
      part_ = out_.points.size();
      if (part_ > 0) out_.later_parts.push_back(part_);
      add_polyline(loop, true);
    });
  }

 private:
  void add(Point3 point) {
    if (out_.points.size() == part_ || out_.points.back() != point) out_.points.push_back(point);
  }

  void finish_part(bool closed) {
    out_.closed = closed;
    if (!closed) return;
    auto& points = out_.points;
    while (points.size() > part_ + 1 && points.back() == points[part_])
      points.pop_back();
  }

  template <typename Points>
  void add_chain(const Points& points, bool closed) {
    for (const Point3& point : points)
      add(point);
    finish_part(closed);
  }

  // The points between the ends, of at most so many pieces; a whole turn has three at least.
  void add_inside(const EllipticArc& arc, std::size_t most) {
    const std::size_t least = is_whole_turn(arc.sweep) ? 3 : 1;
    const std::size_t pieces = std::max(piece_count(arc.sweep, rule_, most), least);
    const double step = arc.sweep / static_cast<double>(pieces);
    for (std::size_t i = 1; i < pieces; ++i) {
      add(point_at(arc, arc.start + static_cast<double>(i) * step));
    }
  }

  void add_whole(const EllipticArc& arc) {
    const bool closed = is_whole_turn(arc.sweep);
    add(point_at(arc, arc.start));
    add_inside(arc, most_curve_points);
    if (!closed) add(point_at(arc, arc.start + arc.sweep));
    finish_part(closed);
  }

  void add_polyline(HatchLoop loop, bool closed) {
    const PolylineShape& polyline = loop.outline;
    const std::size_t segments = segment_count(polyline, closed);
    for (std::size_t i = 0; i < polyline.vertices.size(); ++i) {
      add(polyline.vertices[i].point);
      if (i == segments) break;
      const std::size_t most = spare() / (segments - i);
      if (const CurvedEdge* const edge = loop.curve_of(i)) {
        add_edge(edge->curve, most);
      } else if (const auto arc = segment_arc(polyline, i)) {
        add_inside(elliptic_arc(*arc), most);
      }
    }
    finish_part(closed);
  }

  void add_edge(const decltype(CurvedEdge::curve)& curve, std::size_t most) {
    if (const auto* const ellipse = std::get_if<EllipseShape>(&curve)) {
      add_inside(elliptic_arc(*ellipse), most);
    } else if (const auto& spline = std::get<SplineShape>(curve); has_curve(spline)) {
      add_spline(spline);
    }
  }

  void add_spline(const SplineShape& spline) {
    const auto& knots = spline.knots;
    const auto degree = static_cast<std::size_t>(spline.degree);
    const std::size_t points = spline.control_points.size();
    std::size_t span = span_from(spline, degree);
    add(spline_start(spline));
    for (std::size_t before = span; span < points; span = span_from(spline, span + 1)) {
      const bool jumps = span > before + degree;
      if (jumps) add(spline_point(spline, span, knots[span]));
      before = span;
      const std::size_t pieces =
          piece_count(control_turn(spline, span), rule_, spare() / (points - span));
      const double step = (knots[span + 1] - knots[span]) / static_cast<double>(pieces);
      for (std::size_t i = 1; i < pieces; ++i) {
        add(spline_point(spline, span, knots[span] + static_cast<double>(i) * step));
      }
      const bool is_last = span_from(spline, span + 1) >= points;
      add(is_last ? spline_end(spline) : spline_point(spline, span, knots[span + 1]));
    }
  }

  [[nodiscard]] std::size_t spare() const {
    return most_curve_points - std::min(most_curve_points, out_.points.size());
  }

  const SamplingRule& rule_;
  Path& out_;
  std::size_t part_ = 0;  // index of the first point of the part in work
};

}  // namespace

void sample(const EntityGeometry& geometry, const SamplingRule& rule, Path& out) {
  out.points.clear();
  out.later_parts.clear();
  out.closed = false;
  std::visit(Sampler(rule, out), geometry.shape);
  if (!std::ranges::all_of(out.points, is_finite)) {
    out.points.clear();
    out.later_parts.clear();
  }
}

}  // namespace korvel
