// Reads records by their keys, in whatever order these come.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "exchange/record_rows.h"
#include "frame/od_store.h"

namespace korvel {

// The values of one record: where it lies, or of a copy.
class RecordValues {
 public:
  RecordValues() = default;
  explicit RecordValues(const RecordIterator& record) : record_(&record) {}
  explicit RecordValues(const ODRecord& copy) : copy_(&copy) {}

  // False: there is no such record.
  explicit operator bool() const { return record_ != nullptr || copy_ != nullptr; }

  [[nodiscard]] ODValueView operator[](std::size_t index) const {
    if (record_ != nullptr) return record_->value(static_cast<int>(index));
    return index < copy_->values.size() ? view_of(copy_->values[index]) : ODValueView();
  }

 private:
  const RecordIterator* record_ = nullptr;
  const ODRecord* copy_ = nullptr;
};

// An iterator only goes forward, record by record. Where keys leap among the many records of an
// entity, these are read once and kept.
class RecordReader {
 public:
  // Numbers count the records that the iterator walks.
  explicit RecordReader(std::unique_ptr<RecordIterator> records) : records_(std::move(records)) {}

  // Nothing when the entity cannot be opened or has no such record. Valid until the next call; the
  // records must not change as long as this is used.
  [[nodiscard]] RecordValues at(const RecordKey& key);

  // How many records the entity has; none if it cannot be opened.
  [[nodiscard]] std::optional<std::int32_t> count(EntityId entity);

 private:
  using Copies = std::vector<ODRecord>;
  [[nodiscard]] const Copies& copies_of(EntityId entity);
  bool open(EntityId entity);

  std::unique_ptr<RecordIterator> records_;
  RecordKey here_;  // of where the iterator stands, or past the entity's last record
  std::unordered_map<EntityId, Copies> copies_;
};

}  // namespace korvel
