#include "frame/od_store.h"

#include <algorithm>
#include <set>

#include "frame/walk.h"

namespace korvel {
namespace {

// Shows of another iterator's records those of one table.
class TableRecords final : public RecordIterator {
 public:
  TableRecords(std::unique_ptr<RecordIterator> all, std::wstring_view table)
      : all_(std::move(all)), table_(table) {}

  bool open(EntityId entity, OpenMode mode) override {
    const bool opened = all_->open(entity, mode);
    start();
    return opened;
  }
  [[nodiscard]] int count() const override { return count_; }
  void start() override {
    count_ = 0;
    for (all_->start(); !all_->done(); all_->next()) {
      if (all_->table_name() == table_) ++count_;
    }
    all_->start();
    skip_others();
  }
  [[nodiscard]] bool done() const override { return all_->done(); }
  void next() override {
    all_->next();
    skip_others();
  }
  [[nodiscard]] std::wstring_view table_name() const override { return all_->table_name(); }
  [[nodiscard]] int value_count() const override { return all_->value_count(); }
  [[nodiscard]] ODValueView value(int index) const override { return all_->value(index); }
  bool update(const ODRecord& record) override { return all_->update(record); }
  bool remove() override {
    const bool removed = all_->remove();
    if (removed) --count_;
    return removed;
  }

 private:
  void skip_others() {
    while (!all_->done() && all_->table_name() != table_)
      all_->next();
  }

  std::unique_ptr<RecordIterator> all_;
  std::wstring table_;
  int count_ = 0;
};

}  // namespace

void RecordIterator::read(ODRecord& record) const {
  record.table = table_name();
  const int values = value_count();
  record.values.resize(static_cast<std::size_t>(values));
  for (int i = 0; i < values; ++i) {
    record.values[static_cast<std::size_t>(i)] = copy_of(value(i));
  }
}

bool RecordIterator::set_value(int index, const ODValueView& value) {
  ODRecord record;
  if (done() || index < 0 || index >= value_count()) return false;
  read(record);
  record.values[static_cast<std::size_t>(index)] = copy_of(value);
  return update(record);
}

int RecordIterator::remove_marked(std::span<const char> marks) {
  int removed = 0;
  int kept = 0;
  start();
  for (const char mark : marks) {
    if (done()) break;
    if (mark == 0 || !remove()) {
      ++kept;
      next();
      continue;
    }
    ++removed;
    start();
    for (int i = 0; i < kept; ++i)
      next();
  }
  while (!done())
    next();
  return removed;
}

std::unique_ptr<RecordIterator> ODStore::records_of(std::wstring_view table) {
  return std::make_unique<TableRecords>(records(), table);
}

std::vector<int> ODStore::count_records(const EntityList& entities,
                                        std::span<const std::wstring> tables,
                                        ProgressMeter& meter) {
  ReadWalk walk(meter, entities.size());
  const std::unique_ptr<RecordIterator> record = records();
  const std::set<std::wstring_view> counted(tables.begin(), tables.end());
  std::vector<int> counts;
  counts.reserve(entities.size());
  for (const EntityId entity : entities) {
    walk.step();
    int count = 0;
    for (record->open(entity, OpenMode::Read); !record->done(); record->next()) {
      if (counted.contains(record->table_name())) ++count;
    }
    counts.push_back(count);
  }
  return counts;
}

std::vector<std::wstring> ODStore::tables_on(const EntityList& entities, ProgressMeter& meter) {
  ReadWalk walk(meter, entities.size());
  const std::unique_ptr<RecordIterator> record = records();
  std::set<std::wstring, std::less<>> names;
  for (const EntityId entity : entities) {
    walk.step();
    for (record->open(entity, OpenMode::Read); !record->done(); record->next()) {
      if (!names.contains(record->table_name())) names.emplace(record->table_name());
    }
  }
  return {names.begin(), names.end()};
}

void ODStore::mark_passing(const EntityList& entities, std::wstring_view table, int column,
                           ValueTest& test, std::vector<char>& marks, ProgressMeter& meter) {
  ReadWalk walk(meter, entities.size());
  const std::unique_ptr<RecordIterator> record = records_of(table);
  for (std::size_t i = 0; i < entities.size(); ++i) {
    walk.step();
    if (marks[i] != 0) continue;
    for (record->open(entities[i], OpenMode::Read); !record->done(); record->next()) {
      if (!test(record->value(column))) continue;
      marks[i] = 1;
      break;
    }
  }
}

bool attach_default(ODStore& store, EntityId entity, std::wstring_view table) {
  const std::optional<ODTableDef> definition = store.table(table);
  return definition && store.attach(entity, default_record(*definition));
}

std::vector<std::wstring> user_tables(const ODStore& store) {
  std::vector<std::wstring> names = store.table_names();
  std::erase_if(names, [](const std::wstring& name) { return !is_user_table(name); });
  std::ranges::sort(names);
  return names;
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
