// The dialog in which the columns for length, area and volume are chosen.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "frame/dialog.h"
#include "frame/od_store.h"
#include "values/measure_values.h"

namespace korvel {

class ODSelectProp final : public Dialog {
 public:
  // The store must outlive the dialog. `last_table` is selected if it is among the tables.
  ODSelectProp(const ODStore& store, std::vector<std::wstring> table_names,
               std::wstring_view last_table, int decimals);

  void changed(const Control& control) override;

  // None when there is nothing to do: no table, no column, or one column for two measures.
  [[nodiscard]] std::optional<MeasureColumns> columns() const;

 private:
  void fill_columns();

  const ODStore& store_;
  ListBox tables_{L"Tables"};
  DropDown length_{L"Length"};
  DropDown area_{L"Area"};
  DropDown volume_{L"Volume"};
  Spin precision_{L"Precision", 0, 8};
};

}  // namespace korvel
