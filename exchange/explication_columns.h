// Which columns an explication has, and where each chosen table keeps them.
#pragma once

#include <string>
#include <vector>

#include "exchange/explication.h"

namespace korvel {

struct ValueColumn {
  std::wstring name;
  bool counted = false;  // not summed: a chosen table has text, points or the like there
};

inline constexpr int no_column = -1;

struct ExplainedTable {
  std::wstring name;
  std::vector<int> places;     // for each value column the table's own, or no_column
  int type_field = no_column;  // the column that holds the object type
};

struct ExplicationColumns {
  std::vector<ValueColumn> values;     // in ordinal order of their names, without the type field
  std::vector<ExplainedTable> tables;  // in ordinal order of their names
};

// Of tables that exist; others are left out.
[[nodiscard]] ExplicationColumns explication_columns(const ODStore& store,
                                                     const ExplicationRequest& request);

}  // namespace korvel
