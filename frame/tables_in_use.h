// What the commands that set values offer and work on.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

// The tables that their dialogs list, in the drawing's order: the user tables of which one of the
// entities carries a record, or, when no entities are handed over, one in model space. When no
// table at all is in use, every user table. Throws Interrupted.
[[nodiscard]] std::vector<std::wstring> tables_in_use(ODStore& store, DrawingHost& host,
                                                      const EntityList& entities);

// The entities they change: those handed over, else the pick-first set, else what the user selects;
// an empty answer means all of model space in its order. None: Esc. No layer is left out.
[[nodiscard]] std::optional<EntityList> entities_to_set(DrawingHost& host, EntityList entities);

}  // namespace korvel
