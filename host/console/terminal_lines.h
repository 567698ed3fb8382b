// Lines typed at a terminal, with editing and a history kept for the run; where the system's own
// line editor can do it, with completion of command names.
#pragma once

#include <memory>

#include "host/console/console.h"

namespace korvel {

enum class PromptStyle { Bold, Plain };

// There is one at a time, on standard input and output.
[[nodiscard]] std::unique_ptr<LineSource> make_terminal_lines(PromptStyle style);

}  // namespace korvel
