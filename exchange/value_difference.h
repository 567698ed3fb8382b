// Two values as short texts that show how they differ.
#pragma once

#include <string>

#include "frame/od_value.h"

namespace korvel {

// "before -> after", as values are shown everywhere: numbers that would look alike have all their
// digits, of texts that begin alike and are long the place where they part is shown.
[[nodiscard]] std::wstring difference_text(const ODValueView& before, const ODValueView& after);

}  // namespace korvel
