// Corners of the box that a text fills.
#pragma once

#include <array>

#include "frame/entity_geometry.h"

namespace korvel {

// From the left end of the baseline counter-clockwise about the text's normal. The fonts are not
// known, so the width is an estimate of 0.7 heights for each character; descenders are left out.
[[nodiscard]] std::array<Point3, 4> text_box(const TextShape& text);

// From the lower left corner counter-clockwise about the text's normal, by the text's own width and
// height. An unknown attachment counts as top left.
[[nodiscard]] std::array<Point3, 4> text_box(const MtextShape& text);

}  // namespace korvel
