// Length and area of shapes.
#pragma once

#include <optional>

#include "frame/entity_geometry.h"

namespace korvel {

// Along the curve, in drawing units; none for shapes that are no curve and for curves with a
// coordinate that is not finite. Curves are lines, arcs, circles, ellipses, polylines, splines and
// multilines; a closed one is measured once round. Ellipses and splines come from a sum that is
// refined to some eleven digits, everything else from formulas.
[[nodiscard]] std::optional<double> length_of(const Shape& shape);

// In the plane of the shape, however that lies; none for shapes that enclose nothing. Those that
// are closed, and hatches and faces, have an area. Bulges, circles and elliptic curves by formula,
// splines to some eleven digits.
//
// A closed outline counts the parts that it runs round the other way as negative, and the sum has
// no sign. One that lies in no plane has the area that is seen from where it looks largest.
// Outlines of a hatch that lie in an odd number of others are holes; they must not cross each
// other.
[[nodiscard]] std::optional<double> area_of(const Shape& shape);

}  // namespace korvel
