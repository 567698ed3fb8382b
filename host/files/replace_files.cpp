#include "host/files/replace_files.h"

#include <string>
#include <vector>

#include "frame/file_bytes.h"

namespace korvel {

std::optional<FailedFile> replace_files(std::span<const NewFile> files) {
  std::vector<std::string> bytes(files.size());
  std::vector<FileContent> contents;
  for (std::size_t i = 0; i < files.size(); ++i) {
    const bool wanted = files[i].produce([&](std::string_view piece) {
      bytes[i] += piece;
      return true;
    });
    if (!wanted) return std::nullopt;
    contents.push_back({files[i].target, {bytes[i]}});
  }
  const std::optional<TextFileError> error = save_files(contents);
  if (!error) return std::nullopt;
  return FailedFile{files.front().target, FileDirection::Write, error->message};
}

}  // namespace korvel
