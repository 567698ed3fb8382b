// The dialog in which identifiers are laid out.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "frame/dialog.h"
#include "frame/drawing_host.h"
#include "values/identifiers.h"

namespace korvel {

// Picking a table fills the list of fields; picking a field puts its default value into the prefix
// and proposes the first number.
class OptionsWild final : public Dialog {
 public:
  // A table that stands alone is selected. A negative `first` is shown as 0.
  OptionsWild(ODStore& store, DrawingHost& host, const std::vector<std::wstring>& table_names,
              std::int32_t first);

  // As the controls stand; the first number may be invalid_first.
  [[nodiscard]] Numbering numbering() const;

  void changed(const Control& control) override;

  ListBox tables{L"Tables"};
  DropDown field{L"Field"};
  Edit prefix{L"Prefix"};
  Edit suffix{L"Suffix"};
  Spin first{L"First", 0, 32767};

 private:
  void fill_fields();
  void take_default();

  ODStore& store_;
  DrawingHost& host_;
};

}  // namespace korvel
