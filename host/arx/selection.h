// Selection sets of the host's editor.
#pragma once

#include <optional>

#include "frame/entity_id.h"

namespace korvel::arx {

// As DrawingHost has them. Whatever set is made for them is freed before they return: the host
// holds 128 at most.
[[nodiscard]] EntityList pick_first();
void set_pick_first(const EntityList& entities);
[[nodiscard]] std::optional<EntityList> ask_selection();

}  // namespace korvel::arx
