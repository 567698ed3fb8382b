// The outlines of the host's hatches.
#pragma once

#include <optional>

#include "frame/entity_geometry.h"
#include "host/arx/sdk.h"

namespace korvel::arx {

// In world coordinates. None when one of them cannot be read: without it the area would be wrong.
[[nodiscard]] std::optional<HatchShape> outlines_of(const AcDbHatch& hatch);

}  // namespace korvel::arx
