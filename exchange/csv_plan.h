// What a table of text would change in the drawing, found out before anything is changed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/csv_text.h"
#include "exchange/findings.h"
#include "exchange/record_rows.h"
#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

struct CsvCell {
  std::uint32_t column;
  std::string_view text;
};

// The cells of a row that are to be written: plan.cells from `first_cell`, `cells` of them.
struct CsvRow {
  RecordKey key;
  std::size_t first_cell;
  std::uint32_t cells;
};

struct CsvPlan {
  // Why nothing can be done: a sentence without the file's name and a line end.
  std::optional<std::wstring> damage;

  char decimal_sign = '.';        // of the cells
  std::vector<CsvRow> changes;    // in the order of their keys
  std::vector<CsvRow> additions;  // of new records, numbers of which follow those there are
  std::vector<CsvCell> cells;

  std::size_t rows = 0;
  std::size_t unchanged = 0;
  static constexpr std::size_t most_examples = 20;
  Findings ignored_columns{most_examples};
  Findings changed{most_examples};
  Findings added{most_examples};
  Findings unknown_handles{most_examples};
  Findings missing_records{most_examples};
  Findings duplicates{most_examples};
  Findings locked{most_examples};
  Findings refused{most_examples};  // cells that do not say one value of the column's type
};

// Compares the text with the table, which must be there. The first row names the columns: "Handle"
// and "Record", and any of the table's. A record number one above those the entity has, or none,
// is a new record. Entities that are not of model space are unknown. The text is altered and must
// outlive the plan. Throws Interrupted.
[[nodiscard]] CsvPlan plan_csv(ODStore& store, DrawingHost& host, const ODTableDef& table,
                               std::string& utf8, const CsvFormat& format);

// Carries the plan out. The number of rows written; a row of which a value is refused is none. The
// document is to be locked.
std::size_t apply_csv(ODStore& store, ProgressMeter& meter, const ODTableDef& table,
                      const CsvPlan& plan);

// The plan for a person: counts, and of each kind the first rows with their lines.
[[nodiscard]] std::wstring preview_text(const CsvPlan& plan);

}  // namespace korvel
