#include "host/standalone/od_tables.h"

#include <algorithm>
#include <utility>

namespace korvel {
namespace {

Cell cell_for(const ODValueView& value, TextPool& texts) {
  struct Convert {
    TextPool& pool;
    Cell operator()(std::monostate none) const { return none; }
    Cell operator()(std::int32_t number) const { return number; }
    Cell operator()(double number) const { return number; }
    Cell operator()(std::wstring_view text) const { return pool.intern(text); }
    Cell operator()(const Point3& point) const { return point; }
  };
  return std::visit(Convert{texts}, value);
}

// An entity or a row may come several times in a run.
void in_order(JournalDirection direction, std::size_t count, const auto& swap) {
  for (std::size_t i = 0; i < count; ++i)
    swap(direction == JournalDirection::Undo ? count - 1 - i : i);
}

}  // namespace

ODTableDef OdTable::definition() const {
  ODTableDef copy{name, {}};
  copy.columns.reserve(columns.size());
  for (const OdColumn& column : columns)
    copy.columns.push_back(column.definition);
  return copy;
}

void OdTables::make_room() {
  if (journal_ != nullptr) journal_->make_room();
}

void OdTables::note(OdChange change) {
  if (journal_ != nullptr) journal_->add(std::move(change));
}

void OdTables::touch(std::uint32_t entity) {
  if (journal_ == nullptr) return;  // being read
  if (touched_.size() <= entity)
    touched_.resize(std::max(records_.size(), entity + std::size_t{1}));
  touched_[entity] = true;
  any_touched_ = true;
}

void OdTables::touch_records_of(std::uint32_t table) {
  if (journal_ == nullptr) return;  // being read
  tables_[table].touched = true;
  any_touched_ = true;
}

bool OdTables::touched(std::uint32_t entity) const {
  return (entity < touched_.size() && touched_[entity]) ||
         std::ranges::any_of(references(records_of(entity)), [this](const RecordRef& record) {
           return tables_[record.table].touched;
         });
}

std::optional<std::uint32_t> OdTables::find(std::wstring_view name) const {
  const auto place = place_of(name);
  const bool found = place != by_name_.end() && tables_[*place].name == name;
  return found ? std::optional(*place) : std::nullopt;
}

std::vector<std::uint32_t>::const_iterator OdTables::place_of(std::wstring_view name) const {
  return std::ranges::lower_bound(by_name_, name, {}, [this](std::uint32_t table) {
    return std::wstring_view(tables_[table].name);
  });
}

void OdTables::list(std::uint32_t table) { by_name_.insert(place_of(tables_[table].name), table); }

void OdTables::unlist(std::uint32_t table) { by_name_.erase(place_of(tables_[table].name)); }

std::uint32_t OdTables::add_table(const ODTableDef& definition) {
  make_room();
  OdTable table{definition.name, {}, 0, false};
  for (const ODColumnDef& column : definition.columns) {
    table.columns.push_back({column, cells_for(column.type)});
  }
  if (by_name_.capacity() <= tables_.size()) by_name_.reserve(2 * tables_.size() + 1);
  tables_.push_back(std::move(table));
  const auto index = static_cast<std::uint32_t>(tables_.size() - 1);
  list(index);
  note({OdChange::TablePresence{index}});
  return index;
}

// What stays is a stretch of the list there is, or else moves to the end.
template <class Goes>
std::uint32_t OdTables::remove_if(std::uint32_t entity, const Goes& goes) {
  const RecordSpan span = records_[entity];
  const std::uint32_t span_end = span.first + span.count;
  RecordSpan left{span_end, 0};
  std::uint32_t left_end = span_end;
  for (std::uint32_t position = span.first; position < span_end; ++position) {
    if (goes(position)) continue;
    if (left.count++ == 0) left.first = position;
    left_end = position + 1;
  }
  if (left.count == span.count) return 0;
  if (left.count > 0 && left_end - left.first != left.count) {
    const std::uint32_t former = left.first;
    left.first = static_cast<std::uint32_t>(references_.size());
    for (std::uint32_t position = former; position < left_end; ++position) {
      if (!goes(position)) references_.push_back(references_[position]);
    }
  }
  set_records(entity, left);
  return span.count - left.count;
}

void OdTables::delete_table(std::uint32_t table) {
  const auto of_table = [this, table](std::uint32_t position) {
    return references_[position].table == table;
  };
  for (std::uint32_t entity = 0; tables_[table].rows > 0 && entity < records_.size(); ++entity)
    remove_if(entity, of_table);
  note({OdChange::TablePresence{table}});
  set_deleted(table, true);
}

void OdTables::rename_table(std::uint32_t table, std::wstring name) {
  touch_records_of(table);
  make_room();
  swap_name(table, name);
  note({OdChange::TableName{table, std::move(name)}});
}

void OdTables::rename_column(std::uint32_t table, std::uint32_t column, std::wstring name) {
  make_room();
  std::swap(tables_[table].columns[column].definition.name, name);
  note({OdChange::ColumnName{table, column, std::move(name)}});
}

void OdTables::insert_column(std::uint32_t table, std::uint32_t column,
                             const ODColumnDef& definition) {
  touch_records_of(table);
  OdTable& owner = tables_[table];
  make_room();
  OdColumn inserted{definition, cells_for(definition.type)};
  const Cell initial = cell_for(view_of(definition.default_value), texts_);
  for (std::uint32_t row = 0; row < owner.rows; ++row)
    append(inserted.cells, initial);
  owner.columns.insert(owner.columns.begin() + column, std::move(inserted));
  note({OdChange::ColumnPresence{table, column, nullptr}});
}

void OdTables::remove_column(std::uint32_t table, std::uint32_t column) {
  touch_records_of(table);
  make_room();
  OdTable& owner = tables_[table];
  auto taken_out = std::make_unique<OdColumn>(std::move(owner.columns[column]));
  owner.columns.erase(owner.columns.begin() + column);
  note({OdChange::ColumnPresence{table, column, std::move(taken_out)}});
}

void OdTables::swap_name(std::uint32_t table, std::wstring& name) {
  unlist(table);
  std::swap(tables_[table].name, name);
  list(table);
}

void OdTables::set_deleted(std::uint32_t table, bool deleted) {
  tables_[table].deleted = deleted;
  if (deleted) {
    unlist(table);
  } else {
    list(table);
  }
}

ODValueView OdTables::value(RecordRef record, std::uint32_t column) const {
  struct Read {
    const TextPool& pool;
    std::uint32_t row;
    ODValueView operator()(std::monostate none) const { return none; }
    ODValueView operator()(const std::vector<std::int32_t>& cells) const { return cells[row]; }
    ODValueView operator()(const std::vector<double>& cells) const { return cells[row]; }
    ODValueView operator()(const std::vector<TextPool::Id>& cells) const {
      return pool.at(cells[row]);
    }
    ODValueView operator()(const std::vector<Point3>& cells) const { return cells[row]; }
  };
  const OdTable& table = tables_[record.table];
  if (column >= table.columns.size()) return {};
  return std::visit(Read{texts_, record.row}, table.columns[column].cells);
}

std::uint32_t OdTables::count_of(RecordSpan span, std::uint32_t table) const {
  return static_cast<std::uint32_t>(std::ranges::count(references(span), table, &RecordRef::table));
}

RecordRef OdTables::add_row(std::uint32_t table, std::span<const ODValueView> values) {
  OdTable& owner = tables_[table];
  for (std::size_t i = 0; i < owner.columns.size(); ++i) {
    resize(owner.columns[i].cells, owner.rows);  // an earlier row may have failed half-way
    append(owner.columns[i].cells, cell_for(values[i], texts_));
  }
  return {table, owner.rows++};
}

void OdTables::set_records(std::uint32_t entity, RecordSpan span) {
  touch(entity);
  if (journal_ != nullptr) journal_->add_records(entity, records_[entity]);
  records_[entity] = span;
}

void OdTables::append_record(std::uint32_t entity, RecordRef record) {
  if (entity >= records_.size()) records_.resize(entity + std::size_t{1});
  RecordSpan span = records_[entity];
  const auto end = static_cast<std::uint32_t>(references_.size());
  if (span.first + span.count != end) {  // the list moves to the end, where it can grow
    for (std::uint32_t i = 0; i < span.count; ++i) {
      references_.push_back(references_[span.first + i]);
    }
    span.first = end;
  }
  references_.push_back(record);
  ++span.count;
  set_records(entity, span);
}

void OdTables::remove_record(std::uint32_t entity, std::uint32_t index) {
  const std::uint32_t gone = records_[entity].first + index;
  remove_if(entity, [gone](std::uint32_t position) { return position == gone; });
}

std::uint32_t OdTables::remove_records(std::uint32_t entity, std::span<const char> marks) {
  const std::uint32_t first = records_[entity].first;
  return remove_if(entity, [&](std::uint32_t position) { return marks[position - first] != 0; });
}

void OdTables::set_value(std::uint32_t entity, RecordRef record, std::uint32_t column,
                         const ODValueView& value) {
  const Cell cell = cell_for(value, texts_);
  CellVector& cells = tables_[record.table].columns[column].cells;
  const Cell former = cell_at(cells, record.row);
  if (same(former, cell)) return;
  touch(entity);
  if (journal_ != nullptr) journal_->add_value(record.table, column, record.row, former);
  set_cell(cells, record.row, cell);
}

void OdTables::exchange(OdChange& change, JournalDirection direction) {
  struct Swap {
    OdTables& od;
    JournalDirection direction;
    void operator()(OdChange::Records& was) const {
      in_order(direction, was.formers.size(), [&](std::size_t i) {
        std::swap(od.records_[was.formers[i].entity], was.formers[i].span);
      });
    }
    void operator()(OdChange::Values& was) const {
      CellVector& cells = od.tables_[was.table].columns[was.column].cells;
      in_order(direction, was.rows.size(),
               [&](std::size_t i) { swap_cells(cells, was.rows[i], was.formers, i); });
    }
    void operator()(OdChange::TableName& was) const { od.swap_name(was.table, was.name); }
    void operator()(OdChange::ColumnName& was) const {
      std::swap(od.tables_[was.table].columns[was.column].definition.name, was.name);
    }
    void operator()(OdChange::ColumnPresence& was) const {
      std::vector<OdColumn>& columns = od.tables_[was.table].columns;
      const auto place = columns.begin() + was.column;
      if (was.taken_out) {
        resize(was.taken_out->cells, od.tables_[was.table].rows);
        columns.insert(place, std::move(*was.taken_out));
        was.taken_out.reset();
      } else {
        was.taken_out = std::make_unique<OdColumn>(std::move(*place));
        columns.erase(place);
      }
    }
    void operator()(OdChange::TablePresence& was) const {
      od.set_deleted(was.table, !od.tables_[was.table].deleted);
    }
  };
  std::visit(Swap{*this, direction}, change.what);
}

}  // namespace korvel
