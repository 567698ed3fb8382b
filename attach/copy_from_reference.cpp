#include "attach/copy_from_reference.h"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"

namespace korvel {
namespace {

// The reference is read to its end before anything is attached: it may be a target, and nothing can
// be attached to an entity on which an iterator stands.

// The default records of the reference's tables: as many of each as it has.
std::vector<ODRecord> default_records_of(ODStore& store, EntityId reference) {
  std::map<std::wstring, std::size_t> census;
  for (std::wstring& table : user_tables_of(*store.records(), reference))
    ++census[std::move(table)];
  std::vector<ODRecord> records;
  for (const auto& [table, count] : census) {
    if (const auto definition = store.table(table)) {
      records.insert(records.end(), count, default_record(*definition));
    }
  }
  return records;
}

std::vector<ODRecord> user_records_of(ODStore& store, EntityId reference) {
  std::vector<ODRecord> records;
  const std::unique_ptr<RecordIterator> walk = store.records();
  for (walk->open(reference, OpenMode::Read); !walk->done(); walk->next()) {
    if (is_user_table(walk->table_name())) walk->read(records.emplace_back());
  }
  return records;
}

void attach_all(ODStore& store, EntityId target, const std::vector<ODRecord>& records) {
  for (const ODRecord& record : records)
    store.attach(target, record);
}

// What the five commands share; `copy` does the work and gives the number to report.
template <class Copy>
void copy_from_reference(Session& session, const Copy& copy) {
  DrawingHost& host = session.host;
  const EntityList targets = selected_entities(host);
  if (targets.empty()) return report<Message::Completed>(host, 0);
  const EntityId reference =
      host.ask_entity(text(Message::SelectReferencePrompt)).value_or(EntityId{});
  if (reference.is_null()) return report<Message::NoObjectsSelected>(host);
  std::size_t count = 0;
  {
    const DocumentLock lock(host);
    count = copy(reference, targets);
  }
  report<Message::Completed>(host, count);
}

void copy_data(Session& session,
               std::size_t (*copy)(ODStore&, EntityId reference, const EntityList& targets)) {
  copy_from_reference(session, [&](EntityId reference, const EntityList& targets) {
    return copy(session.store, reference, targets);
  });
}

}  // namespace

std::size_t copy_tables(ODStore& store, EntityId reference, const EntityList& targets) {
  const std::vector<ODRecord> records = default_records_of(store, reference);
  if (records.empty()) return 0;
  for (const EntityId target : targets)
    attach_all(store, target, records);
  return targets.size();
}

std::size_t copy_records(ODStore& store, EntityId reference, const EntityList& targets) {
  const std::vector<ODRecord> records = user_records_of(store, reference);
  for (const EntityId target : targets) {
    if (target != reference) attach_all(store, target, records);
  }
  return targets.size();
}

std::size_t copy_values(ODStore& store, EntityId reference, const EntityList& targets) {
  const std::vector<ODRecord> sources = user_records_of(store, reference);
  const std::unique_ptr<RecordIterator> walk = store.records();
  std::size_t written = 0;
  for (const EntityId target : targets) {
    if (target == reference) continue;
    for (walk->open(target, OpenMode::Write); !walk->done(); walk->next()) {
      const auto source = std::ranges::find(sources, walk->table_name(), &ODRecord::table);
      if (source != sources.end() && walk->update(*source)) ++written;
    }
  }
  return written;
}

void copy_properties(DrawingHost& host, EntityId reference, const EntityList& targets) {
  const std::optional<EntityProperties> properties = host.properties_of(reference);
  if (!properties) return;
  for (const EntityId target : targets)
    host.set_properties(target, *properties);
}

void copy_od(Session& session) { copy_data(session, copy_tables); }

void copy_od_value(Session& session) { copy_data(session, copy_records); }

void copy_value(Session& session) { copy_data(session, copy_values); }

void copy_all(Session& session) {
  copy_from_reference(session, [&](EntityId reference, const EntityList& targets) {
    copy_properties(session.host, reference, targets);
    copy_tables(session.store, reference, targets);
    return targets.size();  // also when there were only properties to copy
  });
}

void copy_all_value(Session& session) {
  copy_from_reference(session, [&](EntityId reference, const EntityList& targets) {
    copy_properties(session.host, reference, targets);
    return copy_records(session.store, reference, targets);
  });
}

}  // namespace korvel
