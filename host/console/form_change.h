// What an assignment does to one control of a form.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "frame/dialog.h"
#include "host/console/form_line.h"

namespace korvel {

// What became of a change. With a refusal, one sentence, nothing was changed.
struct FormChange {
  bool changed = false;  // something is not as it was
  std::wstring refusal;
};

[[nodiscard]] FormChange change_control(const ControlPointer& pointer,
                                        const FormAssignment& assignment);

// The cell of this column in the row that the assignment names.
[[nodiscard]] FormChange change_cell(Grid& grid, std::size_t column,
                                     const FormAssignment& assignment);

// The names one after the other, as they may be typed; "none" if there are none.
[[nodiscard]] std::wstring listed(std::span<const std::wstring_view> names);

[[nodiscard]] std::wstring in_quotes(std::wstring_view text);

}  // namespace korvel
