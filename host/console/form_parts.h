// What the printing and the reading of a form share.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "frame/dialog.h"

namespace korvel {

// How many lines of a long grid are shown at a time.
inline constexpr std::size_t grid_page = 20;

// The label as a person types it: without the colon that ends it.
[[nodiscard]] std::wstring_view label_name(const Control& control);

// The control's line or lines in the form.
[[nodiscard]] std::wstring control_text(const ControlPointer& pointer);

}  // namespace korvel
