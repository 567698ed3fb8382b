// Goes from record to record of one table by their keys.
#pragma once

#include <memory>
#include <string_view>

#include "exchange/record_rows.h"
#include "frame/od_store.h"

namespace korvel {

// Keys of one entity that follow each other in rising order cost one step each.
class RecordWalk {
 public:
  RecordWalk(ODStore& store, std::wstring_view table, OpenMode mode)
      : records_(store.records_of(table)), mode_(mode) {}

  // Null when the entity cannot be opened or has no such record.
  [[nodiscard]] RecordIterator* at(const RecordKey& key) {
    if (key.number < 1) return nullptr;
    if (key.entity != here_.entity || key.number < here_.number) {
      records_->open(key.entity, mode_);
      here_ = {key.entity, 1};
    }
    for (; here_.number < key.number && !records_->done(); ++here_.number)
      records_->next();
    return records_->done() ? nullptr : records_.get();
  }

  // How many records of the table the entity has; 0 if it cannot be opened.
  [[nodiscard]] int count(EntityId entity) {
    if (entity != here_.entity) {
      records_->open(entity, mode_);
      here_ = {entity, 1};
    }
    return records_->count();
  }

  // Stands on nothing, so that records can be attached.
  void leave() {
    records_->open(EntityId{}, mode_);
    here_ = {};
  }

 private:
  std::unique_ptr<RecordIterator> records_;
  OpenMode mode_;
  RecordKey here_;  // of where the iterator stands, or past the entity's last record
};

}  // namespace korvel
