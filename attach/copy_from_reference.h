// Gives entities the object data, and if wanted the properties, of one reference entity.
//
// An entity that cannot be written is skipped and counts all the same. Records of topology tables
// are never copied. All four write, so the document is to be locked around them.
#pragma once

#include <cstddef>

#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

// Attaches to each target, for every table of the reference in ordinal order of the names, as many
// new records with default values as the reference has of it. What a target carries already does
// not matter, and the reference is a target like any other. The number of targets; 0 when the
// reference has no tables.
std::size_t copy_tables(ODStore& store, EntityId reference, const EntityList& targets);

// Attaches to each target but the reference itself a copy of every record of the reference. The
// number of targets, the reference included.
std::size_t copy_records(ODStore& store, EntityId reference, const EntityList& targets);

// Writes over every record of the targets, the reference itself left out, the values of the
// reference's first record of the same table. The number of records written.
std::size_t copy_values(ODStore& store, EntityId reference, const EntityList& targets);

// Gives each target the colour, layer, linetype, linetype scale and lineweight of the reference.
void copy_properties(DrawingHost& host, EntityId reference, const EntityList& targets);

}  // namespace korvel
