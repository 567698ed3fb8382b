// Opening and saving drawing files, wherever a person asks for it, and what is told then.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "host/console/console.h"
#include "host/standalone/drawing.h"
#include "host/standalone/result.h"

namespace korvel {

// As the drawing does it; that there is not enough memory is a failure like any other.
[[nodiscard]] Result<std::unique_ptr<Drawing>> open_drawing(const std::filesystem::path& path);
[[nodiscard]] std::optional<Failure> save_drawing(Drawing& drawing,
                                                  const std::filesystem::path& path);

// Writes the notices of a drawing just opened to standard error, one "korvel: ..." line each.
void print_notices(const Drawing& drawing);

// True if nothing would be lost, or may be, which is asked.
[[nodiscard]] bool may_leave_drawing(ConsoleHost& host);

// "1234 entities, 7 layers, 5 object-data tables": entities of model space, layers with and without
// a record, all tables.
[[nodiscard]] std::wstring contents_of(const Drawing& drawing);

}  // namespace korvel
