// Many points, found by where they lie in plan view: x and y count, z does not.
#include "geometry/plan_points.h"

#include <algorithm>
#include <cmath>

namespace korvel {

PlanPoints::PlanPoints(const std::vector<Point3>& points) {
  nodes_.reserve(points.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (std::isfinite(points[i].x) && std::isfinite(points[i].y)) nodes_.push_back({points[i], i});
  }
  divide(0, nodes_.size(), false);
}

void PlanPoints::divide(std::size_t first, std::size_t last, bool by_y) {
  if (last - first < 2) return;
  const std::size_t middle = first + (last - first) / 2;
  const auto at = [this](std::size_t place) {
    return nodes_.begin() + static_cast<std::ptrdiff_t>(place);
  };
  std::nth_element(at(first), at(middle), at(last), [by_y](const Node& a, const Node& b) {
    return by_y ? a.point.y < b.point.y : a.point.x < b.point.x;
  });
  divide(first, middle, !by_y);
  divide(middle + 1, last, !by_y);
}

}  // namespace korvel
