#include "exchange/explication_groups.h"

#include <algorithm>
#include <memory>
#include <numeric>

#include "exchange/table_finder.h"
#include "frame/value_text.h"
#include "frame/walk.h"

namespace korvel {

ExplicationGroups::ExplicationGroups(ODStore& store, const EntityList& entities,
                                     const ExplicationColumns& columns, bool by_type_field,
                                     ProgressMeter& meter)
    : tables_(columns.tables) {
  if (!by_type_field) {  // a table's group has its index for a number
    for (const ExplainedTable& table : tables_)
      (void)group_of(table.name);
  }
  std::vector<Number> groups;  // by record
  TableFinder<ExplainedTable> finder(tables_);
  const std::unique_ptr<RecordIterator> record = store.records();
  ReadWalk walk(meter, entities.size());
  for (std::uint32_t entity = 0; entity < entities.size(); ++entity) {
    walk.step();
    record->open(entities[entity], OpenMode::Read);
    for (std::int32_t number = 1; !record->done(); record->next(), ++number) {
      const std::optional<std::size_t> found = finder.find(record->table_name());
      if (!found) continue;
      const auto table = static_cast<std::uint32_t>(*found);
      const Number group = by_type_field ? group_of(table, *record) : table;
      records_.push_back({entity, number, table});
      groups.push_back(group);
      ++counts_[group];
    }
  }
  sort(groups);
}

ExplicationGroups::Number ExplicationGroups::group_of(std::uint32_t table,
                                                      const RecordIterator& record) {
  const int type_field = tables_[table].type_field;
  key_.clear();
  if (type_field != no_column) append_value_text(record.value(type_field), key_);
  return group_of(key_);
}

ExplicationGroups::Number ExplicationGroups::group_of(std::wstring_view key) {
  const auto known = numbers_.find(key);
  if (known != numbers_.end()) return known->second;
  const auto number = static_cast<Number>(keys_.size());
  keys_.push_back(numbers_.emplace(key, number).first->first);
  counts_.push_back(0);
  return number;
}

// Brings the records of each group together, keeping their order.
void ExplicationGroups::sort(const std::vector<Number>& groups) {
  if (keys_.size() < 2) return;
  std::vector<std::size_t> places(counts_.size());
  std::exclusive_scan(counts_.begin(), counts_.end(), places.begin(), std::size_t{0});
  std::vector<ExplainedRecord> sorted(records_.size());
  for (std::size_t i = 0; i < records_.size(); ++i)
    sorted[places[groups[i]]++] = records_[i];
  records_ = std::move(sorted);
}

std::vector<ExplicationGroup> ExplicationGroups::in_order() const {
  std::vector<ExplicationGroup> groups;
  std::span<const ExplainedRecord> rest = records_;
  for (std::size_t number = 0; number < keys_.size(); ++number) {
    if (counts_[number] == 0) continue;
    groups.push_back({keys_[number], rest.first(counts_[number])});
    rest = rest.subspan(counts_[number]);
  }
  std::ranges::sort(groups, {}, &ExplicationGroup::key);
  return groups;
}

}  // namespace korvel
