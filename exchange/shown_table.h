// The table of which rows were shown, as it is now.
#pragma once

#include <optional>

#include "exchange/record_rows.h"
#include "frame/od_table.h"

namespace korvel {

struct Session;

// None, after a message, when the table is gone or has fewer columns than were shown.
[[nodiscard]] std::optional<ODTableDef> shown_table(Session& session, const RecordRows& rows);

}  // namespace korvel
