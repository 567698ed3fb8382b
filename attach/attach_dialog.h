// The dialog in which a table is chosen, its fields are filled in, and it is attached or detached.
#pragma once

#include "attach/attach_data.h"
#include "frame/dialog.h"

namespace korvel {

// No table is selected at first. Selecting one fills the grid with its columns and their defaults.
class AttachOD final : public Dialog {
 public:
  // The store must outlive the dialog.
  explicit AttachOD(const ODStore& store);

  void changed(const Control& control) override;

  // What was asked for by the button that closed the dialog.
  [[nodiscard]] AttachRequest request() const;

 private:
  const ODStore& store_;
  ListBox tables_{L"Tables"};
  Grid fields_;
};

}  // namespace korvel
