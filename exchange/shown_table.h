// The table of which rows were shown, as it is now.
#pragma once

#include <optional>
#include <string_view>

#include "exchange/record_rows.h"
#include "frame/drawing_host.h"
#include "frame/od_table.h"

namespace korvel {

struct Session;

// None, after a message, when the table is gone or has fewer columns than were shown.
[[nodiscard]] std::optional<ODTableDef> shown_table(Session& session, const RecordRows& rows);

// Says that there is no such table; the name is empty where a drawing has none to choose.
void report_missing_table(DrawingHost& host, std::wstring_view table);

}  // namespace korvel
