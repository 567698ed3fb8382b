// The rules by which an entity is reduced to a point.
#include "geometry/representative_point.h"

#include <cstddef>
#include <limits>
#include <span>

#include "geometry/point_chain.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

constexpr double unknown = std::numeric_limits<double>::max();

// Ends of a closed chain that are no farther apart are one corner.
constexpr double same_corner = 0.0001;

void set_plan(Point3& point, Point3 plan) {
  point.x = plan.x;
  point.y = plan.y;
}

Point3 plan_of(const Extents& extents, PlanRule rule) {
  switch (rule) {
    case PlanRule::First:
      return extents.min;
    case PlanRule::Last:
      return extents.max;
    case PlanRule::Center:
      break;
  }
  return extents.min + 0.5 * (extents.max - extents.min);
}

double elevation_of(const Extents& extents, ElevationRule rule) {
  switch (rule) {
    case ElevationRule::Min:
      return extents.min.z;
    case ElevationRule::Max:
      return extents.max.z;
    case ElevationRule::Average:
      break;
  }
  return (extents.min.z + extents.max.z) / 2;
}

bool is_closed_polyline(const Shape& shape) {
  const auto* polyline = std::get_if<PolylineShape>(&shape);
  return polyline != nullptr && polyline->closed;
}

// None for a chain of one point: nothing is left of it without its last.
std::optional<Point3> mean_of_corners(std::span<const Point3> chain) {
  std::size_t count = chain.size();
  if (count <= 1 || length(chain.back() - chain.front()) <= same_corner) --count;
  if (count == 0) return std::nullopt;
  Point3 sum;
  for (const Point3& point : chain.first(count))
    sum = sum + (point - Point3{});
  const auto divisor = static_cast<double>(count);
  return Point3{sum.x / divisor, sum.y / divisor, sum.z / divisor};
}

}  // namespace

std::optional<Point3> position_of(const Shape& shape) {
  if (const auto* reference = std::get_if<BlockReferenceShape>(&shape)) return reference->position;
  if (const auto* text = std::get_if<TextShape>(&shape)) return text->position;
  return std::nullopt;
}

Point3 RepresentativePoint::operator()(const Shape& shape, const std::optional<Extents>& extents) {
  Point3 point{unknown, unknown, unknown};
  if (extents) {
    set_plan(point, plan_of(*extents, rules_.plan));
    point.z = elevation_of(*extents, rules_.elevation);
  }
  point_chain(shape, closing_gap_, chain_);
  if (!chain_.empty()) place_on_chain(shape, point);
  return point;
}

void RepresentativePoint::place_on_chain(const Shape& shape, Point3& point) const {
  switch (rules_.plan) {
    case PlanRule::First:
      return set_plan(point, chain_.front());
    case PlanRule::Last:
      return set_plan(point, chain_.back());
    case PlanRule::Center:
      break;
  }
  if (is_closed_polyline(shape)) {
    if (const auto mean = mean_of_corners(chain_)) set_plan(point, *mean);
  } else {
    set_plan(point, point_at_half(chain_).value_or(Point3{unknown, unknown, unknown}));
  }
}

}  // namespace korvel
