// Files on POSIX systems.
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "host/standalone/disk.h"

namespace korvel::disk {

namespace fs = std::filesystem;

std::ptrdiff_t OpenFile::read(char* to, std::size_t most) const {
  for (;;) {
    const ssize_t got = ::read(descriptor_, to, most);
    if (got >= 0 || errno != EINTR) return got;
  }
}

bool OpenFile::write(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool OpenFile::sync() const { return ::fsync(descriptor_) == 0; }

bool OpenFile::close() {
  if (descriptor_ < 0) return true;
  const int closed = ::close(descriptor_);
  descriptor_ = -1;
  return closed == 0;
}

int open_to_read(const fs::path& path) { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC); }

std::optional<Status> status_of(const OpenFile& file) {
  struct stat status {};
  if (::fstat(file.descriptor(), &status) != 0) return std::nullopt;
  const Kind kind = S_ISREG(status.st_mode)    ? Kind::RegularFile
                    : S_ISFIFO(status.st_mode) ? Kind::Pipe
                                               : Kind::Device;
  return Status{kind, static_cast<std::uint64_t>(status.st_size)};
}

NewFile create_beside(const fs::path& target) {
  std::string name = target.string() + ".XXXXXX";
  const int descriptor = ::mkstemp(name.data());
  return {descriptor, name};
}

void give_permissions(const OpenFile& file, const fs::path& target) {
  struct stat status {};
  const bool replaces = ::stat(target.c_str(), &status) == 0;
  const mode_t mask = ::umask(0);
  ::umask(mask);
  constexpr mode_t all_permissions = 07777;
  constexpr mode_t new_file = 0666;
  (void)::fchmod(file.descriptor(), replaces ? status.st_mode & all_permissions : new_file & ~mask);
}

std::error_code replace(const fs::path& fresh, const fs::path& target) {
  std::error_code error;
  fs::rename(fresh, target, error);
  if (error) return error;
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  const OpenFile opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY));
  if (opened.is_open()) (void)opened.sync();
  return {};
}

std::uint64_t physical_memory() {
  return static_cast<std::uint64_t>(::sysconf(_SC_PHYS_PAGES)) *
         static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
}

struct InterruptsHeld::Former {
  sigset_t signals{};
};

InterruptsHeld::InterruptsHeld() : former_(std::make_unique<Former>()) {
  sigset_t held;
  sigemptyset(&held);
  sigaddset(&held, SIGINT);
  sigaddset(&held, SIGTERM);
  pthread_sigmask(SIG_BLOCK, &held, &former_->signals);
  // A limit on the size of files is to be an error of write(), not the end of the program.
  (void)std::signal(SIGXFSZ, SIG_IGN);
}

InterruptsHeld::~InterruptsHeld() { pthread_sigmask(SIG_SETMASK, &former_->signals, nullptr); }

}  // namespace korvel::disk
