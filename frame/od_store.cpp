#include "frame/od_store.h"

namespace korvel {
void RecordIterator::read(ODRecord& record) const {
  record.table = table_name();
  const int values = value_count();
  record.values.resize(static_cast<std::size_t>(values));
  for (int i = 0; i < values; ++i) {
    record.values[static_cast<std::size_t>(i)] = copy_of(value(i));
  }
}

bool attach_default(ODStore& store, EntityId entity, std::wstring_view table) {
  const std::optional<ODTableDef> definition = store.table(table);
  return definition && store.attach(entity, default_record(*definition));
}

std::vector<std::wstring> user_tables_of(RecordIterator& records, EntityId entity) {
  std::vector<std::wstring> names;
  if (!records.open(entity, OpenMode::Read)) return names;
  for (; !records.done(); records.next()) {
    if (is_user_table(records.table_name())) names.emplace_back(records.table_name());
  }
  return names;
}

bool has_user_tables(RecordIterator& records, EntityId entity, int least) {
  if (!records.open(entity, OpenMode::Read)) return least <= 0;
  int found = 0;
  for (; found < least && !records.done(); records.next()) {
    if (is_user_table(records.table_name())) ++found;
  }
  return found >= least;
}

}  // namespace korvel
