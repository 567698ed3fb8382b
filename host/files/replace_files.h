// Puts complete new files in the place of old ones, or leaves the old ones alone.
#pragma once

#include <optional>
#include <span>

#include "frame/file_access.h"

namespace korvel {

// As FileAccess::replace_files.
[[nodiscard]] std::optional<FailedFile> replace_files(std::span<const NewFile> files);

}  // namespace korvel
