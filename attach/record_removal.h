// Removes records from entities: those of some tables, or all of them.
#pragma once

#include <span>
#include <string>

#include "frame/od_store.h"
#include "frame/progress_meter.h"

namespace korvel {

// Removes every record of the tables from every entity. A table that does not exist (any more) and
// what cannot be removed are skipped. Gives the number of records removed.
int remove_tables(ODStore& store, const EntityList& entities, std::span<const std::wstring> tables,
                  ProgressMeter& meter);

// Removes every record, topology tables included. Gives the number of entities that carried any,
// also where they could not be removed.
int remove_all(ODStore& store, const EntityList& entities, ProgressMeter& meter);

}  // namespace korvel
