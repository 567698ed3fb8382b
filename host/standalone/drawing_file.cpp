#include "host/standalone/drawing_file.h"

#include <cerrno>
#include <cstdint>
#include <exception>
#include <new>
#include <system_error>

#include "frame/file_bytes.h"
#include "frame/utf.h"
#include "host/files/disk.h"
#include "host/files/replace_files.h"

namespace korvel {
namespace {

namespace fs = std::filesystem;

Failure failure(const fs::path& path, std::string_view what) {
  return {to_utf8(path_text(path)) + ": " + std::string(what)};
}

Failure failure(const fs::path& path, std::string_view what, std::error_code error) {
  return failure(path, std::string(what) + ": " + to_utf8(reason_text(error)));
}

// The size is a hint: it is 0 for pipes, and the file may grow meanwhile.
bool read_all(const disk::OpenFile& file, std::size_t size, std::string& bytes) {
  constexpr std::size_t chunk = std::size_t{1} << 20;
  bytes.resize(size + chunk);
  std::size_t filled = 0;
  for (;;) {
    if (filled == bytes.size()) bytes.resize(bytes.size() + bytes.size() / 2);
    const std::ptrdiff_t got = file.read(bytes.data() + filled, bytes.size() - filled);
    if (filled > disk::physical_memory()) throw std::bad_alloc();
    if (got <= 0) {
      bytes.resize(filled);
      return got == 0;
    }
    filled += static_cast<std::size_t>(got);
  }
}

}  // namespace

Result<std::string> read_file(const fs::path& path) {
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) return failure(path, "this is a directory, not a file");
  const disk::OpenFile file(disk::open_to_read(path));
  const auto status = file.is_open() ? disk::status_of(file) : std::nullopt;
  if (!status) return failure(path, "cannot be opened", disk::last_error());
  // Devices need not end.
  if (status->kind == disk::Kind::Device) return failure(path, "this is a device, not a file");
  const Failure too_large = failure(path, "the file is too large for this machine's memory");
  if (status->size > disk::physical_memory()) return too_large;
  try {
    std::string bytes;
    if (read_all(file, static_cast<std::size_t>(status->size), bytes)) return bytes;
    return failure(path, "cannot be read", disk::last_error());
  } catch (const std::exception&) {  // out of memory, or longer than any text can be
    return too_large;
  }
}

std::optional<Failure> save_file(const NewFile& file) {
  const std::optional<FailedFile> failed = replace_drawing_file(file);
  if (!failed) return std::nullopt;
  return failure(failed->path, "cannot be written: " + to_utf8(failed->reason));
}

}  // namespace korvel
