// The explication: a text file that lists the records of chosen tables in groups, with a sum for
// each group and statistics of every column at the end.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

struct ExplicationRequest {
  std::vector<std::wstring> tables;
  std::optional<std::wstring> type_field;  // none: records are grouped by table
  std::wstring separator;                  // as it stands between cells, of any length
};

// Hands out the file's bytes in order, many at a time. Each entity counts once, however often it is
// listed; groups come in the order of their keys and the entities of a group in that of their
// identifiers. Only reads.
void explicate(ODStore& store, DrawingHost& host, EntityList entities,
               const ExplicationRequest& request, const ByteSink& sink);

}  // namespace korvel
