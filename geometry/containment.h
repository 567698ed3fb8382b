// Whether a point lies in the area of an entity, in plan view: x and y count, z does not.
#pragma once

#include "frame/entity_geometry.h"

namespace korvel {

// Closed polylines of all kinds and those that end where they begin, closed splines and multilines,
// circles, whole ellipses, hatches and faces (solid, trace, 3D face) have an area. Points, lines,
// arcs, open outlines, texts, block references and unknown shapes have none, nor has a shape with a
// coordinate that is not finite.
//
// The outline belongs to the area. A self-crossing outline encloses by the even-odd rule, and so do
// the outlines of a hatch together, so that the inside of a hole is outside. Thickness does not
// count.
//
// Straight outlines, circles and ellipses are exact but for the rounding of coordinates. Bulges are
// taken for chords that stay within a ten-millionth of their radius, splines for chords about as
// near: a point nearer to the curve than that may count as either.
[[nodiscard]] bool area_contains(const EntityGeometry& geometry, Point3 point);

}  // namespace korvel
