// Writes coordinates of entities into columns of their records.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "frame/drawing_host.h"
#include "frame/od_store.h"
#include "geometry/representative_point.h"

namespace korvel {

struct CoordinateRequest {
  std::wstring table;
  std::array<std::wstring, 3> columns;  // for x, y and z; empty: not wanted
  PointRules rules;
  int plan_decimals = 0;       // of x and y, 0 or more
  int elevation_decimals = 0;  // of z, 0 or more
};

struct CoordinateCount {
  std::size_t completed = 0;  // at least one column was set
  std::size_t opened = 0;     // could be opened for reading
};

// Rounds the point of each entity and stores it in the entity's first record of the table. An
// entity listed twice is written and counted twice. Stored is the text of the number with six
// decimals, as the column's type reads it, so that more than six take no effect and columns of
// points stay as they are. The document is to be locked around it.
CoordinateCount set_coordinates(DrawingHost& host, ODStore& store, const EntityList& entities,
                                const CoordinateRequest& request);

}  // namespace korvel
