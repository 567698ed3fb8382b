// The dialog of KORVEL_EXPL.
#pragma once

#include <string>
#include <vector>

#include "exchange/explication.h"
#include "frame/dialog.h"
#include "frame/od_store.h"

namespace korvel {

// The fields are those that all checked tables have, in the order of the first; the one selected
// stays selected as long as it is among them.
class SelectSharedCol final : public Dialog {
 public:
  // Lists the tables in the order given; the store must outlive the dialog.
  SelectSharedCol(const ODStore& store, const std::vector<std::wstring>& table_names);

  void changed(const Control& control) override;

  // What is asked for as the controls stand.
  [[nodiscard]] ExplicationRequest request() const;

 private:
  void list_shared_fields();

  const ODStore& store_;
  CheckList tables_{L"Tables"};
  CheckBox by_type_field_{L"Object type field"};
  DropDown type_field_{L"Field"};
  Edit separator_{L"Separator"};
};

}  // namespace korvel
