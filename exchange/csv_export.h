// Records of a table as text in UTF-8.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "exchange/csv_text.h"
#include "exchange/findings.h"
#include "exchange/record_rows.h"
#include "exchange/spreadsheet_risk.h"
#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

struct CsvExport {
  std::string bytes;     // with a byte-order mark
  std::size_t rows = 0;  // written; a record that is gone is left out
  // Cells that a spreadsheet program would alter, texts and reals by their risk.
  Findings handles;
  std::array<Findings, spreadsheet_risks> texts;
  std::array<Findings, spreadsheet_risks> reals;
};

// One line for the names of the columns and one for each row: the entity's handle, the record's
// number, the values of the columns. The table must be there, and the columns its own.
[[nodiscard]] CsvExport write_csv(ODStore& store, DrawingHost& host, const ODTableDef& table,
                                  const RecordRows& rows, const CsvFormat& format);

}  // namespace korvel
