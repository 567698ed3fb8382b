// ODStore over the object data of a drawing in memory.
#pragma once

#include <vector>

#include "frame/od_store.h"
#include "host/standalone/drawing.h"

namespace korvel {

// The drawing must outlive the store, and the store its iterators.
class StandaloneStore final : public ODStore {
 public:
  explicit StandaloneStore(Drawing& drawing) : drawing_(drawing) {}

  [[nodiscard]] std::vector<std::wstring> table_names() const override;
  [[nodiscard]] std::optional<ODTableDef> table(std::wstring_view name) const override;
  TableChange define_table(const ODTableDef& definition) override;
  TableChange delete_table(std::wstring_view name) override;
  TableChange rename_table(std::wstring_view from, std::wstring_view to) override;
  ColumnChange rename_column(std::wstring_view table, std::wstring_view from,
                             std::wstring_view to) override;
  ColumnChange add_column(std::wstring_view table, const ODColumnDef& column, int index) override;
  ColumnChange remove_column(std::wstring_view table, int index) override;
  [[nodiscard]] std::unique_ptr<RecordIterator> records() override;
  bool attach(EntityId entity, const ODRecord& record) override;

 private:
  class Iterator;

  Drawing& drawing_;
  std::vector<const Iterator*> iterators_;
};

}  // namespace korvel
