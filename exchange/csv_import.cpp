// Carrying out what a table of text changes, and the menu's import.
#include "exchange/csv_cell.h"
#include "exchange/csv_options.h"
#include "exchange/csv_plan.h"
#include "exchange/shown_table.h"
#include "exchange/table_exchange.h"
#include "frame/command_frame.h"
#include "frame/session.h"
#include "frame/text_file.h"

namespace korvel {
namespace {

constexpr std::size_t most_csv_bytes = std::size_t{2} << 30;

// Calls write(column, value) for each cell of the row until one call returns false.
template <class Write>
bool write_cells(const ODTableDef& table, const CsvPlan& plan, const CsvRow& row,
                 CellReader& reader, const Write& write) {
  for (std::size_t i = row.first_cell; i < row.first_cell + row.cells; ++i) {
    const CsvCell& cell = plan.cells[i];
    const std::optional<ODValueView> value =
        reader.value(cell.text, table.columns[cell.column].type);
    if (!value || !write(cell.column, *value)) return false;
  }
  return true;
}

// What is not locked cannot be asked whether it opens for writing.
CsvPlan plan_import(Session& session, const ODTableDef& table, std::string& utf8,
                    const CsvFormat& format) {
  const DocumentLock lock(session.host);
  return plan_csv(session.store, session.host, table, utf8, format);
}

// What the person says to the plan; nothing to change needs no answer.
bool is_wanted(DrawingHost& host, const CsvPlan& plan) {
  host.show_text(L"CSV import", preview_text(plan), 700, 500);
  if (plan.changes.empty() && plan.additions.empty()) return false;
  return host.ask_yes_no(
      L"CSV import",
      format_text(L"Change %i records and add %i?", plan.changes.size(), plan.additions.size()),
      BoxIcon::Question);
}

// The number of records that were written.
std::size_t change_records(ODStore& store, const ODTableDef& table, const CsvPlan& plan,
                           WriteWalk& walk) {
  const std::unique_ptr<RecordIterator> record = store.records_of(table.name);
  CellReader reader(plan.decimal_sign);
  std::size_t written = 0;
  RecordKey here;
  for (const CsvRow& row : plan.changes) {
    if (!walk.step()) break;
    if (row.key.entity != here.entity) {
      record->open(row.key.entity, OpenMode::Write);
      here = {row.key.entity, 1};
    }
    for (; here.number < row.key.number && !record->done(); ++here.number)
      record->next();
    if (record->done()) continue;
    const bool all = write_cells(table, plan, row, reader,
                                 [&record](std::uint32_t column, const ODValueView& value) {
                                   return record->set_value(static_cast<int>(column), value);
                                 });
    if (all) ++written;
  }
  return written;
}

// The number of records that were attached.
std::size_t add_records(ODStore& store, const ODTableDef& table, const CsvPlan& plan,
                        WriteWalk& walk) {
  CellReader reader(plan.decimal_sign);
  std::size_t written = 0;
  const ODRecord defaults = default_record(table);
  ODRecord added;
  for (const CsvRow& row : plan.additions) {
    if (!walk.step()) break;
    added = defaults;
    const bool all = write_cells(table, plan, row, reader,
                                 [&added](std::uint32_t column, const ODValueView& value) {
                                   added.values[column] = copy_of(value);
                                   return true;
                                 });
    if (all && store.attach(row.key.entity, added)) ++written;
  }
  return written;
}

}  // namespace

std::size_t apply_csv(ODStore& store, ProgressMeter& meter, const ODTableDef& table,
                      const CsvPlan& plan) {
  WriteWalk walk(meter, plan.changes.size() + plan.additions.size());
  const std::size_t changed = change_records(store, table, plan, walk);
  return changed + add_records(store, table, plan, walk);
}

void import_csv(Session& session, std::wstring_view table_name) {
  DrawingHost& host = session.host;
  const std::optional<ODTableDef> table = session.store.table(table_name);
  if (!table) return report_missing_table(host, table_name);
  const std::optional<CsvFormat> format = ask_csv_format(host, L"CSV import", session.choices.csv);
  if (!format) return;
  const auto file = host.choose_file_to_open(csv_file_question(format->separator));
  if (!file) return;
  std::string utf8;
  if (const auto error = read_utf8_file(*file, most_csv_bytes, TextEncoding::Ansi, utf8)) {
    host.print_error(format_text(L"Error: %s\n", error->message));
    return host.report_failed_file({*file, FileDirection::Read, error->reason, true});
  }

  const CsvPlan plan = plan_import(session, *table, utf8, *format);
  if (plan.damage) {
    host.print_error(format_text(L"Error: '%s', %s.\n", path_text(*file), *plan.damage));
    return host.report_failed_file({*file, FileDirection::Read, *plan.damage, true});
  }
  std::size_t written = 0;
  if (is_wanted(host, plan)) {
    const DocumentLock lock(host);
    written = apply_csv(session.store, host, *table, plan);
  }
  report<Message::CompletedOutOf>(host, written, plan.rows);
}

}  // namespace korvel
