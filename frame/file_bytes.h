// Whole files on disk, and the names of files as text.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace korvel {

enum class TextFileErrorKind { CannotOpen, CannotRead, TooLarge, LineTooLong };

struct TextFileError {
  TextFileErrorKind kind = TextFileErrorKind::CannotOpen;
  std::size_t line = 0;  // counted from 1; 0 if the error is not one of a line
  std::wstring reason;   // for a person, without the file's name and without a full stop
  std::wstring message;  // the same as one sentence with the name, without a line end
};

// Why the file cannot be had, or none with its bytes in `bytes`. Anything but a regular file cannot
// be opened; a larger one than `most_bytes` is not read.
[[nodiscard]] std::optional<TextFileError> read_file(const std::filesystem::path& path,
                                                     std::size_t most_bytes, std::string& bytes);

// The path for a message, in the form a person typed it.
[[nodiscard]] std::wstring path_text(const std::filesystem::path& path);

// The path that a person means by such a text, whatever the system's own encoding of names is.
[[nodiscard]] std::filesystem::path path_of(std::wstring_view text);
// The same of UTF-8. Where names of files are bytes, they are taken as they are.
[[nodiscard]] std::filesystem::path path_of(std::string_view utf8);

// The reason of an error, in the same words on every system where it has a common one.
[[nodiscard]] std::wstring reason_text(std::error_code code);

}  // namespace korvel
