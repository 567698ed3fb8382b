#include "attach/record_removal.h"

#include "attach/table_list.h"
#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"

namespace korvel {
namespace {

// False when there is none, or when each refuses.
bool remove_one(RecordIterator& records) {
  for (records.start(); !records.done(); records.next()) {
    if (records.remove()) return true;
  }
  return false;
}

// A removal leaves the iterator on nothing, so the walk starts anew after each.
int remove_each(RecordIterator& records) {
  int removed = 0;
  while (remove_one(records))
    ++removed;
  return removed;
}

}  // namespace

int remove_tables(ODStore& store, const EntityList& entities, std::span<const std::wstring> tables,
                  ProgressMeter& meter) {
  int removed = 0;
  WriteWalk walk(meter, tables.size() * entities.size());
  for (const std::wstring& table : tables) {
    const std::unique_ptr<RecordIterator> records = store.records_of(table);
    for (const EntityId entity : entities) {
      if (!walk.step()) return removed;
      if (records->open(entity, OpenMode::Write)) removed += remove_each(*records);
    }
  }
  return removed;
}

int remove_all(ODStore& store, const EntityList& entities, ProgressMeter& meter) {
  const std::unique_ptr<RecordIterator> records = store.records();
  int carriers = 0;
  WriteWalk walk(meter, entities.size());
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
    records->open(entity, OpenMode::Write);
    if (records->done()) continue;
    ++carriers;
    remove_each(*records);
  }
  return carriers;
}

void rm(Session& session) {
  const EntityList selection = selected_entities(session.host);
  if (selection.empty()) return report<Message::NoObjectsSelected>(session.host);
  PGUIODList dialog(std::wstring(text(Message::DetachSelected)),
                    session.store.tables_on(selection, session.host));
  if (!session.host.show(dialog)) return;

  int removed = 0;
  {
    const DocumentLock lock(session.host);
    removed = remove_tables(session.store, selection, dialog.checked(), session.host);
  }
  report<Message::Completed>(session.host, removed);
}

void rm_all(Session& session) {
  if (!session.host.ask_yes_no(text(Message::WarningTitle), text(Message::DetachAllWarning),
                               BoxIcon::Exclamation)) {
    return;
  }
  const EntityList selection = selected_entities(session.host);
  if (selection.empty()) return report<Message::NoObjectsSelected>(session.host);

  int carriers = 0;
  {
    const DocumentLock lock(session.host);
    carriers = remove_all(session.store, selection, session.host);
  }
  report<Message::CompletedOutOf>(session.host, carriers, selection.size());
}

}  // namespace korvel
