// Counts the object data of a drawing and words the figures.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

struct Statistics {
  struct Table {
    std::wstring name;
    std::size_t records = 0;
  };
  std::vector<Table> tables;  // the user tables, in ordinal order
  std::size_t objects = 0;
  std::size_t with_data = 0;
  std::size_t with_duplicates = 0;  // two records of one table, or more
  std::size_t with_multiple = 0;    // two records, or more

  [[nodiscard]] std::size_t without_data() const { return objects - with_data; }
  [[nodiscard]] std::size_t unused_tables() const;
};

// Topology tables are not among the tables that are counted, but, deliberately unlike in the
// presence search, an entity that carries only their records is one with data. An entity whose
// records cannot be read has none. Throws Interrupted.
[[nodiscard]] Statistics count_object_data(ODStore& store, const EntityList& entities,
                                           ProgressMeter& meter);

// The report, a line a figure. Tables with records have a line each, which stand, deliberately,
// between the second and the third figure.
[[nodiscard]] std::wstring statistics_text(const Statistics& statistics);

}  // namespace korvel
