#include "host/standalone/file_save.h"

#include <cerrno>
#include <cstdint>
#include <exception>
#include <new>
#include <system_error>

#include "frame/file_bytes.h"
#include "frame/utf.h"
#include "host/standalone/disk.h"

namespace korvel {
namespace {

namespace fs = std::filesystem;

Failure failure(const fs::path& path, std::string_view what) {
  return {to_utf8(path_text(path)) + ": " + std::string(what)};
}

Failure failure(const fs::path& path, std::string_view what, std::error_code error) {
  return failure(path, std::string(what) + ": " + to_utf8(reason_text(error)));
}

std::error_code last_error() { return {errno, std::generic_category()}; }

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

// Small pieces are collected, large ones go out as they are.
class BufferedFile {
 public:
  explicit BufferedFile(const disk::OpenFile& file) : file_(file) { buffer_.reserve(capacity); }

  bool write(std::string_view bytes) {
    if (buffer_.size() + bytes.size() > capacity && !flush()) return false;
    if (bytes.size() > capacity) return file_.write(bytes);
    buffer_ += bytes;
    return true;
  }
  bool flush() {
    const bool written = file_.write(buffer_);
    buffer_.clear();
    return written;
  }

 private:
  static constexpr std::size_t capacity = std::size_t{1} << 20;
  const disk::OpenFile& file_;
  std::string buffer_;
};

// A second name for the old file, so that it never goes away before the new one is in its place.
std::optional<Failure> keep_backup(const fs::path& path) {
  std::error_code error;
  if (!fs::exists(path, error)) return std::nullopt;
  fs::path backup = path;
  backup.replace_extension(".bak");
  if (backup == path) return std::nullopt;
  const disk::NewFile created = disk::create_beside(backup);
  const fs::path& fresh = created.path;
  disk::OpenFile(created.descriptor).close();
  fs::remove(fresh, error);  // a link wants the name free
  fs::create_hard_link(path, fresh, error);
  if (error) fs::copy_file(path, fresh, error);  // file systems without hard links
  if (!error) error = disk::replace(fresh, backup);
  if (!error) return std::nullopt;
  std::error_code ignored;
  fs::remove(fresh, ignored);
  return failure(backup, "the old file cannot be kept", error);
}

// True if the whole file is on the disk.
bool write_new_file(disk::OpenFile& file, const std::function<bool(const ByteWriter&)>& produce) {
  BufferedFile buffered(file);
  return produce([&buffered](std::string_view bytes) { return buffered.write(bytes); }) &&
         buffered.flush() && file.sync() && file.close();
}

// What a chain of symbolic links leads to, even if it is not there yet.
fs::path behind_links(fs::path path) {
  constexpr int longest_chain = 40;
  std::error_code error;
  for (int link = 0; link < longest_chain && fs::is_symlink(path, error); ++link) {
    const fs::path next = fs::read_symlink(path, error);
    path = next.is_absolute() ? next : path.parent_path() / next;
  }
  return path;
}

}  // namespace

Result<std::string> read_file(const fs::path& path) {
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) return failure(path, "this is a directory, not a file");
  const disk::OpenFile file(disk::open_to_read(path));
  const auto status = file.is_open() ? disk::status_of(file) : std::nullopt;
  if (!status) return failure(path, "cannot be opened", last_error());
  // Devices need not end.
  if (status->kind == disk::Kind::Device) return failure(path, "this is a device, not a file");
  const Failure too_large = failure(path, "the file is too large for this machine's memory");
  if (status->size > disk::physical_memory()) return too_large;
  try {
    std::string bytes;
    if (read_all(file, static_cast<std::size_t>(status->size), bytes)) return bytes;
    return failure(path, "cannot be read", last_error());
  } catch (const std::exception&) {  // out of memory, or longer than any text can be
    return too_large;
  }
}

std::optional<Failure> replace_file(const fs::path& path,
                                    const std::function<bool(const ByteWriter&)>& produce) {
  std::error_code error;
  const fs::file_status there = fs::status(path, error);
  if (fs::exists(there) && !fs::is_regular_file(there)) {
    const std::string kind = fs::is_directory(there) ? "a directory" : "not a file but a device";
    return failure(path, "this is " + kind + ", a drawing cannot be saved there");
  }
  // A link keeps pointing where it points; what it points to is replaced.
  const fs::path target = behind_links(path);
  // Ctrl+C waits until the file is in its place or gone.
  const disk::InterruptsHeld held;

  const disk::NewFile fresh = disk::create_beside(target);
  disk::OpenFile file(fresh.descriptor);
  if (!file.is_open()) return failure(path, "cannot be written", last_error());
  disk::give_permissions(file, target);

  std::optional<Failure> failed;
  if (!write_new_file(file, produce)) failed = failure(path, "cannot be written", last_error());
  file.close();
  if (!failed) failed = keep_backup(target);
  if (!failed) {
    error = disk::replace(fresh.path, target);
    if (error) failed = failure(path, "cannot be replaced", error);
  }
  if (failed) fs::remove(fresh.path, error);
  return failed;
}

}  // namespace korvel
