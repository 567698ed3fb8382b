// Finds entities by the values of their records.
#pragma once

#include <string>
#include <vector>

#include "frame/od_store.h"

namespace korvel {

struct ValueCriterion {
  std::wstring field;    // name of a column, compared exactly
  std::wstring pattern;  // as typed, see ValuePattern
};

struct ValueSearch {
  std::vector<std::wstring> tables;  // in which the fields are looked for
  std::vector<ValueCriterion> criteria;
  bool extended = false;
};

// The entities that meet all criteria, in the order given. A criterion is met by a record of one of
// the tables that has the field with a value that passes; different criteria may be met by
// different records. Without tables no criterion is met, without criteria every entity is found.
//
// The pattern that is exactly "*" is deliberately met by every entity, whether or not it carries
// the field, as long as there is a table. Throws Interrupted.
[[nodiscard]] EntityList find_by_values(const ValueSearch& search, ODStore& store,
                                        const EntityList& entities, ProgressMeter& meter);

}  // namespace korvel
