// Many points, found by where they lie in plan view: x and y count, z does not.
#pragma once

#include <cstddef>
#include <vector>

#include "frame/entity_geometry.h"

namespace korvel {

class PlanPoints {
 public:
  // Points with an x or y that is not finite are found nowhere.
  explicit PlanPoints(const std::vector<Point3>& points);

  // Calls visit(index) with the place in the vector of each point in the box or on its sides, in no
  // order, until one call returns true. Says whether one did.
  template <class Visit>
  bool any_in(const Extents& box, const Visit& visit) const {
    return any_in(0, nodes_.size(), false, box, visit);
  }

 private:
  // A tree without pointers: the middle of a range divides it, by x and by y in turn, what is less
  // before it and what is greater behind it.
  struct Node {
    Point3 point;
    std::size_t index = 0;
  };

  void divide(std::size_t first, std::size_t last, bool by_y);

  template <class Visit>
  bool any_in(std::size_t first, std::size_t last, bool by_y, const Extents& box,
              const Visit& visit) const {
    if (first == last) return false;
    const std::size_t middle = first + (last - first) / 2;
    const Node& node = nodes_[middle];
    const bool before = by_y ? box.min.y <= node.point.y : box.min.x <= node.point.x;
    const bool behind = by_y ? box.max.y >= node.point.y : box.max.x >= node.point.x;
    return (contains_in_plan(box, node.point) && visit(node.index)) ||
           (before && any_in(first, middle, !by_y, box, visit)) ||
           (behind && any_in(middle + 1, last, !by_y, box, visit));
  }

  std::vector<Node> nodes_;
};

}  // namespace korvel
