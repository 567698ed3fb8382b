// What the menu of a table calls to bring its records into files and back. Each asks, does and
// tells.
#pragma once

#include <string_view>

#include "exchange/record_rows.h"

namespace korvel {

struct Session;

// The rows as text that spreadsheet programs read.
void export_csv(Session& session, const RecordRows& rows);

// Values for the records of the table, and new records, from such a text.
void import_csv(Session& session, std::wstring_view table);

// The rows and the shapes of their entities as a MIF file and its MID file.
void export_mif(Session& session, const RecordRows& rows);

}  // namespace korvel
