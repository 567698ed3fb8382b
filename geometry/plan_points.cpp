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
  divide({0, nodes_.size()});
}

void PlanPoints::divide(const Range& range) {
  if (range.last - range.first < 2) return;
  const std::size_t middle = range.first + (range.last - range.first) / 2;
  double Point3::*const axis = range.by_y ? &Point3::y : &Point3::x;
  const auto at = [this](std::size_t place) {
    return nodes_.begin() + static_cast<std::ptrdiff_t>(place);
  };
  std::nth_element(at(range.first), at(middle), at(range.last),
                   [axis](const Node& a, const Node& b) { return a.point.*axis < b.point.*axis; });
  divide({range.first, middle, !range.by_y});
  divide({middle + 1, range.last, !range.by_y});
}

}  // namespace korvel
