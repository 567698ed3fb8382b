// The dialog of KORVEL_REPLACE.
#pragma once

#include <string>
#include <vector>

#include "frame/dialog.h"
#include "frame/od_store.h"
#include "values/replace_values.h"

namespace korvel {

// Nothing is checked at first, because nobody wants to replace values by mistake. The fields are
// those of the checked tables, each name once; what is checked stays checked as long as a checked
// table has it.
class OptionsReplace final : public Dialog {
 public:
  // Lists the tables in the order given; the store must outlive the dialog.
  OptionsReplace(const ODStore& store, const std::vector<std::wstring>& table_names);

  void changed(const Control& control) override;

  // What is replaced as the controls stand.
  [[nodiscard]] ReplaceRequest request() const;

 private:
  const ODStore& store_;
  Edit search_{L"Search"};
  Edit replacement_{L"Replacement"};
  CheckList tables_{L"Tables"};
  CheckList fields_{L"Fields"};
};

}  // namespace korvel
