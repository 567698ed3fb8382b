// Turns entities into 2D and 3D polylines.
#include "geometry/polyline_conversion.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
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

// An arc, or an ellipse that is as round.
std::optional<ArcShape> as_arc(const Shape& shape) {
  if (const auto* const arc = std::get_if<ArcShape>(&shape)) return *arc;
  constexpr double rounding = 1e-12;
  const auto* const ellipse = std::get_if<EllipseShape>(&shape);
  if (ellipse == nullptr || std::abs(ellipse->ratio - 1) > rounding) return std::nullopt;
  const EllipticArc curve = elliptic_arc(*ellipse);
  return ArcShape{ellipse->center, ellipse->normal,
                  normalise(point_at(curve, curve.start) - ellipse->center), length(ellipse->major),
                  curve.sweep};
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
  if (const std::optional<ArcShape> arc = as_arc(geometry.shape)) {
    std::optional<PolylineShape> polyline = bulged(*arc);
    if (!polyline) return false;
    geometry.shape = *std::move(polyline);
    return true;
  }
  const auto* const ellipse = std::get_if<EllipseShape>(&geometry.shape);
  return ellipse != nullptr ? divided(geometry, normalise(ellipse->normal)) : to_plan(geometry);
}

bool PolylineConversion::divided(EntityGeometry& geometry, Vector3 normal) {
  sample(geometry, {.pieces_per_curve = precision_}, path_);
  return take_path(geometry, normal);
}

// The height is that of the first point. What is seen as one point is no curve there. A thickness
// that does not go straight up or down has no counterpart and is dropped.
bool PolylineConversion::to_plan(EntityGeometry& geometry) {
  const auto* const line = std::get_if<LineShape>(&geometry.shape);
  const Vector3 normal = line != nullptr ? normalise(line->normal) : plan_normal;
  const double up = normal.x == 0 && normal.y == 0 ? normal.z : 0;
  sample(geometry, {.pieces_per_curve = precision_}, path_);
  std::vector<Point3>& points = path_.points;
  for (Point3& point : points)
    point.z = points.front().z;
  points.erase(std::unique(points.begin(), points.end()), points.end());
  while (path_.closed && points.size() > 1 && points.back() == points.front())
    points.pop_back();
  if (!take_path(geometry, plan_normal)) return false;
  geometry.thickness *= up;
  return true;
}

bool PolylineConversion::take_path(EntityGeometry& geometry, Vector3 normal) {
  if (path_.points.size() < 2) return false;
  PolylineShape polyline;
  polyline.normal = normal;
  polyline.closed = path_.closed;
  polyline.vertices.reserve(path_.points.size());
  for (const Point3& point : path_.points)
    polyline.vertices.push_back({point});
  geometry.shape = std::move(polyline);
  return true;
}

bool PolylineConversion::to_3d(EntityGeometry& geometry) {
  if (is_of_kind(geometry.shape, PolylineKind::ThreeD)) return false;
  if (precision_ == 0 && is_whole_ellipse(geometry.shape)) return false;
  sample(geometry, {.pieces_per_curve = std::max(precision_, 1)}, path_);
  if (!take_path(geometry, plan_normal)) return false;
  std::get<PolylineShape>(geometry.shape).kind = PolylineKind::ThreeD;
  geometry.thickness = 0;
  return true;
}

std::size_t convert_to_polylines(DrawingHost& host, const EntityList& entities,
                                 PolylineTarget target, int precision) {
  PolylineConversion conversion(target, precision);
  std::size_t converted = 0;
  WriteWalk walk(host, entities.size());
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
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
