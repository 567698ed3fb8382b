// The dialog of the commands that add values.
#pragma once

#include <string>
#include <vector>

#include "frame/dialog.h"
#include "frame/od_store.h"

namespace korvel {

struct ColumnName {
  std::wstring table;
  std::wstring column;
};

struct SumRequest {
  ColumnName from;
  ColumnName to;
};

enum class SumScope { OneTable, TwoTables };

// Nothing is selected at first. The columns are those of the selected table; a selected column
// stays so if the next table has one of its name.
class OptionsAddVal final : public Dialog {
 public:
  // Lists the tables in the order given; the store must outlive the dialog.
  OptionsAddVal(SumScope scope, const ODStore& store, const std::vector<std::wstring>& table_names);

  void changed(const Control& control) override;

  // What is selected; a name is empty where nothing is.
  [[nodiscard]] SumRequest request() const;

 private:
  [[nodiscard]] const ListBox& to_table() const;

  const ODStore& store_;
  SumScope scope_;
  ListBox from_table_;
  DropDown from_;
  ListBox to_table_{L"To table"};  // not shown when there is one table
  DropDown to_;
};

}  // namespace korvel
