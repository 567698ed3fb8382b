// How the host's entities look.
#pragma once

#include <optional>

#include "frame/entity_id.h"
#include "frame/entity_properties.h"

namespace korvel::arx {

// As DrawingHost has them. Beside a true colour the index is that of the host's nearest colour. A
// layer or linetype that the drawing does not have is not set.
[[nodiscard]] std::optional<EntityProperties> properties_of(EntityId entity);
bool set_properties(EntityId entity, const EntityProperties& properties);

}  // namespace korvel::arx
