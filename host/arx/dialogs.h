// Dialogs, message boxes and file choosers in windows of the host.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "frame/drawing_host.h"

namespace korvel::arx {

// As DrawingHost has them. What a dialog throws comes out of here when its window is closed.
[[nodiscard]] bool show(Dialog& dialog);
[[nodiscard]] bool ask_yes_no(std::wstring_view caption, std::wstring_view text, BoxIcon icon);
void show_text(std::wstring_view title, std::wstring_view text, int width, int height);
[[nodiscard]] std::optional<std::filesystem::path> choose_file_to_open(
    const FileQuestion& question);
[[nodiscard]] std::optional<std::filesystem::path> choose_file_to_save(
    const FileQuestion& question);

// One sentence that has to be read before anything goes on.
void complain(std::wstring_view sentence);

}  // namespace korvel::arx
