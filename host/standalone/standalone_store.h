// ODStore over the object data of a drawing in memory.
#pragma once

#include <map>
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
  [[nodiscard]] std::unique_ptr<RecordIterator> records_of(std::wstring_view table) override;
  bool attach(EntityId entity, const ODRecord& record) override;
  [[nodiscard]] std::vector<int> count_records(const EntityList& entities,
                                               std::span<const std::wstring> tables,
                                               ProgressMeter& meter) override;
  [[nodiscard]] std::vector<std::wstring> tables_on(const EntityList& entities,
                                                    ProgressMeter& meter) override;
  void mark_passing(const EntityList& entities, std::wstring_view table, int column,
                    ValueTest& test, std::vector<char>& marks, ProgressMeter& meter) override;
  bool add_path_alias(std::wstring_view name, std::wstring_view path) override;
  bool remove_path_alias(std::wstring_view name) override;
  [[nodiscard]] std::unique_ptr<AttachedDrawing> attach_drawing(
      const std::filesystem::path& path) override;

  // Whether a table was refused because the drawing has no place for object data.
  [[nodiscard]] bool lacked_place() const { return lacked_place_; }

 private:
  class Iterator;
  class Attached;

  [[nodiscard]] RecordSpan readable_records(EntityId entity) const;

  Drawing& drawing_;
  bool lacked_place_ = false;
  std::map<std::wstring, std::wstring, std::less<>> path_aliases_;
  std::vector<const Iterator*> iterators_;
  std::vector<ODValueView> views_;  // of the record being attached
};

}  // namespace korvel
