// Outlines within outlines.
#pragma once

#include <vector>

#include "geometry/path.h"

namespace korvel {

// Of the parts of a closed path that do not cross each other, those that lie in an odd number of
// others, in plan view. `sizes` has the area of each part, finite and without a sign: no part lies
// in a smaller one, nor in a later one of the same size. Parts may touch.
[[nodiscard]] std::vector<bool> parts_within_others(const Path& outlines,
                                                    const std::vector<double>& sizes);

}  // namespace korvel
