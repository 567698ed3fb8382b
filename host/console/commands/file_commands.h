// What opening a drawing tells a person, wherever it is opened from.
#pragma once

#include <string>

#include "host/standalone/drawing.h"

namespace korvel {

// Writes the notices of a drawing just opened to standard error, one "korvel: ..." line each.
void print_notices(const Drawing& drawing);

// "1234 entities, 7 layers, 5 object-data tables": entities of model space, layers with and without
// a record, all tables.
[[nodiscard]] std::wstring contents_of(const Drawing& drawing);

}  // namespace korvel
