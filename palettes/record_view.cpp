#include "palettes/record_view.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "frame/command_frame.h"
#include "palettes/sort_keys.h"
#include "search/value_pattern.h"

namespace korvel {
namespace {

// A criterion against one column of the records in work.
struct ColumnFilter {
  std::optional<std::size_t> column;  // none: the table has no such field
  ValuePattern pattern;
};

std::vector<ColumnFilter> filters_of(const RecordArrangement& arrangement,
                                     const ODTableDef& table) {
  std::vector<ColumnFilter> filters;
  for (const ValueCriterion& criterion : arrangement.filter) {
    filters.push_back(
        {table.column(criterion.field), ValuePattern(criterion.pattern, arrangement.extended)});
  }
  return filters;
}

bool passes(std::vector<ColumnFilter>& filters, const RecordIterator& record) {
  return std::ranges::all_of(filters, [&record](ColumnFilter& filter) {
    if (filter.pattern.needs_no_value()) return true;
    return filter.column && filter.pattern(record.value(static_cast<int>(*filter.column)));
  });
}

// Collects the keys of one column, if there is a column to collect.
class KeyCollector {
 public:
  KeyCollector(std::optional<std::size_t> column, const DrawingHost& host)
      : column_(column), host_(host) {}

  void add(const RecordKey& row, const RecordIterator& record) {
    if (!column_) return;
    if (*column_ == handle_column) {
      keys_.add_handle(host_.handle_of(row.entity));
    } else if (*column_ == number_column) {
      keys_.add(row.number);
    } else {
      keys_.add(record.value(static_cast<int>(*column_ - first_table_column)));
    }
  }
  [[nodiscard]] std::vector<double> take() { return keys_.take(); }

 private:
  std::optional<std::size_t> column_;
  const DrawingHost& host_;
  SortKeys keys_;
};

}  // namespace

void RecordView::read(ODStore& store, DrawingHost& host, const EntityList& entities,
                      std::wstring_view table, const RecordArrangement& arrangement) {
  std::vector<RecordKey> chosen_before;
  if (any_chosen()) chosen_before = chosen_rows();
  std::ranges::sort(chosen_before);

  table_ = store.table(table).value_or(ODTableDef{});
  rows_.clear();
  groups_.clear();
  const std::size_t columns = first_table_column + table_.columns.size();
  const auto there = [columns](std::optional<std::size_t> column) {
    return column && *column < columns ? column : std::nullopt;
  };
  KeyCollector sort_keys(there(arrangement.sort_by), host);
  KeyCollector group_keys(there(arrangement.group_by), host);
  std::vector<ColumnFilter> filters = filters_of(arrangement, table_);
  const std::unique_ptr<RecordIterator> record = store.records_of(table);
  ReadWalk walk(host, entities.size());
  for (const EntityId entity : entities) {
    walk.step();
    std::int32_t number = 0;
    for (record->open(entity, OpenMode::Read); !record->done(); record->next()) {
      ++number;
      if (!passes(filters, *record)) continue;
      rows_.push_back({entity, number});
      sort_keys.add(rows_.back(), *record);
      group_keys.add(rows_.back(), *record);
    }
  }
  sort_rows(arrangement, sort_keys.take(), group_keys.take());
  chosen_.assign(rows_.size(), 0);
  if (!chosen_before.empty()) {
    for (std::size_t row = 0; row < rows_.size(); ++row)
      choose(row, std::ranges::binary_search(chosen_before, rows_[row]));
  }
}

void RecordView::sort_rows(const RecordArrangement& arrangement,
                           const std::vector<double>& sort_keys,
                           const std::vector<double>& group_keys) {
  std::vector<std::size_t> order(rows_.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  if (!sort_keys.empty()) {
    const bool descending = arrangement.descending;
    std::ranges::stable_sort(order, [&sort_keys, descending](std::size_t a, std::size_t b) {
      return descending ? sort_keys[b] < sort_keys[a] : sort_keys[a] < sort_keys[b];
    });
  }
  if (!group_keys.empty()) {
    std::ranges::stable_sort(order, {}, [&group_keys](std::size_t row) { return group_keys[row]; });
  }
  std::vector<RecordKey> sorted(rows_.size());
  for (std::size_t place = 0; place < order.size(); ++place) {
    sorted[place] = rows_[order[place]];
    if (group_keys.empty()) continue;
    const bool begins = place == 0 || group_keys[order[place]] != group_keys[order[place - 1]];
    if (begins) groups_.push_back({place, 0, all_folded_});
    ++groups_.back().row_count;
  }
  rows_ = std::move(sorted);
  number_lines();
}

void RecordView::number_lines() {
  group_lines_.clear();
  std::size_t line = 0;
  for (const Group& group : groups_) {
    group_lines_.push_back(line);
    line += 1 + (group.folded ? 0 : group.row_count);
  }
  group_lines_.push_back(line);
}

std::size_t RecordView::line_count() const {
  return is_grouped() ? group_lines_.back() : rows_.size();
}

std::size_t RecordView::group_of_line(std::size_t index) const {
  const auto behind = std::ranges::upper_bound(group_lines_, index);
  return static_cast<std::size_t>(behind - group_lines_.begin()) - 1;
}

RecordView::Line RecordView::line(std::size_t index) const {
  if (!is_grouped()) return {false, index};
  const std::size_t number = group_of_line(index);
  const Group& group = groups_[number];
  if (index == group_lines_[number]) return {true, group.first_row, group.row_count};
  return {false, group.first_row + index - group_lines_[number] - 1};
}

std::size_t RecordView::line_of_row(std::size_t row) const {
  if (!is_grouped()) return row;
  const auto behind = std::ranges::upper_bound(groups_, row, {}, &Group::first_row);
  const auto number = static_cast<std::size_t>(behind - groups_.begin()) - 1;
  const Group& group = groups_[number];
  return group_lines_[number] + (group.folded ? 0 : 1 + row - group.first_row);
}

void RecordView::choose_entities(EntityList entities) {
  std::ranges::sort(entities);
  for (std::size_t row = 0; row < rows_.size(); ++row)
    choose(row, std::ranges::binary_search(entities, rows_[row].entity));
}

bool RecordView::any_chosen() const { return std::ranges::find(chosen_, 1) != chosen_.end(); }

std::size_t RecordView::chosen_count() const {
  return static_cast<std::size_t>(std::ranges::count(chosen_, 1));
}

std::vector<RecordKey> RecordView::chosen_rows() const {
  if (!any_chosen()) return rows_;
  std::vector<RecordKey> chosen;
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    if (is_chosen(row)) chosen.push_back(rows_[row]);
  }
  return chosen;
}

void RecordView::toggle_group(std::size_t line_index) {
  if (!is_grouped() || !line(line_index).is_group) return;
  Group& group = groups_[group_of_line(line_index)];
  group.folded = !group.folded;
  number_lines();
}

void RecordView::fold_all(bool folded) {
  all_folded_ = folded;
  for (Group& group : groups_)
    group.folded = folded;
  number_lines();
}

EntityList entities_of(const std::vector<RecordKey>& rows) {
  EntityList entities;
  entities.reserve(rows.size());
  for (const RecordKey& row : rows)
    entities.push_back(row.entity);
  drop_repeated(entities);
  return entities;
}

}  // namespace korvel
