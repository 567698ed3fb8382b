// Replaces values in chosen columns of chosen tables.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "frame/od_store.h"
#include "frame/progress_meter.h"

namespace korvel {

struct ReplaceRequest {
  std::vector<std::wstring> tables;
  std::vector<std::wstring> fields;  // names of columns; a table may lack some
  std::wstring search;               // both as typed, see ValueReplacement
  std::wstring replacement;
};

// The number of values that were written, be it with what they were before. Tables that do not
// exist and entities that cannot be written are skipped. Writes, so the document is to be locked
// around it.
std::size_t replace_in_records(const ReplaceRequest& request, ODStore& store,
                               const EntityList& entities, ProgressMeter& meter);

}  // namespace korvel
