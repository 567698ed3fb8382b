// Finds the entities whose area a point lies in.
#pragma once

#include "frame/drawing_host.h"

namespace korvel {

// The usable entities of model space whose area contains the point in plan view. The usable filter
// decides the order. Throws Interrupted.
[[nodiscard]] EntityList find_around(Point3 point, DrawingHost& host);

}  // namespace korvel
