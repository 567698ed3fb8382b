// Questions about files that a person named.
#pragma once

#include <filesystem>

namespace korvel {

[[nodiscard]] bool is_there(const std::filesystem::path& path);

[[nodiscard]] bool is_folder(const std::filesystem::path& path);

// A folder, a device or a pipe.
[[nodiscard]] bool is_no_file(const std::filesystem::path& path);

// Whether something is at `target`, and it is not the file `own`, whatever their names. An empty
// `own` is no file.
[[nodiscard]] bool replaces_another(const std::filesystem::path& target,
                                    const std::filesystem::path& own);

}  // namespace korvel
