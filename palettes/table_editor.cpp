#include "palettes/table_editor.h"

#include <algorithm>
#include <utility>

#include "exchange/table_exchange.h"
#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/format.h"
#include "frame/plugin.h"
#include "frame/value_text.h"
#include "palettes/chosen_rows.h"
#include "palettes/columns_dialog.h"

namespace korvel {
namespace {

constexpr std::wstring_view editor_name = L"KORVEL_TABLE";
constexpr PaletteSetTraits traits = {editor_name, L"{5B0E4C7A-2D61-4F0B-9A35-6C1D8E7F2B94}", 600,
                                     300};

// The record that the row names, opened in this mode; done when there is none any more.
std::unique_ptr<RecordIterator> open_record(ODStore& store, const std::wstring& table,
                                            const RecordKey& row, OpenMode mode) {
  std::unique_ptr<RecordIterator> record = store.records_of(table);
  record->open(row.entity, mode);
  for (std::int32_t number = 1; number < row.number && !record->done(); ++number)
    record->next();
  return record;
}

std::wstring what_it_takes(const ODColumnDef& column) {
  switch (column.type) {
    case ODType::Integer:
      return format_text(L"%s takes a whole number from -2147483648 to 2147483647.", column.name);
    case ODType::Real:
      return format_text(L"%s takes a number.", column.name);
    case ODType::Point:
      return format_text(L"%s takes three numbers with commas between them: x,y,z.", column.name);
    default:
      return format_text(L"%s takes no value.", column.name);
  }
}

// The choice between no column and each of them; what was chosen stays if there is such a column.
void fill(DropDown& list, const std::vector<std::wstring>& headings) {
  const std::wstring before = list.text();
  list.items = {L""};
  list.items.insert(list.items.end(), headings.begin(), headings.end());
  list.select(before);
  if (!list.selected) list.selected = 0;
}

std::vector<std::wstring> headings_of(const ODTableDef& table) {
  std::vector<std::wstring> headings = {L"Handle", L"Record"};
  for (const ODColumnDef& column : table.columns)
    headings.push_back(column.name);
  return headings;
}

std::optional<std::size_t> chosen_column(const DropDown& list) {
  return list.selected.value_or(0) == 0 ? std::nullopt : std::optional(*list.selected - 1);
}

}  // namespace

TableEditor::TableEditor() : Palette(std::wstring(editor_name)) {
  add(&table);
  add(&synchronize);
  add(&filter);
  add(&extended);
  add(&sort_by);
  add(&descending);
  add(&group_by);
  add(&count);
  add(&records);
  add_item(L"", L"Refresh", &TableEditor::refresh);
  add_item(L"File", L"Export to CSV", &TableEditor::write_csv);
  add_item(L"File", L"Import from CSV", &TableEditor::read_csv);
  add_item(L"File", L"Export to MIF/MID", &TableEditor::write_mif);
  add_item(L"Edit", L"Undo", &TableEditor::undo);
  add_item(L"Edit", L"Redo", &TableEditor::redo);
  add_item(L"Edit", L"Find Values", &TableEditor::find_values);
  add_command(L"Set from XYZ", command_named(L"KORVEL_SETXYZ"));
  add_command(L"Set from geometric properties", command_named(L"KORVEL_SETPROP"));
  add_command(L"Set from text", command_named(L"KORVEL_SETTEXT"));
  add_command(L"Create IDs", command_named(L"KORVEL_SETID"));
  add_command(L"Replace", command_named(L"KORVEL_REPLACE"));
  add_command(L"Add from field in field", command_named(L"KORVEL_ADDVAL"));
  add_item(L"View", L"Show Selection", &TableEditor::show_selection);
  add_item(L"View", L"Columns", &TableEditor::edit_columns);
  add_item(L"View", L"Disable grouping", &TableEditor::disable_grouping);
  add_item(L"View", L"Expand all groups", &TableEditor::unfold_groups);
  add_item(L"View", L"Collapse all groups", &TableEditor::fold_groups);
}

void TableEditor::add_item(std::wstring_view menu, std::wstring_view label, Action action) {
  add({std::wstring(label), ButtonRole::Act, std::wstring(menu)});
  items_.push_back({std::wstring(label), action, nullptr});
}

void TableEditor::add_command(std::wstring_view label, const Command& command) {
  add({std::wstring(label), ButtonRole::Act, L"Edit"});
  items_.push_back({std::wstring(label), nullptr, command.handler});
}

// Interrupted, an item ends as after Esc in its first dialog, and the palette stays.
void TableEditor::act(const Button& button) try {
  const auto item = std::ranges::find(items_, button.label, &MenuItem::label);
  if (item->handler != nullptr) {
    run_on_rows(item->handler);
  } else {
    (this->*item->action)();
  }
} catch (const Interrupted&) {
}

// --- What is shown ------------------------------------------------------------------------------

void TableEditor::shown() {
  take_tables();
  refresh();
  follow_selection();
}

void TableEditor::drawing_closes() {
  table.items.clear();
  table.selected.reset();
  show_no_rows();
}

void TableEditor::show_no_rows() {
  view_ = {};
  profile_.clear();
  records.top = 0;
  count_rows();
}

void TableEditor::changed(const Control& control) {
  if (&control == &records) {
    lead_selection();
    count_rows();
    return;
  }
  if (&control == &synchronize) {
    begin_synchronizing();
    return;
  }
  if (&control == &table) filter.rows.clear();
  records.top = 0;
  refresh();
}

void TableEditor::take_tables() {
  const std::wstring before = table.text();
  table.items = user_tables(session().store);
  table.select(before);
  if (!table.selected && !table.items.empty()) table.selected = 0;
}

void TableEditor::take_columns() {
  const ODTableDef definition = session().store.table(table.text()).value_or(ODTableDef{});
  const std::vector<std::wstring> names = headings_of(definition);
  fill(sort_by, names);
  fill(group_by, names);
  profile_ = load_profile(session().host, grid_name(), names);
}

// Interrupted, it shows no rows: those from before would pass for what the controls ask for.
void TableEditor::refresh() try {
  take_columns();
  RecordArrangement arrangement;
  for (const std::vector<std::wstring>& cells : filter.rows)
    arrangement.filter.push_back({cells[0], cells[1]});
  arrangement.extended = extended.on;
  arrangement.sort_by = chosen_column(sort_by);
  arrangement.descending = descending.on;
  arrangement.group_by = chosen_column(group_by);
  view_.read(session().store, session().host, model_space_entities(session().host), table.text(),
             arrangement);
  if (records.top >= line_count()) records.top = 0;
  count_rows();
} catch (const Interrupted&) {
  show_no_rows();
  count.text += L" (interrupted)";
}

void TableEditor::count_rows() {
  const std::size_t rows = view_.rows().size();
  count.text = std::to_wstring(rows);
  if (view_.any_chosen()) count.text += format_text(L" (%i chosen)", view_.chosen_count());
  for (const std::vector<std::wstring>& cells : filter.rows) {
    if (view_.table().column(cells[0])) continue;
    count.text += format_text(L"; the filter asks for %s, which is no field here", cells[0]);
  }
}

std::vector<std::wstring> TableEditor::headings() const { return headings_of(view_.table()); }

std::wstring TableEditor::grid_name() const {
  return std::wstring(editor_name) + L'/' + table.text();
}

std::vector<std::size_t> TableEditor::shown_columns() const {
  std::vector<std::size_t> shown;
  for (const ProfiledColumn& column : profile_) {
    if (column.width > 0) shown.push_back(column.column);
  }
  return shown;
}

void TableEditor::edit_columns() {
  GridColumns dialog(headings(), profile_);
  if (!session().host.show(dialog)) return;
  profile_ = dialog.profile();
  save_profile(session().host, grid_name(), headings(), profile_);
}

// --- Lines --------------------------------------------------------------------------------------

std::vector<GridLines::Column> TableEditor::columns() const {
  const std::vector<std::wstring> names = headings();
  std::vector<Column> shown;
  for (const ProfiledColumn& column : profile_) {
    if (column.width == 0) continue;
    shown.push_back({names[column.column], column.column >= first_table_column, column.width});
  }
  return shown;
}

std::size_t TableEditor::line_count() const { return view_.line_count(); }

GridLines::Line TableEditor::line(std::size_t index) const {
  const RecordView::Line line = view_.line(index);
  const RecordKey& row = view_.rows()[line.first_row];
  if (!line.is_group)
    return {row_texts(row, shown_columns()), false, view_.is_chosen(line.first_row)};
  bool chosen = true;
  for (std::size_t member = 0; member < line.row_count && chosen; ++member)
    chosen = view_.is_chosen(line.first_row + member);
  const std::size_t column = chosen_column(group_by).value_or(handle_column);
  return {{format_text(L"%s: %s (%i)", headings()[column], row_texts(row, {column}).front(),
                       line.row_count)},
          true,
          chosen};
}

std::wstring TableEditor::cell_text(const RecordKey& row, const RecordIterator& record,
                                    std::size_t column) const {
  if (column == handle_column) return session().host.handle_of(row.entity);
  if (column == number_column) return std::to_wstring(row.number);
  if (record.done()) return {};
  return value_text(record.value(static_cast<int>(column - first_table_column)));
}

std::vector<std::wstring> TableEditor::row_texts(const RecordKey& row,
                                                 const std::vector<std::size_t>& columns) const {
  const auto record = open_record(session().store, view_.table().name, row, OpenMode::Read);
  std::vector<std::wstring> texts;
  texts.reserve(columns.size());
  for (const std::size_t column : columns)
    texts.push_back(cell_text(row, *record, column));
  return texts;
}

void TableEditor::choose(std::size_t index, bool on) {
  const RecordView::Line line = view_.line(index);
  for (std::size_t member = 0; member < line.row_count; ++member)
    view_.choose(line.first_row + member, on);
}

void TableEditor::activate(std::size_t index) { view_.toggle_group(index); }

std::optional<std::wstring> TableEditor::set_cell(std::size_t index, std::size_t column,
                                                  std::wstring_view text) {
  const RecordView::Line line = view_.line(index);
  if (line.is_group) return L"This line is a group.";
  const std::size_t in_table = shown_columns()[column] - first_table_column;
  const ODColumnDef& definition = view_.table().columns[in_table];
  const std::optional<ODValue> value = whole_value(text, definition.type);
  if (!value) return what_it_takes(definition);

  const DocumentLock lock(session().host);
  const auto record = open_record(session().store, view_.table().name, view_.rows()[line.first_row],
                                  OpenMode::Write);
  const bool written =
      !record->done() && record->set_value(static_cast<int>(in_table), view_of(*value));
  if (written) return std::nullopt;
  return L"The record cannot be written: its entity is on a locked layer, or it is gone.";
}

// --- Selection ----------------------------------------------------------------------------------

// Where nothing is selected yet, the rows that are chosen lead.
void TableEditor::begin_synchronizing() {
  if (pick_first_entities(session().host).empty()) {
    lead_selection();
  } else {
    follow_selection();
  }
}

void TableEditor::follow_selection() {
  if (!synchronize.on) return;
  const EntityList selected = pick_first_entities(session().host);
  view_.choose_entities(selected);
  count_rows();
  for (std::size_t row = 0; row < view_.rows().size(); ++row) {
    if (!view_.is_chosen(row)) continue;
    records.top = view_.line_of_row(row);
    return;
  }
}

void TableEditor::lead_selection() {
  if (!synchronize.on) return;
  leave_selected(session().host,
                 view_.any_chosen() ? entities_of(view_.chosen_rows()) : EntityList{});
}

RecordRows TableEditor::chosen_rows() const {
  RecordRows chosen{view_.table().name, {}, {}};
  if (!synchronize.on || view_.any_chosen()) chosen.rows = view_.chosen_rows();
  for (const std::size_t column : shown_columns()) {
    if (column >= first_table_column) chosen.columns.push_back(column - first_table_column);
  }
  return chosen;
}

// --- Menus --------------------------------------------------------------------------------------

void TableEditor::write_csv() { export_rows(export_csv); }

void TableEditor::read_csv() {
  import_csv(session(), table.text());
  refresh();
}

void TableEditor::write_mif() { export_rows(export_mif); }

void TableEditor::export_rows(void (*write)(Session&, const RecordRows&)) {
  const RecordRows rows = chosen_rows();
  // Synchronized with a selection that has no records here, there is nothing to write.
  const bool none_selected = rows.rows.empty() && !view_.rows().empty();
  if (none_selected) return report<Message::NoObjectsSelected>(session().host);
  write(session(), rows);
}

void TableEditor::disable_grouping() {
  group_by.selected = 0;
  refresh();
}

void TableEditor::fold_groups() { view_.fold_all(true); }

void TableEditor::unfold_groups() { view_.fold_all(false); }

void TableEditor::undo() { session().host.send(L"_UNDO\n"); }

void TableEditor::redo() { session().host.send(L"_MREDO\n"); }

void TableEditor::find_values() {
  session().host.send(std::wstring(command_named(L"KORVEL_HAS_SPECIFIC_VALUES").name) + L'\n');
}

void TableEditor::show_selection() {
  DrawingHost& host = session().host;
  if (view_.any_chosen()) leave_selected(host, entities_of(view_.chosen_rows()));
  // The commands would ask for a selection and take each other for the answer.
  if (pick_first_entities(host).empty()) return report<Message::NoObjectsSelected>(host);
  host.send(L"_.zoom _o\n");
  host.send(L"_.select _p\n\n");
}

void TableEditor::run_on_rows(CommandHandler handler) {
  const RecordRows rows = chosen_rows();
  if (rows.rows.empty()) {
    report<Message::NoObjectsSelected>(session().host);
    return;
  }
  ChosenRowsStore store(session().store, rows.table, rows.rows);
  ChosenRowsHost host(session().host, entities_of(rows.rows));
  Session narrowed{store, host, session().choices, session().palettes};
  run_handler(handler, narrowed);
  refresh();
}

// --- The command --------------------------------------------------------------------------------

TableEditorSet::TableEditorSet(DrawingHost& host) : set_(host.make_palette_set(traits, editor_)) {}

void show_table_editor(Session& session) {
  std::unique_ptr<PaletteSet>& set = session.palettes.table_editor;
  if (!set) set = std::make_unique<TableEditorSet>(session.host);
  set->show(session);
}

}  // namespace korvel
