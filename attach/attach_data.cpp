#include "attach/attach_data.h"

#include <algorithm>

#include "attach/attach_dialog.h"
#include "attach/field_text.h"
#include "frame/command_handlers.h"
#include "frame/session.h"

namespace korvel {
namespace {

int carry_out(const AttachRequest& request, const EntityList& entities, Session& session) {
  const DocumentLock lock(session.host);
  if (request.action == AttachAction::Detach) {
    return detach_records(session.store, entities, request.table, session.host);
  }
  const std::optional<ODTableDef> table = session.store.table(request.table);
  if (!table) return 0;
  return attach_records(session.store, entities, record_with(*table, request.fields), session.host);
}

}  // namespace

ODRecord record_with(const ODTableDef& table, std::span<const FieldText> fields) {
  ODRecord record = default_record(table);
  for (std::size_t i = 0; i < table.columns.size(); ++i) {
    const std::wstring& name = table.columns[i].name;
    const auto typed = std::ranges::find_if(fields, [&name](const FieldText& field) {
      return field.field == name && !field.text.empty();
    });
    if (typed != fields.end()) store_field_text(typed->text, record.values[i]);
  }
  return record;
}

int attach_records(ODStore& store, const EntityList& entities, const ODRecord& record,
                   ProgressMeter& meter) {
  const std::unique_ptr<RecordIterator> present = store.records_of(record.table);
  int attached = 0;
  WriteWalk walk(meter, entities.size());
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
    present->open(entity, OpenMode::Read);
    if (present->done() && store.attach(entity, record)) ++attached;
  }
  return attached;
}

int detach_records(ODStore& store, const EntityList& entities, std::wstring_view table,
                   ProgressMeter& meter) {
  const std::unique_ptr<RecordIterator> records = store.records_of(table);
  int detached = 0;
  WriteWalk walk(meter, entities.size());
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
    records->open(entity, OpenMode::Write);
    if (!records->done() && records->remove()) ++detached;
  }
  return detached;
}

void ade_attach_data(Session& session) {
  AttachOD dialog(session.store);
  if (!session.host.show(dialog)) return;
  const EntityList selection = selected_entities(session.host);
  if (selection.empty()) return report<Message::NoObjectsSelected>(session.host);

  const int completed = carry_out(dialog.request(), selection, session);
  report<Message::Completed>(session.host, completed);
  // Selected and let go: what remains is the host's previous selection.
  leave_selected(session.host, selection);
  session.host.set_pick_first({});
}

}  // namespace korvel
