#include "exchange/translation.h"

#include <memory>
#include <optional>
#include <string>

#include "exchange/value_aliases.h"
#include "frame/walk.h"

namespace korvel {
namespace {

struct ColumnRename {
  std::wstring table;
  std::wstring from;
  std::wstring to;
};

// The alias of the name if it is another text.
const std::wstring* other_name(const Aliases& aliases, std::wstring_view name) {
  const auto found = aliases.find(name);
  return found != aliases.end() && found->second != name ? &found->second : nullptr;
}

const std::wstring* other_column_name(const AliasMaps& maps, const std::wstring& table,
                                      const std::wstring& column) {
  const auto own = maps.table_fields.find(table);
  const std::wstring* const name =
      own != maps.table_fields.end() ? other_name(own->second, column) : nullptr;
  return name != nullptr ? name : other_name(maps.fields, column);
}

std::vector<ColumnRename> planned_renames(const ODStore& store, const AliasMaps& maps) {
  std::vector<ColumnRename> renames;
  for (const std::wstring& name : store.table_names()) {
    const std::optional<ODTableDef> table = store.table(name);
    if (!table) continue;
    for (const ODColumnDef& column : table->columns) {
      const std::wstring* const other = other_column_name(maps, name, column.name);
      if (other != nullptr) renames.push_back({name, column.name, *other});
    }
  }
  return renames;
}

}  // namespace

void translate_tables(ODStore& store, const Aliases& tables, ProgressMeter& meter) {
  WriteWalk walk(meter, tables.size());
  for (const auto& [name, alias] : tables) {
    if (!walk.step()) break;
    (void)store.rename_table(name, alias);
  }
}

std::vector<ColumnChange> translate_columns(ODStore& store, const AliasMaps& maps,
                                            ProgressMeter& meter) {
  const std::vector<ColumnRename> renames = planned_renames(store, maps);
  std::vector<ColumnChange> results;
  WriteWalk walk(meter, renames.size());
  for (const ColumnRename& rename : renames) {
    if (!walk.step()) break;
    results.push_back(store.rename_column(rename.table, rename.from, rename.to));
  }
  return results;
}

std::size_t translate_values(ODStore& store, ProgressMeter& meter, const EntityList& entities,
                             const AliasMaps& maps) {
  ValueAliases aliases(store, maps);
  const std::unique_ptr<RecordIterator> records = store.records();
  std::size_t written = 0;
  WriteWalk walk(meter, entities.size());
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
    for (records->open(entity, OpenMode::Write); !records->done(); records->next())
      written += aliases.translate(*records) ? 1 : 0;
  }
  return written;
}

}  // namespace korvel
