// The first row of a table of text: which cells are which.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "exchange/csv_text.h"
#include "exchange/findings.h"
#include "frame/od_table.h"

namespace korvel {

class CsvHeader {
 public:
  // Takes the next row for the header. Why it is none, as words_for has it; none: it is one.
  [[nodiscard]] std::optional<std::wstring> read(CsvReader& reader, const ODTableDef& table,
                                                 Findings& ignored_columns);

  // Indexes of the cells with the entity's handle and the record's number.
  [[nodiscard]] std::size_t handle() const { return *handle_; }
  [[nodiscard]] std::size_t record() const { return *record_; }

  // For each cell the table's column, if it is one.
  [[nodiscard]] const std::vector<std::optional<std::size_t>>& columns() const { return columns_; }

 private:
  std::optional<std::size_t> handle_;
  std::optional<std::size_t> record_;
  std::vector<std::optional<std::size_t>> columns_;
};

// What is damaged: a sentence without the file's name and a full stop.
[[nodiscard]] std::wstring words_for(const CsvError& error);

}  // namespace korvel
