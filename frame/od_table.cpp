#include "frame/od_table.h"

#include <algorithm>
#include <array>

namespace korvel {

std::optional<std::size_t> ODTableDef::column(std::wstring_view column_name) const {
  const auto found = std::ranges::find(columns, column_name, &ODColumnDef::name);
  if (found == columns.end()) return std::nullopt;
  return static_cast<std::size_t>(found - columns.begin());
}

ODRecord default_record(const ODTableDef& table) {
  ODRecord record{table.name, {}};
  record.values.reserve(table.columns.size());
  for (const ODColumnDef& column : table.columns)
    record.values.push_back(column.default_value);
  return record;
}

bool is_user_table(std::wstring_view table_name) {
  static constexpr std::array<std::wstring_view, 6> topology_prefixes = {
      L"TPMCNTR_", L"TPMDESC_", L"TPMID_", L"TPMLINK_", L"TPMNODE_", L"CNTR_"};
  return std::ranges::none_of(topology_prefixes, [table_name](std::wstring_view prefix) {
    return table_name.starts_with(prefix);
  });
}

}  // namespace korvel
