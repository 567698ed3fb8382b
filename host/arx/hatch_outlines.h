// The outlines of the host's hatches.
#pragma once

#include <optional>
#include <vector>

#include "frame/entity_geometry.h"
#include "host/arx/sdk.h"

namespace korvel::arx {

// Closed, in world coordinates. None when one of them is no polyline (the host has those of other
// edges as curves, which are not read): without it the area would be wrong.
[[nodiscard]] std::optional<std::vector<PolylineShape>> outlines_of(const AcDbHatch& hatch);

}  // namespace korvel::arx
