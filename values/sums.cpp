#include "values/sums.h"

#include <memory>
#include <optional>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"
#include "frame/tables_in_use.h"
#include "values/sums_dialog.h"
#include "values/value_sum.h"

namespace korvel {
namespace {

struct FoundColumn {
  ColumnOfTable place;
  ODType type;
};

std::optional<FoundColumn> find_column(const ODStore& store, const ColumnName& name) {
  const std::optional<ODTableDef> table = store.table(name.table);
  if (!table) return std::nullopt;
  const std::optional<std::size_t> index = table->column(name.column);
  if (!index) return std::nullopt;
  return FoundColumn{{name.table, static_cast<int>(*index)}, table->columns[*index].type};
}

struct Outcome {
  SumCounts sums;
  std::size_t entities;
};

void add_up(SumCounts& counts, RecordIterator& target, int column,
            const std::optional<ODValueView>& sum) {
  const bool written = sum && target.set_value(column, *sum);
  ++(written ? counts.written : counts.refused);
}

// What both commands share; `add` does the work. None: there was nothing to do, and the user knows.
template <class Add>
std::optional<Outcome> ask_and_add(Session& session, SumScope scope, const Add& add) {
  DrawingHost& host = session.host;
  EntityList picked = pick_first_entities(host);
  OptionsAddVal dialog(scope, session.store, tables_in_use(session.store, host, picked));
  if (!host.show(dialog)) return std::nullopt;
  const SumRequest request = dialog.request();
  const std::optional<FoundColumn> from = find_column(session.store, request.from);
  const std::optional<FoundColumn> to = find_column(session.store, request.to);
  if (!from || !to) {
    host.note_refused_input(L"there are not two columns chosen");
    return std::nullopt;
  }
  if (!can_add(to->type, from->type)) {
    report<Message::InvalidTypeOf>(host, request.from.table, request.from.column);
    return std::nullopt;
  }

  const std::optional<EntityList> entities = entities_to_set(host, std::move(picked));
  if (!entities || entities->empty()) return std::nullopt;
  Outcome outcome{{}, entities->size()};
  {
    const DocumentLock lock(host);
    outcome.sums = add(from->place, to->place, session.store, *entities, host);
  }
  if (outcome.sums.refused > 0) {
    report<Message::InvalidTypeOf>(host, request.to.table, request.to.column);
  }
  return outcome;
}

}  // namespace

SumCounts add_within_records(const std::wstring& table, int from, int to, ODStore& store,
                             const EntityList& entities, ProgressMeter& meter) {
  ValueSum sum_of;
  SumCounts counts;
  WriteWalk walk(meter, entities.size());
  const std::unique_ptr<RecordIterator> record = store.records_of(table);
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
    for (record->open(entity, OpenMode::Write); !record->done(); record->next()) {
      add_up(counts, *record, to, sum_of(record->value(to), record->value(from)));
    }
  }
  return counts;
}

SumCounts add_between_records(const ColumnOfTable& from, const ColumnOfTable& to, ODStore& store,
                              const EntityList& entities, ProgressMeter& meter) {
  ValueSum sum_of;
  SumCounts counts;
  WriteWalk walk(meter, entities.size());
  const std::unique_ptr<RecordIterator> source = store.records_of(from.table);
  const std::unique_ptr<RecordIterator> target = store.records_of(to.table);
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
    source->open(entity, OpenMode::Read);
    target->open(entity, OpenMode::Write);
    if (source->done() || target->done()) continue;
    add_up(counts, *target, to.column,
           sum_of(target->value(to.column), source->value(from.column)));
  }
  return counts;
}

void add_val(Session& session) {
  const auto add = [](const ColumnOfTable& from, const ColumnOfTable& to, ODStore& store,
                      const EntityList& entities, ProgressMeter& meter) {
    return add_within_records(from.table, from.column, to.column, store, entities, meter);
  };
  if (const std::optional<Outcome> outcome = ask_and_add(session, SumScope::OneTable, add)) {
    report<Message::Completed>(session.host, outcome->sums.written);
  }
}

void add_val_od2od(Session& session) {
  const std::optional<Outcome> outcome =
      ask_and_add(session, SumScope::TwoTables, add_between_records);
  if (outcome) {
    report<Message::CompletedOutOf>(session.host, outcome->sums.written, outcome->entities);
  }
}

}  // namespace korvel
