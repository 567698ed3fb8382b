// Looking up the table of rows that were shown.
#include "exchange/shown_table.h"

#include <algorithm>

#include "frame/command_frame.h"
#include "frame/session.h"

namespace korvel {

void report_missing_table(DrawingHost& host, std::wstring_view table) {
  if (table.empty()) return report<Message::TableNotFound>(host);
  report<Message::NamedTableNotFound>(host, table);
}

std::optional<ODTableDef> shown_table(Session& session, const RecordRows& rows) {
  std::optional<ODTableDef> table = session.store.table(rows.table);
  if (!table) {
    report_missing_table(session.host, rows.table);
    return std::nullopt;
  }
  const bool has_columns = std::ranges::all_of(
      rows.columns, [&](std::size_t column) { return column < table->columns.size(); });
  if (!has_columns) {
    report<Message::ColumnNotFound>(session.host);
    return std::nullopt;
  }
  return table;
}

}  // namespace korvel
