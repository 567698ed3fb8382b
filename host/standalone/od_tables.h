// The object data of a drawing in memory: tables of typed columns, and for every entity the ordered
// list of its rows.
//
// Rows are only ever added; what an entity no longer carries stays where it is, so that undoing
// costs nothing but putting the entity's list back.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "frame/od_table.h"
#include "host/standalone/journal.h"
#include "host/standalone/od_change.h"
#include "host/standalone/text_pool.h"

namespace korvel {

struct OdTable {
  std::wstring name;
  std::vector<OdColumn> columns;
  std::uint32_t rows = 0;
  bool deleted = false;
  bool touched = false;  // its records, all of them

  [[nodiscard]] ODTableDef definition() const;
};

// A record: a row of a table.
struct RecordRef {
  std::uint32_t table;
  std::uint32_t row;
};

class OdTables {
 public:
  // Where changes are recorded; none while the drawing is being read.
  void set_journal(Journal* journal) { journal_ = journal; }

  // --- Definitions. Indexes are stable; deleted tables keep theirs. ---

  [[nodiscard]] const std::vector<OdTable>& tables() const { return tables_; }
  [[nodiscard]] std::optional<std::uint32_t> find(std::wstring_view name) const;
  std::uint32_t add_table(const ODTableDef& definition);
  void delete_table(std::uint32_t table);  // with its records on every entity
  void rename_table(std::uint32_t table, std::wstring name);
  void rename_column(std::uint32_t table, std::uint32_t column, std::wstring name);
  void insert_column(std::uint32_t table, std::uint32_t column, const ODColumnDef& definition);
  void remove_column(std::uint32_t table, std::uint32_t column);

  // --- Records. `entity` is the drawing's index of the entity. ---

  void set_entity_count(std::size_t count) { records_.resize(count); }
  [[nodiscard]] std::size_t entity_count() const { return records_.size(); }
  [[nodiscard]] RecordSpan records_of(std::uint32_t entity) const {
    return entity < records_.size() ? records_[entity] : RecordSpan{};
  }
  [[nodiscard]] RecordRef record(std::uint32_t position) const { return references_[position]; }
  [[nodiscard]] std::span<const RecordRef> references(RecordSpan span) const {
    return {references_.data() + span.first, span.count};
  }
  // How many records of the span are of the table.
  [[nodiscard]] std::uint32_t count_of(RecordSpan span, std::uint32_t table) const;
  [[nodiscard]] ODValueView value(RecordRef record, std::uint32_t column) const;
  [[nodiscard]] const TextPool& texts() const { return texts_; }

  // Adds a row; the values must be of the columns' types and number.
  RecordRef add_row(std::uint32_t table, std::span<const ODValueView> values);
  void append_record(std::uint32_t entity, RecordRef record);
  void remove_record(std::uint32_t entity, std::uint32_t index);
  // Those whose places are marked; a mark for each. Gives their number.
  std::uint32_t remove_records(std::uint32_t entity, std::span<const char> marks);
  // What was read of an entity before its data turned out to be unreadable.
  void forget_records(std::uint32_t entity) { records_[entity] = {}; }
  // `record` is one of the entity's. Nothing is recorded when the value is what it was.
  void set_value(std::uint32_t entity, RecordRef record, std::uint32_t column,
                 const ODValueView& value);

  // Whether records or values of the entity were touched since the drawing was read. Touched does
  // not mean different.
  [[nodiscard]] bool touched(std::uint32_t entity) const;
  [[nodiscard]] bool any_touched() const { return any_touched_; }

  // Exchanges what the change holds with what stands there; a run newest first to undo it, oldest
  // first to redo it.
  void exchange(OdChange& change, JournalDirection direction);

 private:
  void make_room();
  void note(OdChange change);
  void touch(std::uint32_t entity);
  void touch_records_of(std::uint32_t table);
  [[nodiscard]] std::vector<std::uint32_t>::const_iterator place_of(std::wstring_view name) const;
  void list(std::uint32_t table);
  void unlist(std::uint32_t table);
  void swap_name(std::uint32_t table, std::wstring& name);
  void set_deleted(std::uint32_t table, bool deleted);
  void set_records(std::uint32_t entity, RecordSpan span);
  // Removes the records of which `goes(position)` is true; gives their number.
  template <class Goes>
  std::uint32_t remove_if(std::uint32_t entity, const Goes& goes);

  std::vector<OdTable> tables_;
  // Those not deleted, in the order of their names. There is always room for all of them: undoing
  // must not fail for lack of memory.
  std::vector<std::uint32_t> by_name_;
  TextPool texts_;
  std::vector<RecordRef> references_;
  std::vector<RecordSpan> records_;
  std::vector<bool> touched_;
  bool any_touched_ = false;
  Journal* journal_ = nullptr;
};

}  // namespace korvel
