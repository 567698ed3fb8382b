// Whole files on disk: reading them, and replacing them so that a failure leaves the old ones.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace korvel {

enum class TextFileErrorKind { CannotOpen, CannotRead, TooLarge, LineTooLong, CannotWrite };

struct TextFileError {
  TextFileErrorKind kind = TextFileErrorKind::CannotOpen;
  std::size_t line = 0;  // counted from 1; 0 if the error is not one of a line
  std::wstring message;  // one sentence for a person, without a line end
};

// Why the file cannot be had, or none with its bytes in `bytes`. Anything but a regular file cannot
// be opened; a larger one than `most_bytes` is not read.
[[nodiscard]] std::optional<TextFileError> read_file(const std::filesystem::path& path,
                                                     std::size_t most_bytes, std::string& bytes);

struct FileContent {
  std::filesystem::path target;
  std::vector<std::string_view> pieces;  // of its bytes, in order
};

// Writes new files beside the targets and renames them over, so that a failure leaves all existing
// targets as they were. A link to a file stays one, a device is written to as it is. None if all
// went well.
[[nodiscard]] std::optional<TextFileError> save_files(std::span<const FileContent> files);
[[nodiscard]] std::optional<TextFileError> save_file(const std::filesystem::path& target,
                                                     std::string_view bytes);

// One file saved in the same way, of which the bytes come piece by piece.
class FileInProgress {
 public:
  explicit FileInProgress(const std::filesystem::path& target);
  ~FileInProgress();  // the target is as it was, unless finish() was called
  FileInProgress(const FileInProgress&) = delete;
  FileInProgress& operator=(const FileInProgress&) = delete;

  void write(std::string_view bytes);
  // Puts the file in its place. None if all went well, from the beginning on.
  [[nodiscard]] std::optional<TextFileError> finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Whether a file could be saved there, found out without changing what is there.
[[nodiscard]] std::optional<TextFileError> check_writable(const std::filesystem::path& target);

// The path for a message, in the form a person typed it.
[[nodiscard]] std::wstring path_text(const std::filesystem::path& path);

// The path that a person means by such a text, whatever the system's own encoding of names is.
[[nodiscard]] std::filesystem::path path_of(std::wstring_view text);
// The same of UTF-8. Where names of files are bytes, they are taken as they are.
[[nodiscard]] std::filesystem::path path_of(std::string_view utf8);

// The reason of an error, in the same words on every system where it has a common one.
[[nodiscard]] std::wstring reason_text(std::error_code code);

}  // namespace korvel
