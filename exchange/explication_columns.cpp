#include "exchange/explication_columns.h"

#include <map>
#include <optional>

namespace korvel {
namespace {

using Definitions = std::map<std::wstring, ODTableDef>;

Definitions chosen_tables(const ODStore& store, const ExplicationRequest& request) {
  Definitions tables;
  for (const std::wstring& name : request.tables) {
    if (std::optional<ODTableDef> table = store.table(name)) tables.emplace(name, *table);
  }
  return tables;
}

bool is_number(ODType type) { return type == ODType::Integer || type == ODType::Real; }

std::vector<ValueColumn> value_columns(const Definitions& tables,
                                       const std::optional<std::wstring>& type_field) {
  std::map<std::wstring, bool> counted;
  for (const auto& [name, table] : tables) {
    for (const ODColumnDef& column : table.columns) {
      if (column.name != type_field) counted[column.name] |= !is_number(column.type);
    }
  }
  std::vector<ValueColumn> columns;
  columns.reserve(counted.size());
  for (const auto& [name, is_counted] : counted)
    columns.push_back({name, is_counted});
  return columns;
}

int place_of(const ODTableDef& table, const std::wstring& column) {
  const std::optional<std::size_t> place = table.column(column);
  return place ? static_cast<int>(*place) : no_column;
}

}  // namespace

ExplicationColumns explication_columns(const ODStore& store, const ExplicationRequest& request) {
  const Definitions definitions = chosen_tables(store, request);
  ExplicationColumns columns{value_columns(definitions, request.type_field), {}};
  for (const auto& [name, definition] : definitions) {
    ExplainedTable table{name, {}, no_column};
    for (const ValueColumn& value : columns.values)
      table.places.push_back(place_of(definition, value.name));
    if (request.type_field) table.type_field = place_of(definition, *request.type_field);
    columns.tables.push_back(std::move(table));
  }
  return columns;
}

}  // namespace korvel
