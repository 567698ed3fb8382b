#include "frame/od_rules.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace korvel {
namespace {

bool is_finite(const ODValueView& value) {
  if (const auto* const real = std::get_if<double>(&value)) return std::isfinite(*real);
  if (const auto* const point = std::get_if<Point3>(&value)) {
    return std::isfinite(point->x) && std::isfinite(point->y) && std::isfinite(point->z);
  }
  return true;
}

}  // namespace

bool fits(const ODValueView& value, ODType type) {
  return type != ODType::Unknown && type_of(value) == type && is_finite(value);
}

bool fits(const ODRecord& record, const ODTableDef& table) {
  return record.table == table.name &&
         std::ranges::equal(record.values, table.columns,
                            [](const ODValue& value, const ODColumnDef& column) {
                              return fits(view_of(value), column.type);
                            });
}

bool is_sound(const ODTableDef& table) {
  std::set<std::wstring_view> names;
  return !table.name.empty() &&
         std::ranges::all_of(table.columns, [&names](const ODColumnDef& column) {
           return !column.name.empty() && names.insert(column.name).second &&
                  fits(view_of(column.default_value), column.type);
         });
}

std::optional<ColumnChange> answer_to_rename(const std::optional<ODTableDef>& table,
                                             std::wstring_view from, std::wstring_view to) {
  if (!table) return ColumnChange::TableMissing;
  if (!table->column(from)) return ColumnChange::ColumnMissing;
  if (from == to) return ColumnChange::Done;
  if (to.empty()) return ColumnChange::Failed;
  if (table->column(to)) return ColumnChange::DuplicateName;
  return std::nullopt;
}

std::optional<ColumnChange> answer_to_add(const std::optional<ODTableDef>& table,
                                          const ODColumnDef& column, int index) {
  if (!table) return ColumnChange::TableMissing;
  if (table->column(column.name)) return ColumnChange::DuplicateName;
  const bool in_range = index >= 0 && index <= static_cast<int>(table->columns.size());
  if (column.name.empty() || !in_range || !fits(view_of(column.default_value), column.type)) {
    return ColumnChange::Failed;
  }
  return std::nullopt;
}

std::optional<ColumnChange> answer_to_remove(const std::optional<ODTableDef>& table, int index) {
  if (!table) return ColumnChange::TableMissing;
  const bool in_range = index >= 0 && index < static_cast<int>(table->columns.size());
  return in_range ? std::nullopt : std::optional(ColumnChange::ColumnMissing);
}

}  // namespace korvel
