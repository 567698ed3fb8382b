// The object data of the active drawing, as every command sees it.
//
// A host implements these two classes; a second host can be written from this header alone. The
// rules that hold for all operations:
// - No operation throws or prints, but for the passes, which the user can interrupt. What cannot be
//   done is answered by the result.
// - Table names are compared exactly, letter case included.
// - Changes are made between DrawingHost::lock and unlock; any of them may be refused (a locked
//   layer, missing rights, a table of the host's own), and a refused change changes nothing.
// - Nothing handed out survives the command that asked for it.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "frame/entity_id.h"
#include "frame/od_table.h"
#include "frame/od_value.h"
#include "frame/progress_meter.h"

namespace korvel {

enum class OpenMode { Read, Write };

// Walks the records of one entity at a time and is moved from entity to entity, so that a pass
// over a million entities costs no allocation. Records come in the order in which they were
// attached, whatever their tables.
//
// No record may be added to an entity while an iterator stands on it: read first, let the iterator
// go elsewhere or end, then attach. When records of the entity are removed by other means (another
// iterator, the deletion of their table), the iterator stands on nothing until start() or open().
class RecordIterator {
 public:
  RecordIterator() = default;
  RecordIterator(const RecordIterator&) = delete;
  RecordIterator& operator=(const RecordIterator&) = delete;
  virtual ~RecordIterator() = default;

  // Stands on the entity's first record. False when the entity cannot be opened in this mode (it
  // was erased, or Write is asked and its layer is locked); the iterator then stands on nothing:
  // count() is 0 and done() is true. While an iterator stands on an entity for writing, a host need
  // not let it be read by other means: what is wanted of its shape is read before.
  virtual bool open(EntityId entity, OpenMode mode) = 0;

  // Number of the entity's records that this iterator walks.
  [[nodiscard]] virtual int count() const = 0;

  virtual void start() = 0;
  [[nodiscard]] virtual bool done() const = 0;
  virtual void next() = 0;

  // The current record, read in place; valid until the iterator moves or the store changes. Not to
  // be called when done. A value index at or above value_count() gives an empty value.
  [[nodiscard]] virtual std::wstring_view table_name() const = 0;
  [[nodiscard]] virtual int value_count() const = 0;
  [[nodiscard]] virtual ODValueView value(int index) const = 0;

  // A copy of the current record; reuses what `record` holds.
  virtual void read(ODRecord& record) const;

  // Writes the values over those of the current record. False, and nothing written, when opened
  // for reading, when the record is of another table, when the number or the types of the values
  // are not those of the table's columns, or when a number is not finite.
  virtual bool update(const ODRecord& record) = 0;

  // Writes one value of the current record and leaves the others as they are. False, and nothing
  // written, for the reasons of update().
  virtual bool set_value(int index, const ODValueView& value);

  // Removes the current record. Afterwards the iterator stands on nothing until start() or open().
  // False, and nothing removed, when opened for reading.
  virtual bool remove() = 0;

  // Removes the records whose places in the walk are marked; `marks` may be shorter than the walk.
  // Afterwards the iterator stands on nothing until start() or open(). Gives the number of records
  // removed; what is refused stays. The default starts anew after each removal and passes over what
  // stays in front of it; a host that knows a shorter way takes it.
  virtual int remove_marked(std::span<const char> marks);
};

enum class TableChange { Done, Failed, TableExists, TableMissing };

enum class ColumnChange { Done, Failed, DuplicateName, ColumnMissing, TableMissing };

// A question about single values, asked by their type. Equal values must give equal answers, in
// whatever order and however often they are asked: a store that keeps equal values once may ask
// once.
class ValueTest {
 public:
  ValueTest() = default;
  ValueTest(const ValueTest&) = default;
  ValueTest& operator=(const ValueTest&) = default;
  virtual ~ValueTest() = default;

  virtual bool passes(std::monostate none) = 0;
  virtual bool passes(std::int32_t number) = 0;
  virtual bool passes(double number) = 0;
  virtual bool passes(std::wstring_view text) = 0;
  virtual bool passes(const Point3& point) = 0;

  bool operator()(const ODValueView& value) {
    return std::visit([this](const auto& typed) { return passes(typed); }, value);
  }
};

// Another drawing whose object data can be read; nothing is ever written to it. It is detached
// when this is destroyed.
class AttachedDrawing {
 public:
  AttachedDrawing() = default;
  AttachedDrawing(const AttachedDrawing&) = delete;
  AttachedDrawing& operator=(const AttachedDrawing&) = delete;
  virtual ~AttachedDrawing() = default;

  // Its tables can be read between the two. False: the host refuses.
  virtual bool activate() = 0;
  virtual void deactivate() = 0;

  // As ODStore has them for the active drawing.
  [[nodiscard]] virtual std::vector<std::wstring> table_names() const = 0;
  [[nodiscard]] virtual std::optional<ODTableDef> table(std::wstring_view name) const = 0;

  // Brings the table's definition, and no record, into the active drawing. TableExists: a table of
  // that name is there already, and stays as it is. A host that can bring a definition only along
  // with a record attaches one to a point of its own making and erases the point.
  virtual TableChange copy_definition(std::wstring_view table) = 0;
};

class ODStore {
 public:
  ODStore() = default;
  ODStore(const ODStore&) = delete;
  ODStore& operator=(const ODStore&) = delete;
  virtual ~ODStore() = default;

  // Every table of the drawing, topology tables included, in the host's order.
  [[nodiscard]] virtual std::vector<std::wstring> table_names() const = 0;

  // A copy of the definition; none if there is no such table.
  [[nodiscard]] virtual std::optional<ODTableDef> table(std::wstring_view name) const = 0;

  // Adds a table without records. Refused (Failed) when a name is empty, two columns have one
  // name, or a default value is not of its column's type.
  virtual TableChange define_table(const ODTableDef& definition) = 0;

  // Deletes the definition and, with it, the table's records everywhere in the drawing.
  virtual TableChange delete_table(std::wstring_view name) = 0;

  // The records follow. Renaming a table to its own name does nothing and is Done.
  virtual TableChange rename_table(std::wstring_view from, std::wstring_view to) = 0;

  virtual ColumnChange rename_column(std::wstring_view table, std::wstring_view from,
                                     std::wstring_view to) = 0;

  // Inserts a column before position `index` (the count of columns appends); existing records get
  // its default. Failed when the index is beyond the end or the default is not of its type.
  virtual ColumnChange add_column(std::wstring_view table, const ODColumnDef& column,
                                  int index) = 0;

  // Removes the column and its values from every record.
  virtual ColumnChange remove_column(std::wstring_view table, int index) = 0;

  // An iterator over all records of an entity; it stands on nothing until opened.
  [[nodiscard]] virtual std::unique_ptr<RecordIterator> records() = 0;

  // The same over the records of one table only. A table that does not exist has none.
  [[nodiscard]] virtual std::unique_ptr<RecordIterator> records_of(std::wstring_view table);

  // Attaches a record behind those the entity has. An entity may carry several records, also
  // several of one table. False, and nothing attached, when the entity cannot be opened for
  // writing, an iterator stands on it, the table does not exist, the values do not fit its
  // columns, or the drawing cannot hold object data.
  virtual bool attach(EntityId entity, const ODRecord& record) = 0;

  // --- Passes over the records of many entities ---
  //
  // Each gives what the iterators would; a host that knows a shorter way takes it. An entity that
  // cannot be opened for reading has no records. Each is a ReadWalk: the meter moves from entity to
  // entity, and an interrupt throws Interrupted.

  // For each entity, in the order given, the number of its records that are of one of the tables.
  [[nodiscard]] virtual std::vector<int> count_records(const EntityList& entities,
                                                       std::span<const std::wstring> tables,
                                                       ProgressMeter& meter);

  // The tables of which at least one of the entities carries a record, topology tables included:
  // distinct and in ordinal order.
  [[nodiscard]] virtual std::vector<std::wstring> tables_on(const EntityList& entities,
                                                            ProgressMeter& meter);

  // Marks each entity that has a record of the table whose value in the column (by index) passes.
  // `marks` is as long as `entities`; what is marked already stays so and is not asked about.
  virtual void mark_passing(const EntityList& entities, std::wstring_view table, int column,
                            ValueTest& test, std::vector<char>& marks, ProgressMeter& meter);

  // --- Other drawings ---

  // A named path of the host's drawing set. False: there is such a name already / there is none.
  virtual bool add_path_alias(std::wstring_view name, std::wstring_view path) = 0;
  virtual bool remove_path_alias(std::wstring_view name) = 0;

  // Null when the file cannot be read as a drawing.
  [[nodiscard]] virtual std::unique_ptr<AttachedDrawing> attach_drawing(
      const std::filesystem::path& path) = 0;

  // Feature classes of the drawing. A host without classification has none and classifies nothing.
  [[nodiscard]] virtual std::vector<std::wstring> feature_classes() const { return {}; }
  virtual bool classify(EntityId /*entity*/, std::wstring_view /*feature_class*/) { return false; }
};

// Attaches a new record of the table with every column at its default.
bool attach_default(ODStore& store, EntityId entity, std::wstring_view table);

// The drawing's user tables, in ordinal order.
[[nodiscard]] std::vector<std::wstring> user_tables(const ODStore& store);

// The table names of the entity's records of user tables, in record order, one entry a record.
// An entity that cannot be opened has none.
[[nodiscard]] std::vector<std::wstring> user_tables_of(RecordIterator& records, EntityId entity);

// Whether user_tables_of would give at least `least` names; stops looking as soon as it is known.
[[nodiscard]] bool has_user_tables(RecordIterator& records, EntityId entity, int least);

}  // namespace korvel
