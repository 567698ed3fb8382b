// Cuts a piece out of a curve.
//
// A place on a curve is a number from 0 to the curve's size: the share of a line, the angle turned
// since the start of an arc, the index of a polyline's segment plus the share of that segment.
#include "geometry/curve_split.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <variant>

#include "geometry/bulge.h"
#include "geometry/elliptic_arc.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

// Places closer than this are one, so that a cut beside a vertex by rounding is at the vertex.
constexpr double same_place = 1e-9;

double share_of_line(Point3 start, Point3 end, Point3 point) {
  const Vector3 along = end - start;
  const double square = dot(along, along);
  return square > 0 ? std::clamp(dot(point - start, along) / square, 0.0, 1.0) : 0;
}

double positive_angle(double angle) { return angle < 0 ? angle + whole_turn : angle; }

// The angle turned since the start where the arc comes nearest to the point.
double nearest_turn(const EllipticArc& arc, double turned, Point3 point) {
  if (turned <= arc.sweep) return turned;
  const double to_start = length(point - point_at(arc, arc.start));
  const double to_end = length(point - point_at(arc, arc.start + arc.sweep));
  return to_start <= to_end ? 0 : arc.sweep;
}

double nearest_on_circle(const EllipticArc& arc, Point3 point) {
  const Vector3 away = point - arc.center;
  const double turned =
      positive_angle(std::atan2(dot(away, arc.sine_axis), dot(away, arc.cosine_axis)));
  return nearest_turn(arc, turned, point);
}

double nearest_on_ellipse(const EllipticArc& arc, Point3 point) {
  // Half the derivative of the squared distance; it rises through 0 at the nearest place.
  const auto slope = [&](double parameter) {
    const Vector3 tangent =
        -std::sin(parameter) * arc.cosine_axis + std::cos(parameter) * arc.sine_axis;
    return dot(point_at(arc, parameter) - point, tangent);
  };
  constexpr int probes = 128;
  const double step = arc.sweep / probes;
  double nearest = std::numeric_limits<double>::infinity();
  double place = 0;
  for (int i = 0; i <= probes; ++i) {
    const double distance = length(point - point_at(arc, arc.start + i * step));
    if (distance >= nearest) continue;
    nearest = distance;
    place = i * step;
  }
  const bool closed = is_whole_turn(arc.sweep);
  double low = closed ? place - step : std::max(place - step, 0.0);
  double high = closed ? place + step : std::min(place + step, arc.sweep);
  if (slope(arc.start + low) >= 0) return std::max(low, 0.0);
  if (slope(arc.start + high) <= 0) return high;
  for (int halvings = 0; halvings < 60; ++halvings) {
    const double middle = (low + high) / 2;
    (slope(arc.start + middle) < 0 ? low : high) = middle;
  }
  return low;
}

struct LineCurve {
  const LineShape& line;

  static constexpr bool closed = false;
  [[nodiscard]] static double size() { return 1; }
  [[nodiscard]] double nearest(Point3 point) const {
    return share_of_line(line.start, line.end, point);
  }
  [[nodiscard]] Shape piece(double from, double to) const {
    const Vector3 along = line.end - line.start;
    return LineShape{from == 0 ? line.start : line.start + from * along,
                     to == 1 ? line.end : line.start + to * along, line.normal};
  }
};

struct ArcCurve {
  explicit ArcCurve(const ArcShape& shape)
      : arc(shape), curve(elliptic_arc(shape)), closed(is_whole_turn(curve.sweep)) {}

  const ArcShape& arc;
  EllipticArc curve;
  bool closed;

  [[nodiscard]] double size() const { return curve.sweep; }
  [[nodiscard]] double nearest(Point3 point) const { return nearest_on_circle(curve, point); }
  [[nodiscard]] Shape piece(double from, double to) const {
    ArcShape rest = arc;
    if (from != 0) {
      rest.start = normalise(std::cos(from) * curve.cosine_axis + std::sin(from) * curve.sine_axis);
    }
    rest.sweep = to - from;
    return rest;
  }
};

struct EllipseCurve {
  explicit EllipseCurve(const EllipseShape& shape)
      : ellipse(shape), curve(elliptic_arc(shape)), closed(is_whole_turn(curve.sweep)) {}

  const EllipseShape& ellipse;
  EllipticArc curve;
  bool closed;

  [[nodiscard]] double size() const { return curve.sweep; }
  [[nodiscard]] double nearest(Point3 point) const { return nearest_on_ellipse(curve, point); }
  [[nodiscard]] Shape piece(double from, double to) const {
    EllipseShape rest = ellipse;
    rest.start = positive_angle(std::fmod(curve.start + from, whole_turn));
    rest.end = rest.start + (to - from);
    return rest;
  }
};

struct PolylineCurve {
  explicit PolylineCurve(const PolylineShape& shape)
      : line(shape), closed(shape.closed), segments(segment_count(shape, shape.closed)) {}

  const PolylineShape& line;
  bool closed;
  std::size_t segments;

  [[nodiscard]] double size() const { return static_cast<double>(segments); }

  [[nodiscard]] const Vertex& vertex(std::size_t index) const {
    return line.vertices[index % line.vertices.size()];
  }

  [[nodiscard]] Point3 point(std::size_t segment, double share) const {
    const Point3 from = vertex(segment).point;
    const Point3 to = vertex(segment + 1).point;
    if (share == 0) return from;
    if (share == 1) return to;
    if (const auto arc = segment_arc(line, segment % segments)) {
      return point_at(elliptic_arc(*arc), share * arc->sweep);
    }
    return from + share * (to - from);
  }

  [[nodiscard]] double share_nearest(std::size_t segment, Point3 to) const {
    if (const auto arc = segment_arc(line, segment)) {
      return nearest_on_circle(elliptic_arc(*arc), to) / arc->sweep;
    }
    return share_of_line(vertex(segment).point, vertex(segment + 1).point, to);
  }

  [[nodiscard]] double nearest(Point3 to) const {
    double least = std::numeric_limits<double>::infinity();
    double place = 0;
    for (std::size_t i = 0; i < segments; ++i) {
      const double share = share_nearest(i, to);
      const double distance = length(to - point(i, share));
      if (distance >= least) continue;
      least = distance;
      place = static_cast<double>(i) + share;
    }
    const double at_vertex = std::round(place);
    return std::abs(place - at_vertex) <= same_place ? at_vertex : place;
  }

  // The vertex that begins the part of a segment between two of its shares.
  [[nodiscard]] Vertex part(std::size_t segment, double from, double to) const {
    Vertex begin = vertex(segment);
    if (from == 0 && to == 1) return begin;
    const double widening = begin.end_width - begin.start_width;
    const double start_width = begin.start_width;
    begin.point = point(segment, from);
    begin.start_width = start_width + from * widening;
    begin.end_width = start_width + to * widening;
    if (begin.bulge != 0) begin.bulge = std::tan((to - from) * std::atan(begin.bulge));
    return begin;
  }

  // `to` goes on counting behind the last segment of a closed polyline.
  [[nodiscard]] Shape piece(double from, double to) const {
    PolylineShape rest = line;
    rest.closed = false;
    rest.vertices.clear();
    auto segment = static_cast<std::size_t>(from);
    double share = from - static_cast<double>(segment);
    double end = 0;
    for (; static_cast<double>(segment) < to; ++segment) {
      end = std::min(1.0, to - static_cast<double>(segment));
      rest.vertices.push_back(part(segment, share, end));
      share = 0;
    }
    if (!closed && to == size()) {
      rest.vertices.push_back(line.vertices.back());
    } else {
      const double width = rest.vertices.back().end_width;
      rest.vertices.push_back({point(segment - 1, end), 0, width, width});
    }
    return rest;
  }
};

template <class Curve>
CutCurve cut_closed(const Curve& curve, double first, double second, bool opens_at_one_place) {
  const double size = curve.size();
  first = std::fmod(first, size);
  second = std::fmod(second, size);
  const double apart = std::abs(first - second);
  if (std::min(apart, size - apart) <= same_place) {
    if (!opens_at_one_place) return {CurveCut::CircleAtOnePoint, {}};
    return {CurveCut::Cut, {curve.piece(first, first + size)}};
  }
  return {CurveCut::Cut, {curve.piece(second, first > second ? first : first + size)}};
}

template <class Curve>
CutCurve cut_open(const Curve& curve, double first, double second) {
  const double size = curve.size();
  const double before = std::min(first, second);
  const double behind = std::max(first, second);
  CutCurve cut{CurveCut::Cut, {}};
  if (before > same_place) {
    if (size - before <= same_place) return {CurveCut::NothingCut, {}};
    cut.pieces.push_back(curve.piece(0, before));
  }
  if (size - behind > same_place) {
    if (behind <= same_place) return {CurveCut::NothingCut, {}};
    cut.pieces.push_back(curve.piece(behind - before <= same_place ? before : behind, size));
  }
  if (cut.pieces.empty()) cut.result = CurveCut::NothingLeft;
  return cut;
}

template <class Curve>
CutCurve cut(const Curve& curve, Point3 first, Point3 second, bool opens_at_one_place = false) {
  const double from = curve.nearest(first);
  const double to = curve.nearest(second);
  return curve.closed ? cut_closed(curve, from, to, opens_at_one_place) : cut_open(curve, from, to);
}

// Nearest point of a chain of straight segments in plan view; none when all of them are vertical.
class PlanSearch {
 public:
  explicit PlanSearch(Point3 point) : point_{point.x, point.y, 0} {}

  void segment(Point3 from, Point3 to) {
    const Point3 plan_from{from.x, from.y, 0};
    const Point3 plan_to{to.x, to.y, 0};
    if (plan_from == plan_to) return;
    const double share = share_of_line(plan_from, plan_to, point_);
    const Point3 there = from + share * (to - from);
    const double distance = std::hypot(there.x - point_.x, there.y - point_.y);
    if (distance >= least_) return;
    least_ = distance;
    found_ = there;
  }

  [[nodiscard]] const std::optional<Point3>& found() const { return found_; }

 private:
  Point3 point_;
  double least_ = std::numeric_limits<double>::infinity();
  std::optional<Point3> found_;
};

Point3 seen_in_plane(Point3 in_plane, Vector3 normal, Point3 point) {
  constexpr double vertical = 1e-9;
  const Vector3 unit = normalise(normal);
  if (std::abs(unit.z) < vertical) return point;
  const double height = dot(in_plane - Point3{point.x, point.y, 0}, unit) / unit.z;
  return {point.x, point.y, height};
}

struct SeenInPlan {
  Point3 point;

  template <class Other>
  Point3 operator()(const Other&) const {
    return point;
  }
  Point3 operator()(const LineShape& line) const {
    PlanSearch search(point);
    search.segment(line.start, line.end);
    return search.found().value_or(point);
  }
  Point3 operator()(const ArcShape& arc) const {
    return seen_in_plane(arc.center, arc.normal, point);
  }
  Point3 operator()(const EllipseShape& ellipse) const {
    return seen_in_plane(ellipse.center, ellipse.normal, point);
  }
  Point3 operator()(const PolylineShape& line) const {
    if (line.vertices.empty()) return point;
    if (line.kind != PolylineKind::ThreeD) {
      return seen_in_plane(line.vertices.front().point, line.normal, point);
    }
    PlanSearch search(point);
    for (std::size_t i = 0; i < segment_count(line, line.closed); ++i) {
      search.segment(line.vertices[i].point, line.vertices[(i + 1) % line.vertices.size()].point);
    }
    return search.found().value_or(point);
  }
};

}  // namespace

bool can_be_cut(const Shape& shape) {
  const auto* polyline = std::get_if<PolylineShape>(&shape);
  return (polyline != nullptr && polyline->vertices.size() > 1) ||
         std::holds_alternative<LineShape>(shape) || std::holds_alternative<ArcShape>(shape) ||
         std::holds_alternative<EllipseShape>(shape);
}

CutCurve cut_curve(const Shape& shape, Point3 first, Point3 second) {
  if (!can_be_cut(shape)) return {};
  if (const auto* line = std::get_if<LineShape>(&shape)) {
    return cut(LineCurve{*line}, first, second);
  }
  if (const auto* arc = std::get_if<ArcShape>(&shape)) return cut(ArcCurve(*arc), first, second);
  if (const auto* ellipse = std::get_if<EllipseShape>(&shape)) {
    return cut(EllipseCurve(*ellipse), first, second);
  }
  return cut(PolylineCurve(std::get<PolylineShape>(shape)), first, second, true);
}

Point3 seen_in_plan(const Shape& shape, Point3 point) {
  return std::visit(SeenInPlan{point}, shape);
}

}  // namespace korvel
