// Changes of object data as undo and redo remember them: what stood there before.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "frame/od_table.h"
#include "host/standalone/od_cells.h"

namespace korvel {

struct OdColumn {
  ODColumnDef definition;
  CellVector cells;  // by row; of the definition's type
};

// An entity's records: a stretch of the common list of references.
struct RecordSpan {
  std::uint32_t first = 0;
  std::uint32_t count = 0;
};

// Commands change a million entities or values in a row, so these two kinds of change are kept as
// runs of what was, oldest first.
struct OdChange {
  struct Records {
    struct Former {
      std::uint32_t entity;
      RecordSpan span;
    };
    std::vector<Former> formers;
  };
  struct Values {
    std::uint32_t table = 0;
    std::uint32_t column = 0;
    std::vector<std::uint32_t> rows;
    CellVector formers;  // by place in `rows`
  };
  struct TableName {
    std::uint32_t table;
    std::wstring name;
  };
  struct ColumnName {
    std::uint32_t table;
    std::uint32_t column;
    std::wstring name;
  };
  // A column taken out (then it is held here) or put in.
  struct ColumnPresence {
    std::uint32_t table;
    std::uint32_t column;
    std::unique_ptr<OdColumn> taken_out;
  };
  struct TablePresence {
    std::uint32_t table;
  };
  std::variant<Records, Values, TableName, ColumnName, ColumnPresence, TablePresence> what;
};

}  // namespace korvel
