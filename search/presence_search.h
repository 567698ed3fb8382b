// Finds entities by whether, and how often, object data are attached to them.
#pragma once

#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

// The numbers are those the search has always been called with; 1 is not used.
enum class Presence : int { None = 0, Any = 2, Multiple = 3, Duplicated = 4 };

// Whether one entity meets the criterion. None, Any and Multiple look at records of user tables,
// one entry a record: two records of one table are multiple as well as records of two tables.
// Duplicated deliberately looks at all records: two of one topology table make an entity
// duplicated. An entity whose records cannot be read has none.
[[nodiscard]] bool meets(Presence criterion, RecordIterator& records, EntityId entity);

// The entities that meet the criterion, in the order given. Throws Interrupted.
[[nodiscard]] EntityList find_by_presence(Presence criterion, ODStore& store,
                                          const EntityList& entities, ProgressMeter& meter);

}  // namespace korvel
