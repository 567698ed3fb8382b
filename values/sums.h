// Adds the values of one column to those of another.
#pragma once

#include <cstddef>
#include <string>

#include "frame/od_store.h"

namespace korvel {

struct ColumnOfTable {
  std::wstring table;
  int column;  // index
};

// What can be added is written; a sum that the column cannot hold is left out, so is an entity that
// cannot be written. For which types can be added see ValueSum. Both write, so the document is to
// be locked around them.

// Adds within every record of the table; the two columns may be one. The number of records written.
std::size_t add_within_records(const std::wstring& table, int from, int to, ODStore& store,
                               const EntityList& entities);

// Adds from the entity's first record of the one table to its first of the other, on every entity
// that has both. The number of entities written.
std::size_t add_between_records(const ColumnOfTable& from, const ColumnOfTable& to, ODStore& store,
                                const EntityList& entities);

}  // namespace korvel
