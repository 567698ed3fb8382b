// Records of one table in an order of the user's: what a table shows and what an export writes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "frame/entity_id.h"

namespace korvel {

// Which record of a table: the entity's first one of that table has the number 1.
struct RecordKey {
  EntityId entity;
  std::int32_t number = 1;

  // By entity, then number.
  friend auto operator<=>(const RecordKey&, const RecordKey&) = default;  // NOLINT
};

struct RecordRows {
  std::wstring table;
  std::vector<std::size_t> columns;  // indexes of the table's columns, in the order shown
  std::vector<RecordKey> rows;
};

}  // namespace korvel
