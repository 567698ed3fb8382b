// Other shapes for the host's entities.
#pragma once

#include "frame/entity_geometry.h"
#include "frame/entity_id.h"

namespace korvel::arx {

// As DrawingHost has it. What geometry_of knows no shape of keeps the one it has.
bool set_geometry(EntityId entity, const EntityGeometry& geometry);

}  // namespace korvel::arx
