// Deletes the definitions of tables that no entity of model space uses.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "frame/command_frame.h"
#include "frame/dialog.h"
#include "frame/od_store.h"

namespace korvel {

// The user tables of the drawing, each list in ordinal order.
struct TableUse {
  std::vector<std::wstring> unused;
  std::vector<std::wstring> used;
};

// Used is a table of which an entity of model space carries a record. Deliberately nothing else is
// looked at: a table used in paper space or inside a block alone is unused. Throws Interrupted:
// what was not looked at must never pass for unused.
[[nodiscard]] TableUse table_use(ODStore& store, DrawingHost& host);

// Shows both lists; what is unused can be checked, and nothing is at first.
class OptionsRmUnused final : public Dialog {
 public:
  explicit OptionsRmUnused(const TableUse& use);

  // In list order.
  [[nodiscard]] std::vector<std::wstring> checked() const { return unused_.checked(); }

 protected:
  void act(const Button& button) override;

 private:
  CheckList unused_{L"Unused:"};
  ReadOnlyText used_{L"Used:"};
};

// Gives the number of definitions deleted; their records go with them, wherever they are.
int delete_tables(ODStore& store, std::span<const std::wstring> tables, ProgressMeter& meter);

}  // namespace korvel
