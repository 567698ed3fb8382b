// Puts complete new files in the place of old ones, or leaves the old ones alone.
#pragma once

#include <optional>
#include <span>

#include "frame/file_access.h"

namespace korvel {

// As FileAccess::replace_files. While the bytes are written, temporary files lie beside the targets
// under names that begin with ".korvel-". Those that a killed process left are removed by the next
// replacing of the same target.
[[nodiscard]] std::optional<FailedFile> replace_files(std::span<const NewFile> files);

// The same for a drawing: no device and no pipe is written, and the old file is kept under its name
// with the extension ".bak".
[[nodiscard]] std::optional<FailedFile> replace_drawing_file(const NewFile& file);

}  // namespace korvel
