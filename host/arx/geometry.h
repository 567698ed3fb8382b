// The shapes of the host's entities.
#pragma once

#include <optional>

#include "frame/entity_geometry.h"
#include "frame/entity_id.h"
#include "host/arx/sdk.h"

namespace korvel::arx {

// As DrawingHost has it.
[[nodiscard]] std::optional<EntityGeometry> geometry_of(EntityId entity);

// Of an open entity; leaders, dimensions, meshes and whatever else has no shape here have none.
[[nodiscard]] EntityGeometry geometry_of(const AcDbEntity& entity);

}  // namespace korvel::arx
