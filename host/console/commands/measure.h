// Length and area of what is drawn.
#pragma once

#include <optional>

#include "frame/entity_geometry.h"

namespace korvel {

// Along the curve, in drawing units; none for shapes that are no curve. Lines, arcs and polylines
// exactly, ellipses and splines to seven digits.
[[nodiscard]] std::optional<double> length_of(const Shape& shape);

// Of whole circles and closed polylines in a plane; none for other shapes. Parts that a
// self-crossing outline runs round the other way count as negative, the sum without its sign.
[[nodiscard]] std::optional<double> area_of(const Shape& shape);

}  // namespace korvel
