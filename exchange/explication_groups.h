// The records of an explication, sorted into its groups.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "exchange/explication_columns.h"
#include "frame/od_store.h"

namespace korvel {

// Where a record is found again.
struct ExplainedRecord {
  std::uint32_t entity;  // index in the list of entities
  std::int32_t number;   // among all records of the entity, from 1
  std::uint32_t table;   // index in ExplicationColumns::tables
};

struct ExplicationGroup {
  std::wstring_view key;
  std::span<const ExplainedRecord> records;  // entity by entity, in the order of their records
};

// With a type field the key of a record is the text of that field, empty if its table has none;
// without one it is the name of its table. Throws Interrupted.
class ExplicationGroups {
 public:
  ExplicationGroups(ODStore& store, const EntityList& entities, const ExplicationColumns& columns,
                    bool by_type_field, ProgressMeter& meter);

  // In ordinal order of their keys. What they hold lives as long as this.
  [[nodiscard]] std::vector<ExplicationGroup> in_order() const;
  [[nodiscard]] std::size_t record_count() const { return records_.size(); }

 private:
  using Number = std::uint32_t;  // of a group, as they were met
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::wstring_view key) const {
      return std::hash<std::wstring_view>{}(key);
    }
  };

  [[nodiscard]] Number group_of(std::uint32_t table, const RecordIterator& record);
  [[nodiscard]] Number group_of(std::wstring_view key);
  void sort(const std::vector<Number>& groups);

  const std::vector<ExplainedTable>& tables_;
  std::unordered_map<std::wstring, Number, Hash, std::equal_to<>> numbers_;
  std::vector<std::wstring_view> keys_;   // by number; views into numbers_
  std::vector<std::size_t> counts_;       // by number
  std::vector<ExplainedRecord> records_;  // as they were met, then group by group
  std::wstring key_;                      // buffer
};

}  // namespace korvel
