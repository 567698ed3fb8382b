// A curve as a chain of straight segments.
#pragma once

#include <cstddef>
#include <vector>

#include "frame/entity_geometry.h"

namespace korvel {

// The outlines of a hatch follow each other in one path: `later_parts` has, rising, the index of
// the first point of each part but the first. All parts are closed, or none is. The first point of
// a closed part is not repeated at its end.
struct Path {
  std::vector<Point3> points{};
  bool closed = false;
  std::vector<std::size_t> later_parts{};
};

// Calls visit(Point3 from, Point3 to) for each segment in order until one call returns true, and
// says whether one did. A part of a single point is a segment from that point to itself.
template <typename Visit>
bool any_segment(const Path& path, Visit&& visit) {
  const std::vector<Point3>& points = path.points;
  std::size_t first = 0;
  for (std::size_t part = 0; part <= path.later_parts.size(); ++part) {
    const std::size_t end = part < path.later_parts.size() ? path.later_parts[part] : points.size();
    for (std::size_t i = first + 1; i < end; ++i) {
      if (visit(points[i - 1], points[i])) return true;
    }
    const bool closing = path.closed || end == first + 1;
    if (end > first && closing && visit(points[end - 1], points[first])) return true;
    first = end;
  }
  return false;
}

}  // namespace korvel
