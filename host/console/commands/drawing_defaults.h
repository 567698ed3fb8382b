// Adding entities as a person draws them: on the current layer, with the current properties.
#pragma once

#include <string>

#include "frame/entity_geometry.h"
#include "host/console/console.h"

namespace korvel {

[[nodiscard]] std::wstring current_layer_name(const Drawing& drawing);

// False, after saying so, when the drawing has no place for the entity.
bool draw(ConsoleHost& host, Shape shape);

}  // namespace korvel
