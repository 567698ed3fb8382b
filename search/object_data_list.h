// The dialog in which the tables of a table search are ticked.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "frame/dialog.h"

namespace korvel {

class ObjectDataList final : public Dialog {
 public:
  // Lists the tables in the order given, none of them ticked.
  ObjectDataList(std::wstring_view caption, const std::vector<std::wstring>& names,
                 bool all_at_once);

  CheckList tables{L"Tables"};
  CheckBox simultaneous{L"Simultaneous"};

 protected:
  void act(const Button& select_all) override;
};

}  // namespace korvel
