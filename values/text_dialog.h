// The dialog in which is chosen where the texts found in entities go.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/dialog.h"
#include "frame/od_store.h"
#include "values/text_values.h"

namespace korvel {

class ODSelectText final : public Dialog {
 public:
  // The store must outlive the dialog. `last_table` is selected if it is among the tables.
  ODSelectText(const ODStore& store, std::vector<std::wstring> table_names,
               std::wstring_view last_table, std::wstring_view last_tolerance);

  void changed(const Control& control) override;

  // None when there is nothing to do: no table, no column, or a tolerance that is negative or no
  // number.
  [[nodiscard]] std::optional<TextColumn> column() const;
  [[nodiscard]] const std::wstring& tolerance() const { return tolerance_.text; }

 private:
  const ODStore& store_;
  ListBox tables_{L"Tables"};
  DropDown field_{L"Field"};
  Edit tolerance_{L"Tolerance"};
};

}  // namespace korvel
