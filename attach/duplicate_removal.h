// Leaves every entity with at most one record of each table.
#pragma once

#include <optional>
#include <string_view>

#include "frame/od_store.h"
#include "frame/progress_meter.h"

namespace korvel {

// The end of an entity's records from which duplicates are removed. Deliberately not the record
// that stays: First removes the earliest ones and keeps the last, Last keeps the first.
enum class DuplicateMode { First, Last };

// The mode whose word the answer begins, without regard to letter case; First for nothing typed.
[[nodiscard]] std::optional<DuplicateMode> duplicate_mode_of(std::wstring_view answer);

// Duplicates are records of one table on one entity, whatever their values; names that differ in
// letter case alone count as one table. Gives, summed over the entities, the number of tables that
// had duplicates, also where they could not be removed.
int remove_duplicates(ODStore& store, const EntityList& entities, DuplicateMode mode,
                      ProgressMeter& meter);

}  // namespace korvel
