// The files that commands write for a person, and what becomes of those that they could not use.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace korvel {

// Takes the bytes of a file piece by piece. False: they could not be written, and no more will be.
using ByteSink = std::function<bool(std::string_view)>;

struct NewFile {
  std::filesystem::path target;
  // Hands all bytes of the file to the sink, in order. False: they are not wanted any more. May
  // throw.
  std::function<bool(const ByteSink&)> produce;
};

// A file of these bytes, which must live until it is written.
[[nodiscard]] inline NewFile new_file(std::filesystem::path target, std::string_view bytes) {
  return {std::move(target), [bytes](const ByteSink& sink) { return sink(bytes); }};
}

enum class FileDirection { Read, Write };

struct FailedFile {
  std::filesystem::path path;
  FileDirection direction = FileDirection::Write;
  std::wstring reason;     // for a person, without a full stop
  bool announced = false;  // the command has printed a message about it
};

// "Cannot write 'roads.csv': Permission denied."
[[nodiscard]] std::wstring sentence_of(const FailedFile& file);

class FileAccess {
 public:
  FileAccess() = default;
  FileAccess(const FileAccess&) = delete;
  FileAccess& operator=(const FileAccess&) = delete;
  virtual ~FileAccess() = default;

  // Replaces all targets, or none of them: the bytes go into temporary files beside the targets,
  // which are put in place when all are whole and on the disk. A link to a file stays one, and what
  // it leads to is replaced. A device or a pipe is written as it is, behind the other files. No
  // bytes are asked for when one of the targets cannot be written.
  //
  // None: all went well, or a producer wanted no more; then nothing is replaced. What a producer
  // throws comes out, and nothing is replaced.
  [[nodiscard]] virtual std::optional<FailedFile> replace_files(std::span<const NewFile> files) = 0;

  // Says that the command could not read or write a file that it was given. Commands report each
  // such file once.
  virtual void report_failed_file(const FailedFile& /*file*/) {}
};

}  // namespace korvel
