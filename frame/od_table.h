// Definitions and records of object-data tables, as plain copies.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/od_value.h"

namespace korvel {

struct ODColumnDef {
  std::wstring name;
  ODType type = ODType::Unknown;
  ODValue default_value;  // of the column's type

  friend bool operator==(const ODColumnDef&, const ODColumnDef&) = default;
};

// A table's name and its ordered columns; a column is addressed by its zero-based index.
struct ODTableDef {
  std::wstring name;
  std::vector<ODColumnDef> columns;

  // Index of the column of exactly this name (case-sensitive); none if there is no such column.
  [[nodiscard]] std::optional<std::size_t> column(std::wstring_view column_name) const;

  friend bool operator==(const ODTableDef&, const ODTableDef&) = default;
};

// One record: value i belongs to column i of the definition of `table`.
struct ODRecord {
  std::wstring table;
  std::vector<ODValue> values;

  friend bool operator==(const ODRecord&, const ODRecord&) = default;
};

// A record of the table with every value at its column's default.
[[nodiscard]] ODRecord default_record(const ODTableDef& table);

// False for the host's topology tables: names that begin, case-sensitively, with "TPMCNTR_",
// "TPMDESC_", "TPMID_", "TPMLINK_", "TPMNODE_" or "CNTR_". A name that merely contains one of them
// further in is a user table.
[[nodiscard]] bool is_user_table(std::wstring_view table_name);

}  // namespace korvel
