// Identifiers of the host as those of the logic, and back.
#pragma once

#include "frame/entity_id.h"
#include "host/arx/sdk.h"

namespace korvel::arx {

// Unconfirmed: that the old-style number of an identifier is its value and orders as it does.
[[nodiscard]] inline EntityId entity_id(const AcDbObjectId& id) {
  return {static_cast<std::uint64_t>(id.asOldId())};
}

[[nodiscard]] inline AcDbObjectId object_id(EntityId entity) {
  AcDbObjectId id;
  id.setFromOldId(static_cast<Adesk::IntDbId>(entity.value));
  return id;
}

}  // namespace korvel::arx
