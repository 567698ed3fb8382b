// A drawing's file on disk: read as a whole, and replaced as a whole or not at all.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "frame/file_access.h"
#include "host/standalone/result.h"

namespace korvel {

// A failure names the file and says why it cannot be read (missing, a directory, no permission,
// ...).
[[nodiscard]] Result<std::string> read_file(const std::filesystem::path& path);

// As replace_drawing_file. None: the new file is in its place.
[[nodiscard]] std::optional<Failure> save_file(const NewFile& file);

}  // namespace korvel
