// ADEEDITDATA.
#include <array>
#include <memory>
#include <utility>
#include <vector>

#include "frame/command_frame.h"
#include "frame/format.h"
#include "frame/value_text.h"
#include "host/console/commands/handlers.h"
#include "host/console/commands/questions.h"
#include "host/console/commands/value_questions.h"

namespace korvel::host_command {
namespace {

// A record with its place among all the records of the entity.
struct PlacedRecord {
  int place = 0;
  ODRecord record;
};

std::vector<PlacedRecord> user_records(ODStore& store, EntityId entity) {
  std::vector<PlacedRecord> found;
  const std::unique_ptr<RecordIterator> records = store.records();
  records->open(entity, OpenMode::Read);
  for (int place = 0; !records->done(); records->next(), ++place) {
    if (!is_user_table(records->table_name())) continue;
    found.push_back({place, {}});
    records->read(found.back().record);
  }
  return found;
}

// An iterator for writing that stands on the record at `place`; null if it cannot.
std::unique_ptr<RecordIterator> iterator_at(ODStore& store, EntityId entity, int place) {
  std::unique_ptr<RecordIterator> records = store.records();
  if (!records->open(entity, OpenMode::Write)) return nullptr;
  while (place-- > 0 && !records->done())
    records->next();
  if (records->done()) return nullptr;
  return records;
}

// A conversation over the records of one entity.
class Editing {
 public:
  Editing(ConsoleHost& host, EntityId entity)
      : host_(host), entity_(entity), store_(host.drawing()) {}

  void run() {
    constexpr std::array<std::wstring_view, 4> keywords = {L"Attach", L"Edit", L"Detach", L"Next"};
    for (;;) {
      records_ = user_records(store_, entity_);
      if (current_ >= records_.size()) current_ = 0;
      show();
      // What works on a record is offered only when there is one.
      const bool any = !records_.empty();
      const Answer<std::size_t> option =
          ask_option(host_,
                     any ? L"Enter an option [Edit/Next/Attach/Detach] <exit>: "
                         : L"Enter an option [Attach] <exit>: ",
                     Keywords(keywords).first(any ? keywords.size() : 1));
      if (!is_given(option)) return;
      if (option.value == 0 && !attach()) return;
      if (option.value == 1 && !edit()) return;
      if (option.value == 2) detach();
      if (option.value == 3) ++current_;
    }
  }

 private:
  void show() {
    if (records_.empty()) {
      host_.print(L"The object has no object data.\n");
      return;
    }
    const ODRecord& record = records_[current_].record;
    host_.print(format_text(L"Record %i of %i: %s\n", current_ + 1, records_.size(), record.table));
    const std::optional<ODTableDef> table = store_.table(record.table);
    for (std::size_t i = 0; table && i < record.values.size(); ++i) {
      host_.print(format_text(L"  %s: %s\n", table->columns[i].name,
                              on_one_line(value_text(view_of(record.values[i])))));
    }
  }

  // False: cancelled.
  bool edit() {
    PlacedRecord edited = records_[current_];
    const std::optional<ODTableDef> table = store_.table(edited.record.table);
    if (!table) return true;
    for (std::size_t i = 0; i < edited.record.values.size(); ++i) {
      auto value = ask_value(host_, table->columns[i].name, edited.record.values[i]);
      if (!value) return false;
      edited.record.values[i] = std::move(*value);
    }
    if (edited.record == records_[current_].record) return true;
    const auto records = iterator_at(store_, entity_, edited.place);
    if (!records || !records->update(edited.record)) host_.refuse(L"The record was not changed.");
    return true;
  }

  // False: cancelled.
  bool attach() {
    const auto table = ask_table(host_, store_, L"Enter table to attach or [?]: ");
    if (!is_given(table)) return !is_cancelled(table);
    if (attach_default(store_, entity_, table.value.name)) {
      current_ = records_.size();  // the new one is the last
    } else {
      host_.refuse(L"The record was not attached.");
    }
    return true;
  }

  void detach() {
    const auto records = iterator_at(store_, entity_, records_[current_].place);
    if (!records || !records->remove()) host_.refuse(L"The record was not detached.");
  }

  ConsoleHost& host_;
  EntityId entity_;
  StandaloneStore store_;
  std::vector<PlacedRecord> records_;
  std::size_t current_ = 0;
};

}  // namespace

void edit_data(ConsoleHost& host) {
  if (!holds_object_data(host)) return;
  const std::optional<EntityId> entity = host.ask_entity(L"Select object: ");
  if (!entity) return;
  if (!host.opens(*entity, OpenMode::Write)) {
    host.refuse(L"The object is on a locked layer.");
    return;
  }
  // Every record is changed when its last value is answered; Esc before that leaves it as it was.
  const DocumentLock lock(host);
  Editing(host, *entity).run();
}

}  // namespace korvel::host_command
