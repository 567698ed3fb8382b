// Records of a table and the shapes of their entities as a MIF file and its MID file.
#pragma once

#include <cstddef>
#include <string>

#include "exchange/findings.h"
#include "exchange/mif_columns.h"
#include "exchange/record_rows.h"
#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

struct MifExport {
  std::string mif;
  std::string mid;
  std::size_t rows = 0;  // written; a record that is gone is left out
  Findings cut_texts;
  Findings broken_lines;  // texts whose line breaks became blanks
};

// One object and one line of values for each row. The layout must be that of these rows.
[[nodiscard]] MifExport write_mif(ODStore& store, DrawingHost& host, const RecordRows& rows,
                                  const MifLayout& layout);

}  // namespace korvel
