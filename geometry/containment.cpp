// Whether a point lies in the area of an entity, in plan view: x and y count, z does not.
#include "geometry/containment.h"

#include <cmath>
#include <numbers>
#include <optional>
#include <type_traits>

#include "geometry/curve_sampler.h"
#include "geometry/elliptic_arc.h"
#include "geometry/hit_test.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

constexpr SamplingRule fine{.max_angle = std::numbers::pi / 4096};

double cross_in_plan(Vector3 a, Vector3 b) { return a.x * b.y - a.y * b.x; }

// The point is center + u * cosine_axis + v * sine_axis with u * u + v * v at most 1, all times the
// determinant of the axes, so that an ellipse seen edge-on needs no division by zero: it is as
// wide as nothing and reaches as far as both axes together.
bool ellipse_contains(const EllipticArc& ellipse, Point3 point) {
  const Vector3 away = point - ellipse.center;
  const Vector3& a = ellipse.cosine_axis;
  const Vector3& b = ellipse.sine_axis;
  const double reach = std::hypot(std::hypot(a.x, a.y), std::hypot(b.x, b.y));
  const double rounding =
      relative_tolerance *
      (std::hypot(point.x, point.y) + std::hypot(ellipse.center.x, ellipse.center.y) + reach);
  const double size = std::abs(cross_in_plan(a, b));
  return std::isfinite(rounding) && std::hypot(away.x, away.y) <= reach + rounding &&
         std::hypot(cross_in_plan(away, b), cross_in_plan(a, away)) <= size + rounding * reach;
}

std::optional<EllipticArc> whole_ellipse(const Shape& shape) {
  std::optional<EllipticArc> found;
  if (const auto* const arc = std::get_if<ArcShape>(&shape)) found = elliptic_arc(*arc);
  if (const auto* const arc = std::get_if<EllipseShape>(&shape)) found = elliptic_arc(*arc);
  return found && is_whole_turn(found->sweep) ? found : std::nullopt;
}

template <class Kind>
constexpr bool is_filled = std::is_same_v<Kind, HatchShape> || std::is_same_v<Kind, FaceShape>;

bool returns(const PolylineShape& polyline) {
  const auto& vertices = polyline.vertices;
  return vertices.size() > 1 && vertices.front().point == vertices.back().point;
}

bool has_closed_outlines(const Shape& shape) {
  const auto* const polyline = std::get_if<PolylineShape>(&shape);
  if (polyline != nullptr && returns(*polyline)) return true;
  return std::visit(
      [](const auto& any) {
        if constexpr (requires { any.closed; }) {
          return any.closed;
        } else {
          return is_filled<std::decay_t<decltype(any)>>;
        }
      },
      shape);
}

}  // namespace

bool area_contains(const EntityGeometry& geometry, Point3 point) {
  if (const auto ellipse = whole_ellipse(geometry.shape)) return ellipse_contains(*ellipse, point);
  if (!has_closed_outlines(geometry.shape)) return false;
  Path outlines;
  sample(geometry, fine, outlines);
  return point_in_outlines(point, outlines);
}

}  // namespace korvel
