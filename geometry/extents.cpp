// Extents of entities.
#include "geometry/extents.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "geometry/bulge.h"
#include "geometry/elliptic_arc.h"
#include "geometry/hatch_loops.h"
#include "geometry/spline.h"
#include "geometry/text_box.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

struct Axis {
  double Point3::*point;
  double Vector3::*vector;
};
constexpr std::array<Axis, 3> axes{
    {{&Point3::x, &Vector3::x}, {&Point3::y, &Vector3::y}, {&Point3::z, &Vector3::z}}};

class Box {
 public:
  void add(Point3 point) {
    finite_ = finite_ && is_finite(point);
    if (empty_) box_ = {point, point};
    empty_ = false;
    for (const Axis& axis : axes)
      widen(axis, point.*axis.point);
  }

  // Only of a box that holds a point.
  void widen(const Axis& axis, double value) {
    box_.min.*axis.point = std::min(box_.min.*axis.point, value);
    box_.max.*axis.point = std::max(box_.max.*axis.point, value);
  }

  [[nodiscard]] bool holds(const Axis& axis, double value) const {
    return value >= box_.min.*axis.point && value <= box_.max.*axis.point;
  }

  void add_moved_copy(Vector3 move) {
    if (empty_) return;
    const Extents original = box_;
    add(original.min + move);
    add(original.max + move);
  }

  [[nodiscard]] std::optional<Extents> extents() const {
    if (empty_ || !finite_ || !is_finite(box_.min) || !is_finite(box_.max)) return std::nullopt;
    return box_;
  }

 private:
  Extents box_;
  bool empty_ = true;
  bool finite_ = true;
};

// The two places where the arc's whole ellipse turns back along each axis, where the arc has them.
void add_turning_places(Box& box, const EllipticArc& arc) {
  for (const Axis& axis : axes) {
    const double cosine = arc.cosine_axis.*axis.vector;
    const double sine = arc.sine_axis.*axis.vector;
    const double reach = std::hypot(cosine, sine);
    const double highest = std::atan2(sine, cosine);
    if (passes(arc, highest)) box.widen(axis, arc.center.*axis.point + reach);
    if (passes(arc, highest + whole_turn / 2)) box.widen(axis, arc.center.*axis.point - reach);
  }
}

void add_arc(Box& box, const EllipticArc& arc) {
  box.add(point_at(arc, arc.start));
  box.add(point_at(arc, arc.start + arc.sweep));
  add_turning_places(box, arc);
}

void add_polyline(Box& box, const PolylineShape& polyline, bool closed) {
  for (const Vertex& vertex : polyline.vertices)
    box.add(vertex.point);
  const std::size_t segments = segment_count(polyline, closed);
  for (std::size_t i = 0; i < segments; ++i) {
    if (const auto arc = segment_arc(polyline, i)) add_turning_places(box, elliptic_arc(*arc));
  }
}

// Searches a span for the place furthest along an axis (`sign` 1) or against it (-1).
class SpanSearch {
 public:
  SpanSearch(const SplineShape& spline, std::size_t span, const Axis& axis, double sign)
      : spline_(spline), span_(span), axis_(axis), sign_(sign) {}

  [[nodiscard]] double furthest() const {
    const double low = spline_.knots[span_];
    const double high = spline_.knots[span_ + 1];
    // Enough steps that the coordinate has one peak about the best of them.
    const int steps = 4 * spline_.degree;
    const double step = (high - low) / steps;
    double best = low;
    for (int i = 1; i <= steps; ++i) {
      const double parameter = low + i * step;
      if (reach(parameter) > reach(best)) best = parameter;
    }
    return sign_ * peak(std::max(low, best - step), std::min(high, best + step));
  }

 private:
  [[nodiscard]] double reach(double parameter) const {
    return sign_ * (spline_point(spline_, span_, parameter).*axis_.point);
  }

  // Each round drops a third of the interval. What fifty leave is so short that the curve's flat
  // top is level there to the last bit.
  [[nodiscard]] double peak(double low, double high) const {
    constexpr int rounds = 50;
    for (int i = 0; i < rounds; ++i) {
      const double third = (high - low) / 3;
      if (reach(low + third) < reach(high - third)) {
        low += third;
      } else {
        high -= third;
      }
    }
    return reach(low + (high - low) / 2);
  }

  const SplineShape& spline_;
  std::size_t span_;
  const Axis& axis_;
  double sign_;
};

// A span lies within the box of its control points, so most spans need no search.
void add_span_extremes(Box& box, const SplineShape& spline, std::size_t span) {
  const auto last = spline.control_points.begin() + static_cast<std::ptrdiff_t>(span);
  const auto first = last - spline.degree;
  for (const Axis& axis : axes) {
    const auto less = [&axis](const Point3& a, const Point3& b) {
      return a.*axis.point < b.*axis.point;
    };
    const auto [low, high] = std::minmax_element(first, last + 1, less);
    if (!box.holds(axis, (*low).*axis.point)) {
      box.widen(axis, SpanSearch(spline, span, axis, -1).furthest());
    }
    if (!box.holds(axis, (*high).*axis.point)) {
      box.widen(axis, SpanSearch(spline, span, axis, 1).furthest());
    }
  }
}

void add_spline(Box& box, const SplineShape& spline) {
  const auto degree = static_cast<std::size_t>(spline.degree);
  const std::size_t points = spline.control_points.size();
  const auto for_each_span = [&](auto&& visit) {
    for (std::size_t span = span_from(spline, degree); span < points;
         span = span_from(spline, span + 1)) {
      visit(span);
    }
  };
  for_each_span([&](std::size_t span) {
    box.add(spline_point(spline, span, spline.knots[span]));
    box.add(spline_point(spline, span, spline.knots[span + 1]));
  });
  for_each_span([&](std::size_t span) { add_span_extremes(box, spline, span); });
}

struct AddShape {
  Box& box;

  void operator()(std::monostate) const {}
  void operator()(const BlockReferenceShape&) const {}
  void operator()(const PointShape& point) const { box.add(point.position); }
  void operator()(const ArcShape& arc) const { add_arc(box, elliptic_arc(arc)); }
  void operator()(const EllipseShape& ellipse) const { add_arc(box, elliptic_arc(ellipse)); }
  void operator()(const PolylineShape& line) const { add_polyline(box, line, line.closed); }
  void operator()(const MlineShape& mline) const { add_points(mline.vertices); }
  void operator()(const TextShape& text) const { add_points(text_box(text)); }
  void operator()(const MtextShape& text) const { add_points(text_box(text)); }
  void operator()(const FaceShape& face) const { add_points(face.corners); }

  void operator()(const LineShape& line) const {
    box.add(line.start);
    box.add(line.end);
  }

  void operator()(const SplineShape& spline) const {
    if (has_curve(spline)) {
      add_spline(box, spline);
    } else {
      add_points(spline.fit_points.empty() ? spline.control_points : spline.fit_points);
    }
  }

  void operator()(const HatchShape& hatch) const {
    for_each_loop(hatch, [this](const HatchLoop& loop) {
      add_polyline(box, loop.outline, true);
      for (const CurvedEdge& edge : loop.curves)
        std::visit(*this, edge.curve);
    });
  }

  template <typename Points>
  void add_points(const Points& points) const {
    for (const Point3& point : points)
      box.add(point);
  }
};

Vector3 thickness_direction(const Shape& shape) {
  return std::visit(
      [](const auto& any) {
        if constexpr (requires { any.normal; }) {
          return normalise(any.normal);
        } else {
          return Vector3{0, 0, 1};
        }
      },
      shape);
}

}  // namespace

std::optional<Extents> extents_of(const EntityGeometry& geometry) {
  Box box;
  std::visit(AddShape{box}, geometry.shape);
  if (geometry.thickness != 0) {
    box.add_moved_copy(geometry.thickness * thickness_direction(geometry.shape));
  }
  return box.extents();
}

Extents united(const Extents& a, const Extents& b) {
  const auto least = [](const Point3& p, const Point3& q) {
    return Point3{std::min(p.x, q.x), std::min(p.y, q.y), std::min(p.z, q.z)};
  };
  const auto most = [](const Point3& p, const Point3& q) {
    return Point3{std::max(p.x, q.x), std::max(p.y, q.y), std::max(p.z, q.z)};
  };
  return {least(a.min, b.min), most(a.max, b.max)};
}

}  // namespace korvel
