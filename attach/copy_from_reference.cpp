// Gives entities the object data, and if wanted the properties, of one reference entity. Records of
// topology tables are never copied.
#include <functional>
#include <map>
#include <memory>
#include <optional>
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

// Copies of what targets are given, and the giving: each gives to one target and returns what that
// adds to the number to report. An entity that cannot be written is skipped and counts all the
// same.

// New records with default values, as many of each table as the reference has. What a target
// carries already does not matter, and the reference is a target like any other.
class TableCopy {
 public:
  TableCopy(ODStore& store, EntityId reference)
      : store_(store), records_(default_records_of(store, reference)) {}
  std::size_t operator()(EntityId target) const {
    attach_all(store_, target, records_);
    return records_.empty() ? 0 : 1;
  }

 private:
  ODStore& store_;
  std::vector<ODRecord> records_;
};

// A copy of every record. The reference itself counts, but is given nothing.
class RecordCopy {
 public:
  RecordCopy(ODStore& store, EntityId reference)
      : store_(store), reference_(reference), records_(user_records_of(store, reference)) {}
  std::size_t operator()(EntityId target) const {
    if (target != reference_) attach_all(store_, target, records_);
    return 1;
  }

 private:
  ODStore& store_;
  EntityId reference_;
  std::vector<ODRecord> records_;
};

// Writes over every record of a target, but for the reference itself, the values of the reference's
// first record of the same table. Counts the records written.
class ValueCopy {
 public:
  ValueCopy(ODStore& store, EntityId reference) : reference_(reference), record_(store.records()) {
    for (ODRecord& source : user_records_of(store, reference))
      sources_.try_emplace(source.table, std::move(source));
  }
  std::size_t operator()(EntityId target) const {
    std::size_t written = 0;
    if (target == reference_) return written;
    for (record_->open(target, OpenMode::Write); !record_->done(); record_->next()) {
      const auto source = sources_.find(record_->table_name());
      if (source != sources_.end() && record_->update(source->second)) ++written;
    }
    return written;
  }

 private:
  EntityId reference_;
  std::map<std::wstring, ODRecord, std::less<>> sources_;  // the first record of each table
  std::unique_ptr<RecordIterator> record_;
};

// Colour, layer, linetype, linetype scale and lineweight, and then records. Every target counts,
// also when there are only properties to copy.
template <class Records>
class FullCopy {
 public:
  FullCopy(DrawingHost& host, ODStore& store, EntityId reference)
      : host_(host), properties_(host.properties_of(reference)), records_(store, reference) {}
  std::size_t operator()(EntityId target) const {
    if (properties_) host_.set_properties(target, *properties_);
    records_(target);
    return 1;
  }

 private:
  DrawingHost& host_;
  std::optional<EntityProperties> properties_;
  Records records_;
};

// What the five commands share; `copy_of` reads the reference and gives what copies to one target.
template <class CopyOf>
void copy_from_reference(Session& session, const CopyOf& copy_of) {
  DrawingHost& host = session.host;
  const EntityList targets = selected_entities(host);
  if (targets.empty()) return report<Message::Completed>(host, 0);
  const EntityId reference =
      host.ask_entity(text(Message::SelectReferencePrompt)).value_or(EntityId{});
  if (reference.is_null()) return report<Message::NoObjectsSelected>(host);
  std::size_t count = 0;
  {
    const DocumentLock lock(host);
    const auto copy = copy_of(reference);
    WriteWalk walk(host, targets.size());
    for (const EntityId target : targets) {
      if (!walk.step()) break;
      count += copy(target);
    }
  }
  report<Message::Completed>(host, count);
}

template <class Copy>
void copy_data(Session& session) {
  copy_from_reference(session, [&](EntityId reference) { return Copy(session.store, reference); });
}

template <class Records>
void copy_everything(Session& session) {
  copy_from_reference(session, [&](EntityId reference) {
    return FullCopy<Records>(session.host, session.store, reference);
  });
}

}  // namespace

void copy_od(Session& session) { copy_data<TableCopy>(session); }

void copy_od_value(Session& session) { copy_data<RecordCopy>(session); }

void copy_value(Session& session) { copy_data<ValueCopy>(session); }

void copy_all(Session& session) { copy_everything<TableCopy>(session); }

void copy_all_value(Session& session) { copy_everything<RecordCopy>(session); }

}  // namespace korvel
