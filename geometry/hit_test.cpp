// Tests of paths against points, areas and fences in plan view: x and y count, z does not.
#include "geometry/hit_test.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace korvel {
namespace {

struct Plan {
  double x = 0;
  double y = 0;
};

Plan operator-(Point3 to, Point3 from) { return {to.x - from.x, to.y - from.y}; }
double dot(Plan a, Plan b) { return a.x * b.x + a.y * b.y; }
double cross(Plan a, Plan b) { return a.x * b.y - a.y * b.x; }

double size_of(Point3 point) { return std::max(std::abs(point.x), std::abs(point.y)); }

struct PlanBox {
  Plan min{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
  Plan max{-min.x, -min.y};

  void add(Point3 point) {
    min = {std::min(min.x, point.x), std::min(min.y, point.y)};
    max = {std::max(max.x, point.x), std::max(max.y, point.y)};
  }

  [[nodiscard]] bool meets(const PlanBox& other, double gap) const {
    return min.x <= other.max.x + gap && other.min.x <= max.x + gap && min.y <= other.max.y + gap &&
           other.min.y <= max.y + gap;
  }
};

struct Segment {
  Point3 from;
  Point3 to;

  [[nodiscard]] PlanBox box() const {
    PlanBox box;
    box.add(from);
    box.add(to);
    return box;
  }
  [[nodiscard]] double tolerance() const {
    return relative_tolerance * std::max(size_of(from), size_of(to));
  }
};

bool boxes_meet(const Segment& a, const Segment& b) {
  return a.box().meets(b.box(), std::max(a.tolerance(), b.tolerance()));
}

bool lies_on(Point3 point, const Segment& segment) {
  if (!boxes_meet({point, point}, segment)) return false;
  const Plan along = segment.to - segment.from;
  const double tolerance = std::max(relative_tolerance * size_of(point), segment.tolerance());
  return std::abs(cross(along, point - segment.from)) <= tolerance * std::hypot(along.x, along.y);
}

// True if the ends of `other` lie on different sides of the line through `segment`.
bool separates(const Segment& segment, const Segment& other) {
  const Plan along = segment.to - segment.from;
  const double first = cross(along, other.from - segment.from);
  const double second = cross(along, other.to - segment.from);
  return (first < 0 && second > 0) || (first > 0 && second < 0);
}

bool segments_meet(const Segment& a, const Segment& b) {
  if (!boxes_meet(a, b)) return false;
  return lies_on(a.from, b) || lies_on(a.to, b) || lies_on(b.from, a) || lies_on(b.to, a) ||
         (separates(a, b) && separates(b, a));
}

template <typename Visit>
bool any_edge(std::span<const Point3> polygon, Visit&& visit) {
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const Segment edge{polygon[i == 0 ? polygon.size() - 1 : i - 1], polygon[i]};
    if (visit(edge)) return true;
  }
  return false;
}

// The even-odd rule over the edges that any_of_them(visit) visits.
template <typename AnyOfThem>
bool enclosed(Point3 point, AnyOfThem&& any_of_them) {
  if (!std::isfinite(point.x) || !std::isfinite(point.y)) return false;
  bool inside = false;
  const bool on_outline = any_of_them([&](const Segment& edge) {
    // A ray to the right passes an edge that begins at or below it and ends above it, or reversed.
    if ((edge.from.y > point.y) != (edge.to.y > point.y)) {
      const double side = cross(edge.to - edge.from, point - edge.from);
      if (edge.to.y > edge.from.y ? side > 0 : side < 0) inside = !inside;
    }
    return lies_on(point, edge);
  });
  return on_outline || inside;
}

// Places strictly between the ends of `segment`, as shares of its length, where it meets an edge.
// Edges along the segment need none: their ends lie on other edges.
void find_cuts(const Segment& segment, std::span<const Point3> polygon, std::vector<double>& cuts) {
  constexpr double slack = 1e-9;
  const Plan along = segment.to - segment.from;
  cuts.clear();
  any_edge(polygon, [&](const Segment& edge) {
    if (!boxes_meet(segment, edge)) return false;
    const Plan edge_along = edge.to - edge.from;
    const double turn = cross(along, edge_along);
    const double share = cross(edge.from - segment.from, edge_along) / turn;
    const double edge_share = cross(edge.from - segment.from, along) / turn;
    if (turn != 0 && share > 0 && share < 1 && edge_share > -slack && edge_share < 1 + slack) {
      cuts.push_back(share);
    }
    return false;
  });
  std::ranges::sort(cuts);
}

// For a segment with both ends in the area: true if it is outside between two of its cuts.
bool leaves_area(const Segment& segment, std::span<const Point3> polygon,
                 std::vector<double>& cuts) {
  // Two edges that meet on the segment cut it twice, apart by rounding alone.
  constexpr double same_cut = 1e-9;
  find_cuts(segment, polygon, cuts);
  cuts.push_back(1);
  const Plan along = segment.to - segment.from;
  double before = 0;
  for (const double cut : cuts) {
    const double middle = (before + cut) / 2;
    const Point3 place{segment.from.x + middle * along.x, segment.from.y + middle * along.y, 0};
    if (cut - before > same_cut && !point_in_polygon(place, polygon)) return true;
    before = cut;
  }
  return false;
}

double distance_to_segment(Point3 point, const Segment& segment) {
  const Plan along = segment.to - segment.from;
  const Plan away = point - segment.from;
  const double square = dot(along, along);
  const double share = square > 0 ? std::clamp(dot(away, along) / square, 0.0, 1.0) : 0;
  return std::hypot(away.x - share * along.x, away.y - share * along.y);
}

}  // namespace

bool point_in_polygon(Point3 point, std::span<const Point3> polygon) {
  return enclosed(point, [&](auto&& visit) { return any_edge(polygon, visit); });
}

bool point_in_outlines(Point3 point, const Path& outlines) {
  return enclosed(point, [&](auto&& visit) {
    return any_segment(outlines, [&](Point3 from, Point3 to) { return visit(Segment{from, to}); });
  });
}

bool path_crosses_polygon(const Path& path, std::span<const Point3> polygon) {
  PlanBox area;
  double tolerance = 0;
  for (const Point3& corner : polygon) {
    area.add(corner);
    tolerance = std::max(tolerance, relative_tolerance * size_of(corner));
  }
  return any_segment(path, [&](Point3 from, Point3 to) {
    const Segment segment{from, to};
    if (!segment.box().meets(area, std::max(tolerance, segment.tolerance()))) return false;
    return point_in_polygon(from, polygon) ||
           any_edge(polygon, [&](const Segment& edge) { return segments_meet(segment, edge); });
  });
}

bool path_inside_polygon(const Path& path, std::span<const Point3> polygon) {
  const auto is_inside = [&](Point3 point) { return point_in_polygon(point, polygon); };
  if (path.points.empty() || !std::ranges::all_of(path.points, is_inside)) return false;
  std::vector<double> cuts;
  return !any_segment(path, [&](Point3 from, Point3 to) {
    return leaves_area({from, to}, polygon, cuts);
  });
}

bool paths_cross(const Path& path, const Path& fence) {
  return any_segment(path, [&](Point3 from, Point3 to) {
    const Segment segment{from, to};
    return any_segment(fence, [&](Point3 fence_from, Point3 fence_to) {
      return segments_meet(segment, {fence_from, fence_to});
    });
  });
}

double distance_to_path(const Path& path, Point3 point) {
  double nearest = std::numeric_limits<double>::infinity();
  any_segment(path, [&](Point3 from, Point3 to) {
    nearest = std::min(nearest, distance_to_segment(point, {from, to}));
    return false;
  });
  return nearest;
}

}  // namespace korvel
