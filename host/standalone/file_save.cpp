#include "host/standalone/file_save.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace korvel {
namespace {

namespace fs = std::filesystem;

Failure failure(const fs::path& path, std::string_view what, int error) {
  return {path.string() + ": " + std::string(what) + ": " + std::strerror(error)};
}

class FileDescriptor {
 public:
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  ~FileDescriptor() { (void)close(); }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  [[nodiscard]] int get() const { return descriptor_; }
  bool close() {
    if (descriptor_ < 0) return true;
    const int closed = ::close(descriptor_);
    descriptor_ = -1;
    return closed == 0;
  }

 private:
  int descriptor_;
};

bool write_all(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::uint64_t physical_memory() {
  return static_cast<std::uint64_t>(::sysconf(_SC_PHYS_PAGES)) *
         static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

// The size is a hint: it is 0 for pipes, and the file may grow meanwhile.
bool read_all(int descriptor, std::size_t size, std::string& bytes) {
  constexpr std::size_t chunk = std::size_t{1} << 20;
  bytes.resize(size + chunk);
  std::size_t filled = 0;
  for (;;) {
    if (filled == bytes.size()) bytes.resize(bytes.size() + bytes.size() / 2);
    const ssize_t got = ::read(descriptor, bytes.data() + filled, bytes.size() - filled);
    if (got < 0 && errno == EINTR) continue;
    if (filled > physical_memory()) throw std::bad_alloc();
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
  explicit BufferedFile(int descriptor) : descriptor_(descriptor) { buffer_.reserve(capacity); }

  bool write(std::string_view bytes) {
    if (buffer_.size() + bytes.size() > capacity && !flush()) return false;
    if (bytes.size() > capacity) return write_all(descriptor_, bytes);
    buffer_ += bytes;
    return true;
  }
  bool flush() {
    const bool written = write_all(descriptor_, buffer_);
    buffer_.clear();
    return written;
  }

 private:
  static constexpr std::size_t capacity = std::size_t{1} << 20;
  int descriptor_;
  std::string buffer_;
};

// A second name for the old file, so that it never goes away before the new one is in its place.
std::optional<Failure> keep_backup(const fs::path& path) {
  std::error_code error;
  if (!fs::exists(path, error)) return std::nullopt;
  fs::path backup = path;
  backup.replace_extension(".bak");
  if (backup == path) return std::nullopt;
  std::string fresh_name = backup.string() + ".XXXXXX";
  const FileDescriptor reserved(::mkstemp(fresh_name.data()));
  const fs::path fresh = fresh_name;
  fs::remove(fresh, error);  // a link wants the name free
  fs::create_hard_link(path, fresh, error);
  if (error) fs::copy_file(path, fresh, error);  // file systems without hard links
  if (!error) fs::rename(fresh, backup, error);
  if (!error) return std::nullopt;
  std::error_code ignored;
  fs::remove(fresh, ignored);
  return failure(backup, "the old file cannot be kept", error.value());
}

std::optional<Failure> write_new_file(const fs::path& shown, const fs::path& fresh, int descriptor,
                                      const std::function<bool(const ByteWriter&)>& produce) {
  FileDescriptor file(descriptor);
  BufferedFile buffered(file.get());
  const bool written =
      produce([&buffered](std::string_view bytes) { return buffered.write(bytes); }) &&
      buffered.flush() && ::fsync(file.get()) == 0 && file.close();
  if (written) return std::nullopt;
  const int error = errno;
  ::unlink(fresh.c_str());
  return failure(shown, "cannot be written", error);
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

// Ctrl+C waits until the file is in its place or gone.
class InterruptsHeld {
 public:
  InterruptsHeld() {
    sigset_t held;
    sigemptyset(&held);
    sigaddset(&held, SIGINT);
    sigaddset(&held, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &held, &former_);
    // A limit on the size of files is to be an error of write(), not the end of the program.
    (void)std::signal(SIGXFSZ, SIG_IGN);
  }
  ~InterruptsHeld() { pthread_sigmask(SIG_SETMASK, &former_, nullptr); }
  InterruptsHeld(const InterruptsHeld&) = delete;
  InterruptsHeld& operator=(const InterruptsHeld&) = delete;

 private:
  sigset_t former_{};
};

void sync_folder(const fs::path& folder) {
  const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY));
  if (descriptor.get() >= 0) (void)::fsync(descriptor.get());
}

}  // namespace

Result<std::string> read_file(const fs::path& path) {
  const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat status {};
  if (file.get() < 0 || ::fstat(file.get(), &status) != 0) {
    return failure(path, "cannot be opened", errno);
  }
  if (S_ISDIR(status.st_mode)) return Failure{path.string() + ": this is a directory, not a file"};
  if (!S_ISREG(status.st_mode) && !S_ISFIFO(status.st_mode)) {  // devices need not end
    return Failure{path.string() + ": this is a device, not a file"};
  }
  const auto size = static_cast<std::uint64_t>(status.st_size);
  const Failure too_large{path.string() + ": the file is too large for this machine's memory"};
  if (size > physical_memory()) return too_large;
  try {
    std::string bytes;
    if (read_all(file.get(), static_cast<std::size_t>(size), bytes)) return bytes;
    return failure(path, "cannot be read", errno);
  } catch (const std::exception&) {  // out of memory, or longer than any text can be
    return too_large;
  }
}

std::optional<Failure> replace_file(const fs::path& path,
                                    const std::function<bool(const ByteWriter&)>& produce) {
  std::error_code error;
  const fs::file_status there = fs::status(path, error);
  if (fs::exists(there) && !fs::is_regular_file(there)) {
    const char* const kind = fs::is_directory(there) ? "a directory" : "not a file but a device";
    return Failure{path.string() + ": this is " + kind + ", a drawing cannot be saved there"};
  }
  // A link keeps pointing where it points; what it points to is replaced.
  const fs::path target = behind_links(path);
  const InterruptsHeld held;

  std::string fresh_name = target.string() + ".XXXXXX";
  const int descriptor = ::mkstemp(fresh_name.data());
  if (descriptor < 0) return failure(path, "cannot be written", errno);
  struct stat status {};
  const bool replaces = ::stat(target.c_str(), &status) == 0;
  const mode_t mask = ::umask(0);
  ::umask(mask);
  constexpr mode_t all_permissions = 07777;
  constexpr mode_t new_file = 0666;
  (void)::fchmod(descriptor, replaces ? status.st_mode & all_permissions : new_file & ~mask);

  if (auto failed = write_new_file(path, fresh_name, descriptor, produce)) return failed;
  std::optional<Failure> failed = keep_backup(target);
  if (!failed && ::rename(fresh_name.c_str(), target.c_str()) != 0) {
    failed = failure(path, "cannot be replaced", errno);
  }
  if (failed) {
    ::unlink(fresh_name.c_str());
    return failed;
  }
  sync_folder(target.has_parent_path() ? target.parent_path() : fs::path("."));
  return std::nullopt;
}

}  // namespace korvel
