// Length, area and volume of entities, written into their object data.
#pragma once

#include <cstddef>
#include <string>

#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

struct MeasureColumns {
  std::wstring table;
  // Empty: not wanted. No two are the same.
  std::wstring length;
  std::wstring area;
  std::wstring volume;
  int decimals = 0;
};

struct MeasureCounts {
  // Entities on which the value was written.
  std::size_t lengths = 0;
  std::size_t areas = 0;
  std::size_t volumes = 0;
  std::size_t entities = 0;  // those that open for reading
};

// Writes into the first record of the table on each entity what the entity has of the three, and
// leaves the value of what it has not. The volume is the area times the thickness without its sign;
// without a thickness there is none. Rounded to the decimals, the measure is stored as the text
// that it is then. The document is to be locked.
MeasureCounts set_measures(ODStore& store, DrawingHost& host, const EntityList& entities,
                           const MeasureColumns& columns);

}  // namespace korvel
