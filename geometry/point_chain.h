// The points that an entity runs through in straight steps.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "frame/entity_geometry.h"

namespace korvel {

// Replaces `out` by the chain of a 3D polyline, a lightweight polyline, a line or a multiline; any
// other shape, old-style 2D polylines included, has none.
//
// A lightweight polyline with arcs gives the points of one segment after another, so that corners
// appear twice: two points of a straight one, a hundred of an arc. A closed polyline of two points
// or more ends in its first point again, unless it comes back as near as `closing_gap` by itself.
void point_chain(const Shape& shape, double closing_gap, std::vector<Point3>& out);

// Where half the length of the chain is reached; none with fewer than two points, or when a
// coordinate is not a number.
[[nodiscard]] std::optional<Point3> point_at_half(std::span<const Point3> chain);

}  // namespace korvel
