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

  // Calls visit(index) with the place in the vector of points in the box or on its sides, in no
  // order, until one call returns true. Says whether one did. Where many points may lie in a part
  // of the box, may_hold(part) is asked first; if it returns false, they are passed over.
  template <class MayHold, class Visit>
  [[nodiscard]] bool any_in(const Extents& box, const MayHold& may_hold, const Visit& visit) const {
    return any_in({0, nodes_.size()}, box, false, may_hold, visit);
  }

 private:
  // A tree without pointers: the middle of a range divides it, by x and by y in turn, what is less
  // before it and what is greater behind it.
  struct Node {
    Point3 point;
    std::size_t index = 0;
  };
  struct Range {
    std::size_t first = 0;
    std::size_t last = 0;
    bool by_y = false;
  };
  static constexpr std::size_t many = 16;

  void divide(const Range& range);

  // `cut`: the part has become smaller since may_hold was asked.
  template <class MayHold, class Visit>
  [[nodiscard]] bool any_in(const Range& range, const Extents& part, bool cut,
                            const MayHold& may_hold, const Visit& visit) const {
    if (range.first == range.last) return false;
    const bool asks = cut && range.last - range.first > many;
    if (asks && !may_hold(part)) return false;
    const bool still_cut = cut && !asks;

    const std::size_t middle = range.first + (range.last - range.first) / 2;
    const Node& node = nodes_[middle];
    if (contains_in_plan(part, node.point) && visit(node.index)) return true;
    double Point3::*const axis = range.by_y ? &Point3::y : &Point3::x;
    const double border = node.point.*axis;
    const Range before{range.first, middle, !range.by_y};
    const Range behind{middle + 1, range.last, !range.by_y};
    if (border < part.min.*axis) return any_in(behind, part, still_cut, may_hold, visit);
    if (border > part.max.*axis) return any_in(before, part, still_cut, may_hold, visit);
    Extents lower = part;
    lower.max.*axis = border;
    Extents upper = part;
    upper.min.*axis = border;
    return any_in(before, lower, true, may_hold, visit) ||
           any_in(behind, upper, true, may_hold, visit);
  }

  std::vector<Node> nodes_;
};

}  // namespace korvel
