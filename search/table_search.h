// Finds entities by the tables that their records are of.
#pragma once

#include <string>
#include <vector>

#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

enum class TableCriterion { Carries, Lacks };

struct TableSearch {
  TableCriterion criterion = TableCriterion::Carries;
  std::vector<std::wstring> tables;  // distinct
  bool simultaneous = false;         // all of the tables at once; otherwise any of them
};

// The entities that carry, or lack, what is asked for, in the order given.
//
// To carry any of the tables is to have a record of one of them. To carry all is to have as many
// records of them as there are tables; deliberately, two records of one table do for two tables.
// An entity lacks what it does not carry. Where no table is asked for, nothing carries it, and to
// lack all of no tables is impossible: then both criteria find nothing. Throws Interrupted.
[[nodiscard]] EntityList find_by_tables(const TableSearch& search, ODStore& store,
                                        const EntityList& entities, ProgressMeter& meter);

}  // namespace korvel
