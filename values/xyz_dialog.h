// The dialog in which the columns for coordinates are chosen.
#pragma once

#include <string>
#include <vector>

#include "frame/dialog.h"
#include "frame/message.h"
#include "frame/od_store.h"
#include "frame/remembered_choices.h"
#include "values/coordinates.h"

namespace korvel {

// Picking a table fills the lists of columns anew; their first item, an empty text, stands for a
// coordinate that is not wanted.
class ODSelectXYZ final : public Dialog {
 public:
  ODSelectXYZ(const ODStore& store, const std::vector<std::wstring>& table_names,
              const CoordinateChoices& last, int decimals);

  // A table and a column at least, and no column twice.
  [[nodiscard]] bool is_complete() const;
  [[nodiscard]] CoordinateRequest request() const;

  // The table is remembered as soon as it is picked, the rules when OK accepts them: not when one
  // column is chosen twice.
  void remember(CoordinateChoices& choices, bool accepted) const;

  void changed(const Control& control) override;

  ListBox tables{L"Tables"};
  DropDown x{L"X"};
  DropDown y{L"Y"};
  DropDown z{L"Z"};
  DropDown planimetric{L"Planimetric"};
  DropDown elevation{L"Elevation"};
  Spin plan_decimals{L"Precision XY", 0, 8};
  Spin elevation_decimals{L"Precision Z", 0, 8};

 private:
  void fill_columns();
  [[nodiscard]] bool has_column_twice() const;

  const ODStore& store_;
};

}  // namespace korvel
