// The records of one table as lines of a grid: filtered, sorted, grouped, some of them chosen.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "exchange/record_rows.h"
#include "frame/drawing_host.h"
#include "frame/od_store.h"
#include "search/value_search.h"

namespace korvel {

// The columns of a record view: the entity's handle, the record's number, then those of the table.
inline constexpr std::size_t handle_column = 0;
inline constexpr std::size_t number_column = 1;
inline constexpr std::size_t first_table_column = 2;

struct RecordArrangement {
  // A record is shown when each pattern is met by its own value in that field.
  std::vector<ValueCriterion> filter;
  bool extended = false;
  std::optional<std::size_t> sort_by;  // a column; none: as they lie in the drawing
  bool descending = false;
  std::optional<std::size_t> group_by;  // a column; groups come in the order of its values
};

class RecordView {
 public:
  // Reads the records of the entities anew. What was chosen stays chosen as long as it is there;
  // without the table there are no lines. Throws Interrupted; only reading anew helps then.
  void read(ODStore& store, DrawingHost& host, const EntityList& entities, std::wstring_view table,
            const RecordArrangement& arrangement);

  [[nodiscard]] const ODTableDef& table() const { return table_; }
  [[nodiscard]] bool is_grouped() const { return !groups_.empty(); }

  [[nodiscard]] std::size_t line_count() const;
  // A group's line has the range of its rows, any other line its row alone.
  struct Line {
    bool is_group = false;
    std::size_t first_row = 0;
    std::size_t row_count = 1;
  };
  [[nodiscard]] Line line(std::size_t index) const;
  // Of the line that shows the row, or of its folded group.
  [[nodiscard]] std::size_t line_of_row(std::size_t row) const;

  // Rows in the order shown, those of folded groups included.
  [[nodiscard]] const std::vector<RecordKey>& rows() const { return rows_; }

  [[nodiscard]] bool is_chosen(std::size_t row) const { return chosen_[row] != 0; }
  void choose(std::size_t row, bool on) { chosen_[row] = on ? 1 : 0; }
  // The rows of these entities and no others.
  void choose_entities(EntityList entities);
  // The chosen rows in the order shown; all that are shown when none is chosen.
  [[nodiscard]] std::vector<RecordKey> chosen_rows() const;
  [[nodiscard]] bool any_chosen() const;
  [[nodiscard]] std::size_t chosen_count() const;

  void toggle_group(std::size_t line_index);
  void fold_all(bool folded);

 private:
  struct Group {
    std::size_t first_row = 0;
    std::size_t row_count = 0;
    bool folded = false;
  };
  void sort_rows(const RecordArrangement& arrangement, const std::vector<double>& sort_keys,
                 const std::vector<double>& group_keys);
  void number_lines();
  [[nodiscard]] std::size_t group_of_line(std::size_t index) const;

  ODTableDef table_;
  std::vector<RecordKey> rows_;
  std::vector<char> chosen_;              // by row
  std::vector<Group> groups_;             // none when the rows are not grouped
  std::vector<std::size_t> group_lines_;  // the line of each group, and the count of lines
  bool all_folded_ = false;
};

// The distinct entities of the rows, in the order in which they first come.
[[nodiscard]] EntityList entities_of(const std::vector<RecordKey>& rows);

}  // namespace korvel
