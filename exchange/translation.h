// The three phases of a translation: tables, columns and values of object data are renamed by
// aliases. All of them write, so the document is to be locked around them.
#pragma once

#include <cstddef>
#include <vector>

#include "exchange/alias_files.h"
#include "frame/od_store.h"
#include "frame/progress_meter.h"

namespace korvel {

// In the order of the names; a table that cannot be renamed keeps its name and is not spoken of.
void translate_tables(ODStore& store, const Aliases& tables, ProgressMeter& meter);

// One result for each column that has another name to take: its table's own, or else the one for
// any table. All columns are looked up before the first is renamed. Deliberately the tables of
// topologies are not left out, here and below.
[[nodiscard]] std::vector<ColumnChange> translate_columns(ODStore& store, const AliasMaps& maps,
                                                          ProgressMeter& meter);

// The number of records that were written. A value takes the first text that is not its own: that
// of its table and field, of its field, of any field; read as its column's type. Values that cannot
// be written stay as they are.
[[nodiscard]] std::size_t translate_values(ODStore& store, ProgressMeter& meter,
                                           const EntityList& entities, const AliasMaps& maps);

}  // namespace korvel
