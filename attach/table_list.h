// The dialog in which tables are checked.
#pragma once

#include <string>
#include <vector>

#include "frame/dialog.h"

namespace korvel {

// Nothing is checked at first.
class PGUIODList final : public Dialog {
 public:
  PGUIODList(std::wstring title, const std::vector<std::wstring>& names);

  // In list order.
  [[nodiscard]] std::vector<std::wstring> checked() const { return tables_.checked(); }

 protected:
  void act(const Button& button) override;

 private:
  CheckList tables_{L"Tables"};
};

}  // namespace korvel
