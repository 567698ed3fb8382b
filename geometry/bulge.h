// Arc segments of polylines, given by two vertices and a bulge.
#pragma once

#include <cstddef>
#include <optional>

#include "frame/entity_geometry.h"

namespace korvel {

// The arc that leads from `start` to `end`; nullopt when the segment is straight: a bulge that is
// zero, not finite or too small to tell from a line, or ends that coincide. The arc of a negative
// bulge turns about the opposite of `normal`, so that it always begins at `start`. Its computed
// ends are off the vertices by rounding; take the vertices themselves where the ends matter.
[[nodiscard]] std::optional<ArcShape> bulge_arc(Point3 start, Point3 end, double bulge,
                                                Vector3 normal);

// Number of segments: one less than the vertices, or as many when the polyline is closed.
[[nodiscard]] std::size_t segment_count(const PolylineShape& polyline, bool closed);

// The arc of segment `index`, below segment_count; the last segment of a closed polyline leads back
// to the first vertex.
[[nodiscard]] std::optional<ArcShape> segment_arc(const PolylineShape& polyline, std::size_t index);

}  // namespace korvel
