#include "values/replace_values.h"

#include <memory>
#include <optional>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"
#include "frame/tables_in_use.h"
#include "values/replace_dialog.h"
#include "values/value_replacement.h"

namespace korvel {
namespace {

// The columns that the table has of these names.
std::vector<int> columns_of(const ODTableDef& table, const std::vector<std::wstring>& names) {
  std::vector<int> columns;
  for (const std::wstring& name : names) {
    if (const auto column = table.column(name)) columns.push_back(static_cast<int>(*column));
  }
  return columns;
}

}  // namespace

std::size_t replace_in_records(const ReplaceRequest& request, ODStore& store,
                               const EntityList& entities, ProgressMeter& meter) {
  ValueReplacement replaced(request.search, request.replacement);
  std::size_t written = 0;
  WriteWalk walk(meter, request.tables.size() * entities.size());
  for (const std::wstring& name : request.tables) {
    const std::optional<ODTableDef> table = store.table(name);
    if (!table) continue;
    const std::vector<int> columns = columns_of(*table, request.fields);
    if (columns.empty()) continue;
    const std::unique_ptr<RecordIterator> record = store.records_of(name);
    for (const EntityId entity : entities) {
      if (!walk.step()) return written;
      for (record->open(entity, OpenMode::Write); !record->done(); record->next()) {
        for (const int column : columns) {
          const std::optional<ODValueView> value = replaced(record->value(column));
          if (value && record->set_value(column, *value)) ++written;
        }
      }
    }
  }
  return written;
}

void replace_values(Session& session) {
  DrawingHost& host = session.host;
  EntityList picked = pick_first_entities(host);
  OptionsReplace dialog(session.store, tables_in_use(session.store, host, picked));
  if (!host.show(dialog)) return;
  const ReplaceRequest request = dialog.request();
  if (request.tables.empty() || request.fields.empty()) {
    return host.note_refused_input(L"no table or no field is chosen");
  }

  const std::optional<EntityList> entities = entities_to_set(host, std::move(picked));
  if (!entities || entities->empty()) return;
  std::size_t written = 0;
  {
    const DocumentLock lock(host);
    written = replace_in_records(request, session.store, *entities, host);
  }
  report<Message::Completed>(host, written);
}

}  // namespace korvel
