// The object data of the host's current drawing.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "frame/od_store.h"
#include "host/arx/sdk.h"

namespace korvel::arx {

// Made for the run of one command. Without Map every operation answers that it failed or that there
// is nothing.
//
// The host itself does not say what becomes of an iterator when records are added or removed beside
// it, and wants no iterator there meanwhile; this store keeps count of its own iterators and
// refuses, or ends them, as its interface promises. They end also when a table is changed or
// refuses that.
class ArxStore final : public ODStore {
 public:
  ArxStore();
  ~ArxStore() override;
  ArxStore(const ArxStore&) = delete;
  ArxStore& operator=(const ArxStore&) = delete;

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
  bool add_path_alias(std::wstring_view name, std::wstring_view path) override;
  bool remove_path_alias(std::wstring_view name) override;
  [[nodiscard]] std::unique_ptr<AttachedDrawing> attach_drawing(
      const std::filesystem::path& path) override;
  [[nodiscard]] std::vector<std::wstring> feature_classes() const override;
  bool classify(EntityId entity, std::wstring_view feature_class) override;

 private:
  class Iterator;

  // An open table and its definition, kept for the store's life: a command attaches to the same
  // few.
  struct OpenTable {
    std::unique_ptr<AcMapODTable> table;
    ODTableDef definition;
  };
  struct Alias {
    std::wstring name;
    std::wstring path;
  };
  [[nodiscard]] std::wstring aliased(const std::filesystem::path& path) const;
  [[nodiscard]] bool is_listed(std::wstring_view table) const;
  [[nodiscard]] const OpenTable* open_table(std::wstring_view name) const;
  // The host's; of all tables without a name. Null: there is no such table, or no Map.
  [[nodiscard]] std::unique_ptr<AcMapODRecordIterator> open_records(
      const std::optional<std::wstring>& table);
  template <class Change>
  ColumnChange redefine(std::wstring_view table, const Change& change);
  void let_go_of_tables();
  void release_iterators_on(EntityId entity, const Iterator* but);
  void read_again_on(EntityId entity);

  AcMapODContainer* container_;  // the host's
  mutable std::map<std::wstring, OpenTable, std::less<>> tables_;
  mutable std::set<std::wstring, std::less<>> names_;  // as last asked of the host
  std::vector<Iterator*> iterators_;
  std::vector<Alias> aliases_;  // those that were added here
};

}  // namespace korvel::arx
