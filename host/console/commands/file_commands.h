// Opening and saving drawing files, wherever a person asks for it, and what is told then.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "host/console/console.h"
#include "host/standalone/drawing.h"
#include "host/standalone/result.h"

namespace korvel {

// As the drawing does it; what is thrown meanwhile is a failure like any other.
[[nodiscard]] Result<std::unique_ptr<Drawing>> open_drawing(const std::filesystem::path& path);
[[nodiscard]] std::optional<Failure> save_drawing(Drawing& drawing,
                                                  const std::filesystem::path& path);

// The same for a file that is the drawing's own, if it still is as the drawing knows it, or may be
// replaced nevertheless, for which a person at a terminal is asked.
using YesQuestion = std::function<bool(std::wstring_view prompt)>;
[[nodiscard]] std::optional<Failure> save_unless_changed(ConsoleHost& host,
                                                         const std::filesystem::path& path,
                                                         const YesQuestion& ask);

inline constexpr std::wstring_view drawing_extension_refusal = L"Drawings are saved as .dxf files.";
[[nodiscard]] bool has_drawing_extension(const std::filesystem::path& path);

// Writes the notices of a drawing just opened to standard error, one "korvel: ..." line each.
void print_notices(const Drawing& drawing);

// True if nothing would be lost, or may be, which is asked.
[[nodiscard]] bool may_leave_drawing(ConsoleHost& host);

// "1234 entities, 7 layers, 5 object-data tables": entities of model space, layers with and without
// a record, all tables.
[[nodiscard]] std::wstring contents_of(const Drawing& drawing);

}  // namespace korvel
