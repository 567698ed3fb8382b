// Puts a complete new file in the place of an old one, or leaves the old one alone.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "host/standalone/result.h"

namespace korvel {

// The whole file; a failure names it and says why it cannot be read (missing, a directory, no
// permission, ...).
[[nodiscard]] Result<std::string> read_file(const std::filesystem::path& path);

using ByteWriter = std::function<bool(std::string_view)>;

// Lets `produce` write a new file beside `path`, syncs it and renames it to `path`; what stood
// there is kept under the same name with the extension `.bak`. At no moment is there no file at
// `path`. On failure nothing is left of the new one.
[[nodiscard]] std::optional<Failure> replace_file(
    const std::filesystem::path& path, const std::function<bool(const ByteWriter&)>& produce);

}  // namespace korvel
