// Commands of the host run to their end.
#pragma once

#include <string_view>

#include "frame/entity_id.h"

namespace korvel::arx {

// As DrawingHost has it; false also when the user cancelled the command. Not to be called from a
// palette: the host runs no command to its end there.
bool run_command(std::wstring_view name, EntityId entity);

}  // namespace korvel::arx
