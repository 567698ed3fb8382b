// Random changes of object data, undone and redone, saved and read again, beside a model of plain
// containers that always has to say the same.
#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>

#include "host/standalone/standalone_store.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

struct Model {
  std::vector<ODTableDef> tables;
  std::map<std::uint64_t, std::vector<ODRecord>> records;  // by handle; erased ones are absent
  friend bool operator==(const Model&, const Model&) = default;
};

constexpr std::uint64_t locked_handle = first_entity_handle;

class Walk {
 public:
  explicit Walk(unsigned seed)
      : random_(seed), drawing_(make_drawing({{L"0"}, {L"Locked", false, true}}, [] {
          std::vector<EntitySpec> entities(8, {L"0"});
          entities.front().layer = L"Locked";
          return entities;
        }())) {
    for (std::uint64_t i = 0; i < 8; ++i)
      model_.records[first_entity_handle + i] = {};
  }

  void step() {
    const int kind = below(8);
    for (int times = kind < 2 ? 1 + below(4) : 0; times > 0; --times) {
      if (kind == 0) {
        travel(earlier_, later_, drawing_->undo().has_value());
      } else {
        travel(later_, earlier_, drawing_->redo().has_value());
      }
    }
    if (kind < 2) return;
    Model before = model_;
    bool changed = false;
    drawing_->journal().open();
    for (int changes = 1 + below(3); changes > 0; --changes)
      changed = change() || changed;
    drawing_->journal().close();
    if (!changed) return;
    later_.clear();
    earlier_.push_back(std::move(before));
  }

  void compare(Drawing& drawing) {
    StandaloneStore store(drawing);
    Model found;
    for (const std::wstring& name : store.table_names())
      found.tables.push_back(store.table(name).value_or(ODTableDef{}));
    const std::unique_ptr<RecordIterator> records = store.records();
    for (const EntityId id : drawing.entities(Space::Model)) {
      std::vector<ODRecord>& list = found.records[drawing.handle_of(id)];
      for (records->open(id, OpenMode::Read); !records->done(); records->next())
        records->read(list.emplace_back());
      EXPECT_EQ(static_cast<int>(list.size()), records->count());
    }
    EXPECT_EQ(found.tables, model_.tables);
    EXPECT_TRUE(found.records == model_.records);
  }

  // What is saved reads back the same; now and then the walk goes on from there.
  void save_and_read() {
    Result<std::unique_ptr<Drawing>> again = Drawing::read(drawing_->to_bytes(), "again.dxf");
    ASSERT_TRUE(again) << again.reason();
    EXPECT_TRUE((*again)->notices().empty());
    compare(**again);
    if (below(4) > 0) return;
    drawing_ = std::move(*again);
    earlier_.clear();
    later_.clear();
  }

  [[nodiscard]] Drawing& drawing() { return *drawing_; }
  [[nodiscard]] std::size_t records() const {
    std::size_t count = 0;
    for (const auto& [handle, list] : model_.records)
      count += list.size();
    return count;
  }

 private:
  int below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
  template <class Value>
  Value one_of(std::initializer_list<Value> values) {
    return *(values.begin() + below(static_cast<int>(values.size())));
  }

  std::wstring name() {
    return one_of({L"A", L"a", L"B", L"\u00C4 \u4E2D", L"^J|<>", L"Long name "});
  }

  ODValue value(ODType type) {
    switch (type) {
      case ODType::Integer:
        return one_of<std::int32_t>({0, -1, 2147483647, -2147483647 - 1});
      case ODType::Real:
        return one_of({0.0, 0.1, -1e300, 5e-324, 123456.789});
      case ODType::Point:
        return Point3{one_of({0.0, 1.5}), -2.25, one_of({0.0, 1e-9})};
      default:
        break;
    }
    return one_of<std::wstring>({L"", L" blanks ", L"line\nfeed\r\t", L"^ \\U+0041 %%c \\P {}",
                                 L"\U0001F600\u00E9", L"SECTION", std::wstring(251, L'\u4E2D'),
                                 std::wstring(1000, L'^')});
  }
  ODColumnDef column() {
    const auto type = static_cast<ODType>(1 + below(4));
    return {name(), type, value(type)};
  }
  ODRecord record(const ODTableDef& table) {
    ODRecord made{table.name, {}};
    for (const ODColumnDef& column : table.columns)
      made.values.push_back(value(column.type));
    return made;
  }
  ODTableDef* table_named(std::wstring_view wanted) {
    const auto found = std::ranges::find(model_.tables, wanted, &ODTableDef::name);
    return found == model_.tables.end() ? nullptr : &*found;
  }
  template <class Visit>
  void for_records_of(const std::wstring& table, Visit visit) {
    for (auto& [handle, list] : model_.records) {
      for (ODRecord& record : list) {
        if (record.table == table) visit(record);
      }
    }
  }

  // One change of the drawing and of the model; whether anything was changed.
  bool change() {
    StandaloneStore store(*drawing_);
    const int kind = below(20);
    if (kind < 6) return attach(store);
    if (kind < 12) return edit(store);
    if (kind == 12 && below(8) == 0) return erase();
    const std::wstring wanted = name();
    ODTableDef* const table = table_named(wanted);
    if (kind < 15 || table == nullptr) return define(store, wanted);
    if (kind == 15) {
      EXPECT_EQ(store.delete_table(wanted), TableChange::Done);
      for (auto& [handle, list] : model_.records)
        std::erase_if(list, [&](const ODRecord& record) { return record.table == wanted; });
      std::erase_if(model_.tables, [&](const ODTableDef& each) { return each.name == wanted; });
      return true;
    }
    return kind < 17 ? rename(store, *table) : reshape(store, *table);
  }

  bool attach(StandaloneStore& store) {
    const std::uint64_t handle = first_entity_handle + static_cast<std::uint64_t>(below(8));
    if (model_.tables.empty()) return false;
    const ODRecord made = record(model_.tables[random_() % model_.tables.size()]);
    const bool possible = model_.records.contains(handle) && handle != locked_handle;
    const EntityId id = drawing_->by_handle(handle).value_or(EntityId{});
    EXPECT_EQ(store.attach(id, made), possible);
    if (possible) model_.records[handle].push_back(made);
    return possible;
  }

  // Updates or removes one record.
  bool edit(StandaloneStore& store) {
    const std::uint64_t handle = first_entity_handle + static_cast<std::uint64_t>(below(8));
    const auto known = model_.records.find(handle);
    if (known == model_.records.end() || known->second.empty()) return false;
    std::vector<ODRecord>& list = known->second;
    const int index = below(static_cast<int>(list.size()));
    const std::unique_ptr<RecordIterator> records = store.records();
    EXPECT_TRUE(records->open(drawing_->by_handle(handle).value_or(EntityId{}), OpenMode::Write));
    for (int i = 0; i < index; ++i)
      records->next();
    if (below(2) == 0) {
      EXPECT_TRUE(records->remove());
      list.erase(list.begin() + index);
      return true;
    }
    ODRecord& current = list[static_cast<std::size_t>(index)];
    ODRecord made = record(*table_named(current.table));
    EXPECT_TRUE(records->update(made));
    std::swap(current, made);
    return current != made;
  }

  bool erase() {
    const std::uint64_t handle = first_entity_handle + static_cast<std::uint64_t>(below(8));
    const bool possible = model_.records.contains(handle) && handle != locked_handle;
    const EntityId id = drawing_->by_handle(handle).value_or(EntityId{});
    EXPECT_EQ(drawing_->erase(id), possible);
    if (possible) model_.records.erase(handle);
    return possible;
  }

  bool define(StandaloneStore& store, const std::wstring& wanted) {
    ODTableDef made{wanted, {}};
    for (int columns = below(4); columns > 0; --columns) {
      ODColumnDef next = column();
      if (!made.column(next.name)) made.columns.push_back(std::move(next));
    }
    const bool possible = table_named(wanted) == nullptr;
    EXPECT_EQ(store.define_table(made), possible ? TableChange::Done : TableChange::TableExists);
    if (possible) model_.tables.push_back(std::move(made));
    return possible;
  }

  bool rename(StandaloneStore& store, ODTableDef& table) {
    const std::wstring from = table.name;
    const std::wstring to = name();
    const bool possible = table_named(to) == nullptr;
    EXPECT_EQ(store.rename_table(from, to),
              possible || from == to ? TableChange::Done : TableChange::TableExists);
    if (!possible) return false;
    for_records_of(from, [&to](ODRecord& record) { record.table = to; });
    table.name = to;
    return true;
  }

  // Adds, removes or renames a column.
  bool reshape(StandaloneStore& store, ODTableDef& table) {
    std::vector<ODColumnDef>& columns = table.columns;
    const int index = below(static_cast<int>(columns.size()) + 1);
    const auto at_index = [index](auto& list) { return list.begin() + index; };
    const ODColumnDef made = column();
    const bool taken = table.column(made.name).has_value();
    if (below(3) > 0) {
      EXPECT_EQ(store.add_column(table.name, made, index),
                taken ? ColumnChange::DuplicateName : ColumnChange::Done);
      if (taken) return false;
      columns.insert(at_index(columns), made);
      for_records_of(table.name, [&](ODRecord& record) {
        record.values.insert(at_index(record.values), made.default_value);
      });
      return true;
    }
    if (at_index(columns) == columns.end()) return false;
    if (below(2) == 0) {
      const std::wstring from = at_index(columns)->name;
      EXPECT_EQ(store.rename_column(table.name, from, made.name),
                taken && from != made.name ? ColumnChange::DuplicateName : ColumnChange::Done);
      if (!taken) at_index(columns)->name = made.name;
      return !taken;
    }
    EXPECT_EQ(store.remove_column(table.name, index), ColumnChange::Done);
    columns.erase(at_index(columns));
    for_records_of(table.name,
                   [&](ODRecord& record) { record.values.erase(at_index(record.values)); });
    return true;
  }

  void travel(std::vector<Model>& from, std::vector<Model>& to, bool moved) {
    EXPECT_EQ(moved, !from.empty());
    if (from.empty()) return;
    to.push_back(std::exchange(model_, std::move(from.back())));
    from.pop_back();
  }

  std::mt19937 random_;
  std::unique_ptr<Drawing> drawing_;
  Model model_;
  std::vector<Model> earlier_;  // what undo leads to, the nearest last
  std::vector<Model> later_;    // what redo leads to
};

TEST(ObjectDataModel, RandomChangesAgreeWithPlainContainers) {
  std::size_t most_records = 0;
  for (unsigned seed = 1; seed <= 8; ++seed) {
    Walk walk(seed);
    for (int step = 1; step <= 500; ++step) {
      SCOPED_TRACE(testing::Message() << "seed " << seed << ", step " << step);
      walk.step();
      walk.compare(walk.drawing());
      most_records = std::max(most_records, walk.records());
      if (step % 10 == 0) walk.save_and_read();
      if (testing::Test::HasFailure()) return;
    }
  }
  EXPECT_GT(most_records, 20U) << "the walk hardly attached anything";
}

}  // namespace
}  // namespace korvel::test
