// What entities of the host own and what is opened by itself: vertices and attributes.
#pragma once

#include <memory>
#include <vector>

#include "host/arx/guards.h"

namespace korvel::arx {

// Of a host's iterator, which is the caller's.
[[nodiscard]] inline std::vector<AcDbObjectId> ids_of(AcDbObjectIterator* parts) {
  const std::unique_ptr<AcDbObjectIterator> held(parts);
  std::vector<AcDbObjectId> ids;
  if (!held) return ids;
  for (; !held->done(); held->step())
    ids.push_back(held->objectId());
  return ids;
}

// Opens one after the other for reading. What does not open is left out.
template <class Part, class Visit>
void for_each_part(AcDbObjectIterator* parts, Visit visit) {
  for (const AcDbObjectId& id : ids_of(parts)) {
    if (const Opened<Part> part = open_as<Part>(id, AcDb::kForRead)) visit(*part);
  }
}

}  // namespace korvel::arx
