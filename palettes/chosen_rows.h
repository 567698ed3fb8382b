// A drawing in which only some records of one table are to be seen: what a command does, it does to
// these alone.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "exchange/record_rows.h"
#include "frame/forwarding_host.h"

namespace korvel {

// Records of other tables, and records that are not among the rows, are passed over. Attaching and
// removing records would shift the numbers of the rows and is refused.
class ChosenRowsStore final : public IteratingStore {
 public:
  ChosenRowsStore(ODStore& target, std::wstring_view table, std::vector<RecordKey> rows);

  [[nodiscard]] std::unique_ptr<RecordIterator> records() override;
  [[nodiscard]] std::unique_ptr<RecordIterator> records_of(std::wstring_view table) override;
  bool attach(EntityId /*entity*/, const ODRecord& /*record*/) override { return false; }

 private:
  std::wstring table_;
  std::vector<RecordKey> rows_;  // by entity, then number
};

// The rows' entities, in their order, are the pick-first set; the drawing's own stays what it is.
class ChosenRowsHost final : public ForwardingHost {
 public:
  ChosenRowsHost(DrawingHost& target, EntityList entities)
      : ForwardingHost(target), entities_(std::move(entities)) {}

  [[nodiscard]] EntityList pick_first() const override { return entities_; }
  void set_pick_first(const EntityList& entities) override { entities_ = entities; }

 private:
  EntityList entities_;
};

}  // namespace korvel
