// What entities carry in their extension dictionaries.
#pragma once

#include <vector>

#include "frame/entity_id.h"
#include "frame/object_copy.h"

namespace korvel::arx {

// As DrawingHost has them. The copies belong to no drawing.
[[nodiscard]] std::vector<ExtensionEntry> extension_entries(EntityId entity);
bool store_extension_entry(EntityId entity, const ExtensionEntry& entry);

}  // namespace korvel::arx
