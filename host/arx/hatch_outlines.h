// The outlines of the host's hatches.
#pragma once

#include <vector>

#include "frame/entity_geometry.h"
#include "host/arx/sdk.h"

namespace korvel::arx {

// Closed, in world coordinates. Those made of polylines alone: outlines
// of other curves are left out.
[[nodiscard]] std::vector<PolylineShape> outlines_of(const AcDbHatch& hatch);

}  // namespace korvel::arx
