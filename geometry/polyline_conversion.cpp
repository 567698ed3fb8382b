// Turns entities into 2D and 3D polylines.
#include "geometry/polyline_conversion.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <span>
#include <utility>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"
#include "geometry/curve_sampler.h"
#include "geometry/elliptic_arc.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

constexpr Vector3 plan_normal{0, 0, 1};

double magnitude(Point3 point) {
  return std::max({std::abs(point.x), std::abs(point.y), std::abs(point.z)});
}

bool lies_across(std::span<const Point3> points, Vector3 normal, double tolerance) {
  return std::ranges::all_of(points, [&](const Point3& point) {
    return std::abs(dot(point - points.front(), normal)) <= tolerance;
  });
}

// The normal of the plane that holds the points: the wanted one if it fits, else one that looks
// upwards. None: they lie in no plane.
std::optional<Vector3> plane_of(std::span<const Point3> points, Vector3 wanted) {
  constexpr double flatness = 1e-9;
  constexpr double rounding = 1e-15;
  const Point3 first = points.front();
  const Point3 far = *std::ranges::max_element(
      points, {}, [&](const Point3& point) { return length(point - first); });
  const double tolerance =
      flatness * length(far - first) + rounding * std::max(magnitude(first), magnitude(far));
  if (lies_across(points, wanted, tolerance)) return wanted;

  const Vector3 along = normalise(far - first);
  const auto off_line = [&](const Point3& point) {
    const Vector3 away = point - first;
    return away - dot(away, along) * along;
  };
  const Vector3 aside = off_line(*std::ranges::max_element(
      points, {}, [&](const Point3& point) { return length(off_line(point)); }));
  if (length(aside) <= tolerance) {  // on one line
    const Vector3 upwards = plan_normal - along.z * along;
    return length(upwards) > flatness ? normalise(upwards) : Vector3{1, 0, 0};
  }
  const Vector3 across = normalise(cross(along, aside));
  const Vector3 normal = across.z < 0 ? -across : across;
  return lies_across(points, normal, tolerance) ? std::optional(normal) : std::nullopt;
}

bool is_sound(const PolylineShape& polyline) {
  return polyline.vertices.size() > 1 &&
         std::ranges::all_of(polyline.vertices,
                             [](const Vertex& vertex) { return is_finite(vertex.point); });
}

// No segment turns more than half a circle, where bulges are at their most precise.
std::optional<PolylineShape> bulged(const ArcShape& arc) {
  const EllipticArc curve = elliptic_arc(arc);
  if (!(arc.radius > 0)) return std::nullopt;
  PolylineShape polyline;
  polyline.normal = normalise(arc.normal);
  polyline.closed = is_whole_turn(curve.sweep);
  const int segments = curve.sweep > std::numbers::pi ? 2 : 1;
  const double bulge = polyline.closed ? 1 : std::tan(curve.sweep / segments / 4);
  const int vertices = polyline.closed ? segments : segments + 1;
  for (int i = 0; i < vertices; ++i) {
    const double place = curve.sweep * i / segments;
    polyline.vertices.push_back({point_at(curve, place), i < segments ? bulge : 0});
  }
  return is_sound(polyline) ? std::optional(std::move(polyline)) : std::nullopt;
}

bool is_curve(const Shape& shape) {
  return std::holds_alternative<LineShape>(shape) || std::holds_alternative<ArcShape>(shape) ||
         std::holds_alternative<EllipseShape>(shape) ||
         std::holds_alternative<SplineShape>(shape) || std::holds_alternative<PolylineShape>(shape);
}

bool is_of_kind(const Shape& shape, PolylineKind kind) {
  const auto* const polyline = std::get_if<PolylineShape>(&shape);
  return polyline != nullptr && polyline->kind == kind;
}

bool is_whole_ellipse(const Shape& shape) {
  if (const auto* const arc = std::get_if<ArcShape>(&shape)) return is_whole_turn(arc->sweep);
  const auto* const ellipse = std::get_if<EllipseShape>(&shape);
  return ellipse != nullptr && is_whole_turn(elliptic_arc(*ellipse).sweep);
}

}  // namespace

bool PolylineConversion::convert(EntityGeometry& geometry) {
  if (!is_curve(geometry.shape)) return false;
  return target_ == PolylineTarget::Light ? to_light(geometry) : to_3d(geometry);
}

bool PolylineConversion::to_light(EntityGeometry& geometry) {
  if (is_of_kind(geometry.shape, PolylineKind::Light)) return false;
  if (auto* const polyline = std::get_if<PolylineShape>(&geometry.shape);
      polyline != nullptr && polyline->kind == PolylineKind::Old2d) {
    if (!is_sound(*polyline)) return false;
    polyline->kind = PolylineKind::Light;
    return true;
  }
  if (const auto* const arc = std::get_if<ArcShape>(&geometry.shape)) {
    std::optional<PolylineShape> polyline = bulged(*arc);
    if (!polyline) return false;
    geometry.shape = *std::move(polyline);
    return true;
  }
  if (const auto* const ellipse = std::get_if<EllipseShape>(&geometry.shape)) {
    return sampled_to_light(geometry, normalise(ellipse->normal));
  }
  const auto* const line = std::get_if<LineShape>(&geometry.shape);
  return sampled_to_light(geometry, line != nullptr ? normalise(line->normal) : plan_normal);
}

bool PolylineConversion::sampled_to_light(EntityGeometry& geometry, Vector3 wanted) {
  sample(geometry, {.pieces_per_curve = precision_}, path_);
  std::vector<Point3>& points = path_.points;
  if (points.size() < 2) return false;
  const std::optional<Vector3> normal = plane_of(points, wanted);
  PolylineShape polyline;
  polyline.normal = normal.value_or(plan_normal);
  polyline.closed = path_.closed;
  polyline.vertices.reserve(points.size());
  for (Point3 point : points) {
    if (!normal) point.z = points.front().z;
    polyline.vertices.push_back({point});
  }
  geometry.shape = std::move(polyline);
  return true;
}

bool PolylineConversion::to_3d(EntityGeometry& geometry) {
  if (is_of_kind(geometry.shape, PolylineKind::ThreeD)) return false;
  if (precision_ == 0 && is_whole_ellipse(geometry.shape)) return false;
  sample(geometry, {.pieces_per_curve = std::max(precision_, 1)}, path_);
  if (path_.points.size() < 2) return false;
  PolylineShape polyline;
  polyline.kind = PolylineKind::ThreeD;
  polyline.closed = path_.closed;
  polyline.vertices.reserve(path_.points.size());
  for (const Point3& point : path_.points)
    polyline.vertices.push_back({point});
  geometry = {std::move(polyline)};
  return true;
}

std::size_t convert_to_polylines(DrawingHost& host, const EntityList& entities,
                                 PolylineTarget target, int precision) {
  PolylineConversion conversion(target, precision);
  std::size_t converted = 0;
  for (const EntityId entity : entities) {
    std::optional<EntityGeometry> geometry = host.geometry_of(entity);
    if (geometry && conversion.convert(*geometry) && host.set_geometry(entity, *geometry)) {
      ++converted;
    }
  }
  return converted;
}

namespace {

struct PrecisionQuestion {
  Message prompt;
  int least;
  int usual;
};
constexpr int most_precision = 99;

// None: cancelled, or refused with a message.
std::optional<int> ask_precision(DrawingHost& host, const PrecisionQuestion& question) {
  using Kind = Answer<std::int32_t>::Kind;
  const Answer<std::int32_t> answer = host.ask_integer(text(question.prompt));
  if (answer.kind == Kind::Cancelled) return std::nullopt;
  if (answer.kind == Kind::Enter) return question.usual;
  if (answer.value >= question.least && answer.value <= most_precision) return answer.value;
  report<Message::InvalidPrecision>(host);
  return std::nullopt;
}

void convert_selection(DrawingHost& host, PolylineTarget target,
                       const PrecisionQuestion& question) {
  const Gathered gathered = gather(host);
  if (gathered.cancelled) return;
  if (gathered.entities.empty()) return report<Message::NoObjectsSelected>(host);
  const std::optional<int> precision = ask_precision(host, question);
  if (!precision) return;
  std::size_t converted = 0;
  {
    const DocumentLock lock(host);
    converted = convert_to_polylines(host, gathered.entities, target, *precision);
  }
  report<Message::CompletedOutOf>(host, converted, gathered.entities.size());
}

}  // namespace

void to_2d_polylines(Session& session) {
  convert_selection(session.host, PolylineTarget::Light,
                    {.prompt = Message::PrecisionPrompt, .least = 1, .usual = 10});
}

void to_3d_polylines(Session& session) {
  convert_selection(session.host, PolylineTarget::ThreeD,
                    {.prompt = Message::ConversionPrecisionPrompt, .least = 0, .usual = 0});
}

}  // namespace korvel
