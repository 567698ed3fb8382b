// Tests of paths against points, areas and fences in plan view: x and y count, z does not.
#pragma once

#include <span>

#include "geometry/path.h"

namespace korvel {

// Coordinates closer than this fraction of their size, some fifty times their rounding, touch.
inline constexpr double relative_tolerance = 1e-14;

// An area is the polygon's corners in running order either way, the last joined to the first, with
// its outline; a self-crossing polygon encloses its area by the even-odd rule. A polygon of no
// corner encloses nothing, an empty path meets nothing, and neither does a point that is not
// finite.

// True for a point of the area.
[[nodiscard]] bool point_in_polygon(Point3 point, std::span<const Point3> polygon);

// The same of the area that the parts of a closed path enclose together by the even-odd rule: what
// lies in a part within another is outside.
[[nodiscard]] bool point_in_outlines(Point3 point, const Path& outlines);

// True if any point of the path lies in the area: what a crossing window selects. A window that
// lies wholly inside a closed path meets none of its points.
[[nodiscard]] bool path_crosses_polygon(const Path& path, std::span<const Point3> polygon);

// True if the whole path lies in the area: what a window selects.
[[nodiscard]] bool path_inside_polygon(const Path& path, std::span<const Point3> polygon);

// True if the paths have a point in common: what a fence selects.
[[nodiscard]] bool paths_cross(const Path& path, const Path& fence);

// Distance from the point to the nearest place on the path; infinity for an empty path.
[[nodiscard]] double distance_to_path(const Path& path, Point3 point);

}  // namespace korvel
