// The dialog in which the columns of a grid are shown, hidden, moved and made wider.
#pragma once

#include <string>
#include <vector>

#include "frame/dialog.h"
#include "palettes/column_profile.h"

namespace korvel {

class GridColumns final : public Dialog {
 public:
  GridColumns(const std::vector<std::wstring>& headings, const ColumnProfile& profile);

  // Each column whose position was changed moves there, one after the other; the others make room.
  // A position or a width that is no number stays as it was.
  [[nodiscard]] ColumnProfile profile() const;

  Grid columns{L"Columns", {{L"Column", false}, {L"Position", true}, {L"Width", true}}, false};

 private:
  ColumnProfile before_;
};

}  // namespace korvel
