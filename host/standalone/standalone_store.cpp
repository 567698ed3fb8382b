#include "host/standalone/standalone_store.h"

#include <algorithm>
#include <limits>

#include "frame/od_rules.h"
#include "frame/walk.h"

namespace korvel {
namespace {

// Whether the record has a fitting value for every column of the table.
bool fits(const ODRecord& record, const OdTable& table) {
  return record.table == table.name &&
         std::ranges::equal(record.values, table.columns,
                            [](const ODValue& value, const OdColumn& column) {
                              return fits(view_of(value), column.definition.type);
                            });
}

// Whether the value of a row passes. Of texts, which the store keeps once, each is asked about
// once.
template <class Value>
class ColumnTest {
 public:
  ColumnTest(const std::vector<Value>& cells, const OdTables& /*od*/, ValueTest& test)
      : cells_(cells), test_(test) {}
  [[nodiscard]] bool passes(std::uint32_t row) { return test_.passes(cells_[row]); }

 private:
  const std::vector<Value>& cells_;
  ValueTest& test_;
};

template <>
class ColumnTest<TextPool::Id> {
 public:
  ColumnTest(const std::vector<TextPool::Id>& cells, const OdTables& od, ValueTest& test)
      : cells_(cells), texts_(od.texts()), test_(test), answers_(texts_.size(), Answer::None) {}
  [[nodiscard]] bool passes(std::uint32_t row) {
    Answer& answer = answers_[static_cast<std::size_t>(cells_[row])];
    if (answer == Answer::None) {
      answer = test_.passes(texts_.at(cells_[row])) ? Answer::Yes : Answer::No;
    }
    return answer == Answer::Yes;
  }

 private:
  enum class Answer : char { None, Yes, No };

  const std::vector<TextPool::Id>& cells_;
  const TextPool& texts_;
  ValueTest& test_;
  std::vector<Answer> answers_;  // by text
};

}  // namespace

class StandaloneStore::Iterator final : public RecordIterator {
 public:
  // Over the records of all tables, or of one.
  explicit Iterator(StandaloneStore& store, std::optional<std::uint32_t> only = std::nullopt)
      : store_(store), drawing_(store.drawing_), od_(store.drawing_.od()), only_(only) {
    store_.iterators_.push_back(this);
  }
  Iterator(const Iterator&) = delete;
  Iterator& operator=(const Iterator&) = delete;
  ~Iterator() override { std::erase(store_.iterators_, this); }

  bool open(EntityId entity, OpenMode mode) override {
    opened_ = drawing_.exists(entity) && drawing_.has_readable_records(entity) &&
              !(mode == OpenMode::Write && drawing_.on_locked_layer(entity));
    writing_ = mode == OpenMode::Write;
    entity_ = entity;
    start();
    return opened_;
  }
  [[nodiscard]] int count() const override {
    const RecordSpan span = current_span();
    return static_cast<int>(only_ ? od_.count_of(span, *only_) : span.count);
  }
  void start() override {
    span_ = current_span();
    position_ = 0;
    skip_others();
  }
  [[nodiscard]] bool done() const override { return position_ >= span_.count || is_overtaken(); }
  void next() override {
    ++position_;
    skip_others();
  }

  [[nodiscard]] std::wstring_view table_name() const override { return table().name; }
  [[nodiscard]] int value_count() const override {
    return static_cast<int>(table().columns.size());
  }
  [[nodiscard]] ODValueView value(int index) const override {
    if (index < 0) return {};
    return od_.value(record(), static_cast<std::uint32_t>(index));
  }
  bool update(const ODRecord& changed) override {
    if (!writing_ || done() || !fits(changed, table())) return false;
    for (std::uint32_t i = 0; i < changed.values.size(); ++i) {
      od_.set_value(Drawing::index_of(entity_), record(), i, view_of(changed.values[i]));
    }
    return true;
  }
  bool set_value(int index, const ODValueView& value) override {
    if (!writing_ || done() || index < 0 || index >= value_count()) return false;
    const auto column = static_cast<std::uint32_t>(index);
    if (!fits(value, table().columns[column].definition.type)) return false;
    od_.set_value(Drawing::index_of(entity_), record(), column, value);
    return true;
  }
  bool remove() override {
    if (!writing_ || done()) return false;
    od_.remove_record(Drawing::index_of(entity_), position_);
    span_ = {};
    return true;
  }
  int remove_marked(std::span<const char> marks) override {
    start();
    goes_.assign(span_.count, 0);
    for (const char mark : marks) {
      if (done()) break;
      goes_[position_] = mark;
      next();
    }
    span_ = {};
    if (!writing_ || goes_.empty()) return 0;
    return static_cast<int>(od_.remove_records(Drawing::index_of(entity_), goes_));
  }

  [[nodiscard]] bool stands_on(EntityId entity) const {
    return opened_ && entity_ == entity && !done();
  }

 private:
  void skip_others() {
    while (only_ && position_ < span_.count && record().table != *only_)
      ++position_;
  }
  [[nodiscard]] RecordSpan current_span() const {
    return opened_ ? od_.records_of(Drawing::index_of(entity_)) : RecordSpan{};
  }
  // The entity's records were changed by somebody else.
  [[nodiscard]] bool is_overtaken() const {
    const RecordSpan now = current_span();
    return now.first != span_.first || now.count != span_.count;
  }
  [[nodiscard]] RecordRef record() const { return od_.record(span_.first + position_); }
  [[nodiscard]] const OdTable& table() const { return od_.tables()[record().table]; }

  StandaloneStore& store_;
  Drawing& drawing_;
  OdTables& od_;
  std::optional<std::uint32_t> only_;
  EntityId entity_;
  bool opened_ = false;
  bool writing_ = false;
  RecordSpan span_;
  std::uint32_t position_ = 0;
  std::vector<char> goes_;
};

std::vector<std::wstring> StandaloneStore::table_names() const {
  std::vector<std::wstring> names;
  for (const OdTable& table : drawing_.od().tables()) {
    if (!table.deleted) names.push_back(table.name);
  }
  return names;
}

std::optional<ODTableDef> StandaloneStore::table(std::wstring_view name) const {
  const std::optional<std::uint32_t> index = drawing_.od().find(name);
  if (!index) return std::nullopt;
  return drawing_.od().tables()[*index].definition();
}

TableChange StandaloneStore::define_table(const ODTableDef& definition) {
  if (drawing_.od().find(definition.name)) return TableChange::TableExists;
  if (!is_sound(definition)) return TableChange::Failed;
  if (drawing_.why_no_object_data()) {
    lacked_place_ = true;
    return TableChange::Failed;
  }
  (void)drawing_.od().add_table(definition);
  return TableChange::Done;
}

TableChange StandaloneStore::delete_table(std::wstring_view name) {
  const std::optional<std::uint32_t> index = drawing_.od().find(name);
  if (!index) return TableChange::TableMissing;
  drawing_.od().delete_table(*index);
  return TableChange::Done;
}

TableChange StandaloneStore::rename_table(std::wstring_view from, std::wstring_view to) {
  const std::optional<std::uint32_t> index = drawing_.od().find(from);
  if (!index) return TableChange::TableMissing;
  if (from == to) return TableChange::Done;
  if (to.empty()) return TableChange::Failed;
  if (drawing_.od().find(to)) return TableChange::TableExists;
  drawing_.od().rename_table(*index, std::wstring(to));
  return TableChange::Done;
}

ColumnChange StandaloneStore::rename_column(std::wstring_view table, std::wstring_view from,
                                            std::wstring_view to) {
  const std::optional<ODTableDef> definition = this->table(table);
  if (const auto answer = answer_to_rename(definition, from, to)) return *answer;
  const auto column = static_cast<std::uint32_t>(*definition->column(from));
  drawing_.od().rename_column(*drawing_.od().find(table), column, std::wstring(to));
  return ColumnChange::Done;
}

ColumnChange StandaloneStore::add_column(std::wstring_view table, const ODColumnDef& column,
                                         int index) {
  if (const auto answer = answer_to_add(this->table(table), column, index)) return *answer;
  drawing_.od().insert_column(*drawing_.od().find(table), static_cast<std::uint32_t>(index),
                              column);
  return ColumnChange::Done;
}

ColumnChange StandaloneStore::remove_column(std::wstring_view table, int index) {
  if (const auto answer = answer_to_remove(this->table(table), index)) return *answer;
  drawing_.od().remove_column(*drawing_.od().find(table), static_cast<std::uint32_t>(index));
  return ColumnChange::Done;
}

std::unique_ptr<RecordIterator> StandaloneStore::records() {
  return std::make_unique<Iterator>(*this);
}

std::unique_ptr<RecordIterator> StandaloneStore::records_of(std::wstring_view table) {
  // No table has the number that stands for one that does not exist.
  constexpr auto missing = std::numeric_limits<std::uint32_t>::max();
  return std::make_unique<Iterator>(*this, drawing_.od().find(table).value_or(missing));
}

bool StandaloneStore::attach(EntityId entity, const ODRecord& record) {
  if (!drawing_.takes_records(entity) || drawing_.on_locked_layer(entity)) return false;
  const std::optional<std::uint32_t> table = drawing_.od().find(record.table);
  if (!table || !fits(record, drawing_.od().tables()[*table])) return false;
  if (std::ranges::any_of(
          iterators_, [entity](const Iterator* iterator) { return iterator->stands_on(entity); })) {
    return false;
  }
  views_.clear();
  for (const ODValue& value : record.values)
    views_.push_back(view_of(value));
  OdTables& od = drawing_.od();
  od.append_record(Drawing::index_of(entity), od.add_row(*table, views_));
  return true;
}

// --- Passes ---

RecordSpan StandaloneStore::readable_records(EntityId entity) const {
  // Nothing was read of records that could not be read, so only erased entities must be told apart.
  if (drawing_.any_erased() && !drawing_.exists(entity)) return {};
  return drawing_.od().records_of(Drawing::index_of(entity));
}

std::vector<int> StandaloneStore::count_records(const EntityList& entities,
                                                std::span<const std::wstring> tables,
                                                ProgressMeter& meter) {
  const OdTables& od = drawing_.od();
  std::vector<char> counts_table(od.tables().size(), 0);
  for (const std::wstring& name : tables) {
    if (const std::optional<std::uint32_t> table = od.find(name)) counts_table[*table] = 1;
  }
  std::vector<int> counts;
  counts.reserve(entities.size());
  ReadWalk walk(meter, entities.size());
  read_in_lots(walk, entities.size(), [&](std::size_t i) {
    int count = 0;
    for (const RecordRef record : od.references(readable_records(entities[i]))) {
      count += counts_table[record.table];
    }
    counts.push_back(count);
  });
  return counts;
}

std::vector<std::wstring> StandaloneStore::tables_on(const EntityList& entities,
                                                     ProgressMeter& meter) {
  const OdTables& od = drawing_.od();
  std::vector<char> met(od.tables().size(), 0);
  ReadWalk walk(meter, entities.size());
  read_in_lots(walk, entities.size(), [&](std::size_t i) {
    for (const RecordRef record : od.references(readable_records(entities[i])))
      met[record.table] = 1;
  });
  std::vector<std::wstring> names;
  for (std::size_t i = 0; i < met.size(); ++i) {
    if (met[i] != 0) names.push_back(od.tables()[i].name);
  }
  std::ranges::sort(names);
  return names;
}

void StandaloneStore::mark_passing(const EntityList& entities, std::wstring_view table_name,
                                   int column, ValueTest& test, std::vector<char>& marks,
                                   ProgressMeter& meter) {
  const OdTables& od = drawing_.od();
  const std::optional<std::uint32_t> table = od.find(table_name);
  if (!table || column < 0) return;
  const std::vector<OdColumn>& columns = od.tables()[*table].columns;
  if (static_cast<std::size_t>(column) >= columns.size()) return;

  ReadWalk walk(meter, entities.size());
  const auto mark = [&](auto& column_test) {
    read_in_lots(walk, entities.size(), [&](std::size_t i) {
      if (marks[i] != 0) return;
      // No way out after a record that passes: it would be guessed wrong too often.
      bool passes = false;
      for (const RecordRef record : od.references(readable_records(entities[i]))) {
        if (record.table == *table) passes |= column_test.passes(record.row);
      }
      marks[i] = passes ? 1 : 0;
    });
  };
  std::visit(
      [&](const auto& cells) {
        using Cells = std::decay_t<decltype(cells)>;
        if constexpr (!std::is_same_v<Cells, std::monostate>) {
          ColumnTest<typename Cells::value_type> column_test(cells, od, test);
          mark(column_test);
        }
      },
      columns[static_cast<std::size_t>(column)].cells);
}

// --- Other drawings ---

bool StandaloneStore::add_path_alias(std::wstring_view name, std::wstring_view path) {
  return path_aliases_.try_emplace(std::wstring(name), path).second;
}

bool StandaloneStore::remove_path_alias(std::wstring_view name) {
  const auto alias = path_aliases_.find(name);
  if (alias == path_aliases_.end()) return false;
  path_aliases_.erase(alias);
  return true;
}

// A copy of the file in memory: what happens to the file, or to a drawing opened from it, does not
// matter to it.
class StandaloneStore::Attached final : public AttachedDrawing {
 public:
  Attached(StandaloneStore& target, std::unique_ptr<Drawing> source)
      : target_(target), drawing_(std::move(source)), store_(*drawing_) {}

  bool activate() override { return true; }
  void deactivate() override {}
  [[nodiscard]] std::vector<std::wstring> table_names() const override {
    return store_.table_names();
  }
  [[nodiscard]] std::optional<ODTableDef> table(std::wstring_view name) const override {
    return store_.table(name);
  }
  TableChange copy_definition(std::wstring_view name) override {
    const std::optional<ODTableDef> definition = store_.table(name);
    return definition ? target_.define_table(*definition) : TableChange::TableMissing;
  }

 private:
  StandaloneStore& target_;
  std::unique_ptr<Drawing> drawing_;
  StandaloneStore store_;
};

std::unique_ptr<AttachedDrawing> StandaloneStore::attach_drawing(
    const std::filesystem::path& path) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored)) return nullptr;  // a pipe may never come
  Result<std::unique_ptr<Drawing>> source = Drawing::open(path);
  if (!source) return nullptr;
  return std::make_unique<Attached>(*this, std::move(*source));
}

}  // namespace korvel
