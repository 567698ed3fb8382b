// Adds the values of one column to those of another.
#pragma once

#include <cstddef>
#include <string>

#include "frame/od_store.h"
#include "frame/progress_meter.h"

namespace korvel {

struct ColumnOfTable {
  std::wstring table;
  int column;  // index
};

struct SumCounts {
  std::size_t written = 0;
  std::size_t refused = 0;  // the column cannot hold the sum; the value stays as it was
};

// What can be added is written; an entity that cannot be written is left out. For which types can
// be added see ValueSum. Both write, so the document is to be locked around them.

// Adds within every record of the table; the two columns may be one. Counts records.
SumCounts add_within_records(const std::wstring& table, int from, int to, ODStore& store,
                             const EntityList& entities, ProgressMeter& meter);

// Adds from the entity's first record of the one table to its first of the other, on every entity
// that has both. Counts entities.
SumCounts add_between_records(const ColumnOfTable& from, const ColumnOfTable& to, ODStore& store,
                              const EntityList& entities, ProgressMeter& meter);

}  // namespace korvel
