#include "host/arx/object_data.h"

#include <algorithm>

#include "frame/file_bytes.h"
#include "frame/od_rules.h"
#include "host/arx/drawing_set.h"
#include "host/arx/map_calls.h"
#include "host/arx/object_ids.h"

namespace korvel::arx {
namespace {

// Null without Map or without a drawing.
AcDbDatabase* classified_drawing() {
  return AcMapGetSession() == nullptr ? nullptr : acdbHostApplicationServices()->workingDatabase();
}

}  // namespace

class ArxStore::Iterator final : public RecordIterator {
 public:
  // Over the records of one table, or of all.
  Iterator(ArxStore& store, std::optional<std::wstring> table)
      : store_(store), table_(std::move(table)) {
    store_.iterators_.push_back(this);
  }
  Iterator(const Iterator&) = delete;
  Iterator& operator=(const Iterator&) = delete;
  ~Iterator() override { std::erase(store_.iterators_, this); }

  bool open(EntityId entity, OpenMode mode) override {
    entity_ = entity;
    mode_ = mode == OpenMode::Write ? AcMap::kOpenForWrite : AcMap::kOpenForRead;
    go_to_first();
    return opened_;
  }
  [[nodiscard]] int count() const override {
    return opened_ && records_ ? map::quantity(*records_) : 0;
  }
  void start() override {
    if (opened_) go_to_first();
  }
  [[nodiscard]] bool done() const override { return !walking_ || map::is_done(*records_); }
  void next() override {
    if (done()) return;
    read_ = false;
    map::step(*records_);
  }

  [[nodiscard]] std::wstring_view table_name() const override { return map::table_name(record()); }
  [[nodiscard]] int value_count() const override { return map::value_count(record()); }
  [[nodiscard]] ODValueView value(int index) const override {
    const bool there = index >= 0 && index < map::value_count(record());
    return there ? map::view_of(map::value(record(), index)) : ODValueView();
  }
  bool update(const ODRecord& changed) override {
    if (!writes() || !fits_current(changed)) return false;
    for (int i = 0; i < map::value_count(record_); ++i)
      map::assign(map::value(record_, i), view_of(changed.values[static_cast<std::size_t>(i)]));
    return write();
  }
  bool set_value(int index, const ODValueView& changed) override {
    if (!writes() || index < 0 || index >= value_count()) return false;
    if (!fits(changed, type_of(value(index)))) return false;
    map::assign(map::value(record_, index), changed);
    return write();
  }
  bool remove() override {
    if (!writes()) return false;
    store_.release_iterators_on(entity_, this);
    if (!map::remove_record(*records_)) return false;
    end();  // where the host's iterator stands now is not known
    return true;
  }
  // Table by table: each removal starts the host's iterator anew, and over one table's records it
  // has less to pass over again.
  int remove_marked(std::span<const char> marks) override {
    if (table_ || mode_ != AcMap::kOpenForWrite) return RecordIterator::remove_marked(marks);
    start();
    std::map<std::wstring, std::vector<char>, std::less<>> of_tables;
    for (const char mark : marks) {
      if (done()) break;
      of_tables[std::wstring(table_name())].push_back(mark);
      next();
    }
    release();
    int removed = 0;
    for (const auto& [table, own_marks] : of_tables) {
      if (std::ranges::find(own_marks, 1) == own_marks.end()) continue;
      const std::unique_ptr<RecordIterator> walk = store_.records_of(table);
      if (walk->open(entity_, OpenMode::Write)) removed += walk->remove_marked(own_marks);
    }
    return removed;
  }

  [[nodiscard]] bool stands_on(EntityId entity) const { return entity_ == entity && !done(); }
  [[nodiscard]] EntityId entity() const { return entity_; }
  void read_again() { read_ = false; }
  // Stands on nothing, and the host has no iterator of it, until start() or open().
  void release() {
    end();
    records_.reset();
  }

 private:
  void go_to_first() {
    read_ = false;
    if (!records_) records_ = store_.open_records(table_);
    opened_ = records_ && map::start_at(*records_, object_id(entity_), mode_);
    walking_ = opened_;
    // Where the host's iterator stands after a failure is not known: perhaps on the entity before.
    if (!opened_) records_.reset();
  }
  void end() {
    walking_ = false;
    read_ = false;
  }
  [[nodiscard]] bool writes() const { return mode_ == AcMap::kOpenForWrite && !done(); }
  // The host's copy of the current record, fetched once; empty when it cannot be had.
  [[nodiscard]] const AcMapODTableRecord& record() const {
    if (!read_) {
      read_ = map::get_record(*records_, record_);
      if (!read_) map::clear(record_);
    }
    return record_;
  }
  [[nodiscard]] bool fits_current(const ODRecord& changed) const {
    if (changed.table != table_name()) return false;
    if (changed.values.size() != static_cast<std::size_t>(value_count())) return false;
    for (int i = 0; i < value_count(); ++i) {
      if (!fits(view_of(changed.values[static_cast<std::size_t>(i)]), type_of(value(i)))) {
        return false;
      }
    }
    return true;
  }
  // What the host refused is read again, and so is what others have read of the record.
  bool write() {
    store_.read_again_on(entity_);
    read_ = map::update_record(*records_, record_);
    return read_;
  }

  ArxStore& store_;
  std::optional<std::wstring> table_;
  std::unique_ptr<AcMapODRecordIterator> records_;
  EntityId entity_;
  AcMap::EOpenMode mode_ = AcMap::kOpenForRead;
  bool opened_ = false;
  bool walking_ = false;  // between start and an end by removal; never without records_
  mutable bool read_ = false;
  mutable AcMapODTableRecord record_;
};

ArxStore::ArxStore() : container_(map::container()) {}

ArxStore::~ArxStore() = default;

std::vector<std::wstring> ArxStore::table_names() const {
  return container_ == nullptr ? std::vector<std::wstring>() : map::table_names(*container_);
}

// Whether the host goes by the letter case of a name is not known; the tables here do.
bool ArxStore::is_listed(std::wstring_view table) const {
  if (names_.contains(table)) return true;
  const std::vector<std::wstring> names = table_names();
  names_ = {names.begin(), names.end()};
  return names_.contains(table);
}

const ArxStore::OpenTable* ArxStore::open_table(std::wstring_view name) const {
  if (container_ == nullptr) return nullptr;
  auto known = tables_.find(name);
  if (known == tables_.end()) {
    if (!is_listed(name)) return nullptr;
    std::wstring wanted(name);
    std::unique_ptr<AcMapODTable> table = map::open_table(*container_, wanted);
    if (!table) return nullptr;
    std::optional<ODTableDef> definition = map::definition_of(*table, wanted);
    if (!definition) return nullptr;
    OpenTable opened{std::move(table), *std::move(definition)};
    known = tables_.emplace(std::move(wanted), std::move(opened)).first;
  }
  return &known->second;
}

std::optional<ODTableDef> ArxStore::table(std::wstring_view name) const {
  const OpenTable* const opened = open_table(name);
  return opened == nullptr ? std::nullopt : std::optional(opened->definition);
}

TableChange ArxStore::define_table(const ODTableDef& definition) {
  if (open_table(definition.name) != nullptr) return TableChange::TableExists;
  const bool done =
      container_ != nullptr && is_sound(definition) && map::create_table(*container_, definition);
  return done ? TableChange::Done : TableChange::Failed;
}

TableChange ArxStore::delete_table(std::wstring_view name) {
  if (open_table(name) == nullptr) return TableChange::TableMissing;
  const std::wstring wanted(name);
  let_go_of_tables();
  names_.clear();
  return map::remove_table(*container_, wanted) ? TableChange::Done : TableChange::Failed;
}

TableChange ArxStore::rename_table(std::wstring_view from, std::wstring_view to) {
  if (open_table(from) == nullptr) return TableChange::TableMissing;
  if (from == to) return TableChange::Done;
  if (to.empty()) return TableChange::Failed;
  if (open_table(to) != nullptr) return TableChange::TableExists;
  const std::wstring former(from);
  let_go_of_tables();
  names_.clear();
  const bool done = map::rename_table(*container_, former, std::wstring(to));
  return done ? TableChange::Done : TableChange::Failed;
}

ColumnChange ArxStore::rename_column(std::wstring_view table, std::wstring_view from,
                                     std::wstring_view to) {
  const std::optional<ODTableDef> definition = this->table(table);
  if (const auto answer = answer_to_rename(definition, from, to)) return *answer;
  return redefine(table, [&](AcMapODTableDefinition& changed) {
    return map::rename_column(changed, static_cast<int>(*definition->column(from)),
                              std::wstring(to));
  });
}

ColumnChange ArxStore::add_column(std::wstring_view table, const ODColumnDef& column, int index) {
  if (const auto answer = answer_to_add(this->table(table), column, index)) return *answer;
  return redefine(table, [&](AcMapODTableDefinition& changed) {
    return map::add_column(changed, column, index);
  });
}

ColumnChange ArxStore::remove_column(std::wstring_view table, int index) {
  if (const auto answer = answer_to_remove(this->table(table), index)) return *answer;
  return redefine(table, [index](AcMapODTableDefinition& changed) {
    return map::remove_column(changed, index);
  });
}

// Changes a copy of the host's own definition, which knows more of its columns than ODTableDef
// does.
template <class Change>
ColumnChange ArxStore::redefine(std::wstring_view table, const Change& change) {
  const std::wstring name(table);
  AcMapODTableDefinition definition = map::host_definition(*open_table(name)->table);
  if (!change(definition)) return ColumnChange::Failed;
  let_go_of_tables();
  return map::update_table(*container_, name, definition) ? ColumnChange::Done
                                                          : ColumnChange::Failed;
}

// Before a table is changed: the records of an entity must not change beside an iterator on it, and
// what was known of the tables may be wrong afterwards.
void ArxStore::let_go_of_tables() {
  for (Iterator* const iterator : iterators_)
    iterator->release();
  tables_.clear();
}

std::unique_ptr<AcMapODRecordIterator> ArxStore::open_records(
    const std::optional<std::wstring>& table) {
  if (container_ == nullptr) return nullptr;
  if (!table) return map::open_records(*container_);
  const OpenTable* const opened = open_table(*table);
  return opened == nullptr ? nullptr : map::open_records(*opened->table);
}

std::unique_ptr<RecordIterator> ArxStore::records() {
  return std::make_unique<Iterator>(*this, std::nullopt);
}

std::unique_ptr<RecordIterator> ArxStore::records_of(std::wstring_view table) {
  if (open_table(table) == nullptr) return ODStore::records_of(table);
  return std::make_unique<Iterator>(*this, std::wstring(table));
}

bool ArxStore::attach(EntityId entity, const ODRecord& record) {
  const OpenTable* const opened = open_table(record.table);
  if (opened == nullptr || !fits(record, opened->definition)) return false;
  if (std::ranges::any_of(
          iterators_, [entity](const Iterator* iterator) { return iterator->stands_on(entity); })) {
    return false;
  }
  AcMapODTableRecord made;
  if (!map::begin_record(*opened->table, made)) return false;
  if (static_cast<std::size_t>(map::value_count(made)) != record.values.size()) return false;
  for (int i = 0; i < map::value_count(made); ++i)
    map::assign(map::value(made, i), view_of(record.values[static_cast<std::size_t>(i)]));
  // The host wants no iterator on the entity meanwhile, not even one that is at its end.
  release_iterators_on(entity, nullptr);
  return map::add_record(*opened->table, made, object_id(entity));
}

void ArxStore::release_iterators_on(EntityId entity, const Iterator* but) {
  for (Iterator* const iterator : iterators_) {
    if (iterator != but && iterator->entity() == entity) iterator->release();
  }
}

void ArxStore::read_again_on(EntityId entity) {
  for (Iterator* const iterator : iterators_) {
    if (iterator->entity() == entity) iterator->read_again();
  }
}

// The drawing set joins an alias and the rest of a path by the separator that the rest begins with.
bool ArxStore::add_path_alias(std::wstring_view name, std::wstring_view path) {
  if (path.size() > 1 && path.ends_with(L'\\')) path.remove_suffix(1);
  aliases_.push_back({std::wstring(name), std::wstring(path)});
  const bool added = map::add_alias(aliases_.back().name, aliases_.back().path);
  if (!added) aliases_.pop_back();
  return added;
}

bool ArxStore::remove_path_alias(std::wstring_view name) {
  std::erase_if(aliases_, [name](const Alias& alias) { return alias.name == name; });
  return map::remove_alias(std::wstring(name));
}

// The drawing set knows a path by an alias for its beginning.
std::wstring ArxStore::aliased(const std::filesystem::path& path) const {
  std::wstring whole = path_text(path);
  for (const Alias& alias : aliases_) {
    if (whole.starts_with(alias.path)) return alias.name + L':' + whole.substr(alias.path.size());
  }
  return whole;
}

std::unique_ptr<AttachedDrawing> ArxStore::attach_drawing(const std::filesystem::path& path) {
  return open_attached_drawing(*this, aliased(path));
}

std::vector<std::wstring> ArxStore::feature_classes() const {
  AcDbDatabase* const drawing = classified_drawing();
  return drawing == nullptr ? std::vector<std::wstring>() : map::feature_classes(*drawing);
}

bool ArxStore::classify(EntityId entity, std::wstring_view feature_class) {
  AcDbDatabase* const drawing = classified_drawing();
  return drawing != nullptr &&
         map::classify(*drawing, object_id(entity), std::wstring(feature_class));
}

}  // namespace korvel::arx
