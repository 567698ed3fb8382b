// Files on POSIX systems.
#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "host/files/disk.h"

namespace korvel::disk {
namespace {

namespace fs = std::filesystem;

constexpr std::array held_signals = {SIGHUP, SIGINT, SIGTERM};
constexpr mode_t owner_only = 0600;
constexpr mode_t any_write = 0222;

bool try_lock(const OpenFile& file, int how) {
  return ::flock(file.descriptor(), how | LOCK_NB) == 0;
}

bool is_at(const fs::path& path, const OpenFile& file) {
  struct stat there {};
  struct stat opened {};
  return ::stat(path.c_str(), &there) == 0 && ::fstat(file.descriptor(), &opened) == 0 &&
         there.st_dev == opened.st_dev && there.st_ino == opened.st_ino;
}

}  // namespace

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

int open_to_write(const fs::path& path) { return ::open(path.c_str(), O_WRONLY | O_CLOEXEC); }

std::optional<Status> status_of(const OpenFile& file) {
  struct stat status {};
  if (::fstat(file.descriptor(), &status) != 0) return std::nullopt;
  const Kind kind = S_ISREG(status.st_mode)    ? Kind::RegularFile
                    : S_ISFIFO(status.st_mode) ? Kind::Pipe
                                               : Kind::Device;
  return Status{kind, static_cast<std::uint64_t>(status.st_size)};
}

std::optional<Stamp> stamp_of(const fs::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  constexpr std::int64_t in_a_second = 1'000'000'000;
  return Stamp{static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
               static_cast<std::uint64_t>(status.st_size),
               status.st_mtim.tv_sec * in_a_second + status.st_mtim.tv_nsec};
}

// The superuser may write everything, so the file's own permissions are looked at, too.
std::error_code why_protected(const fs::path& path) {
  if (::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) return last_error();
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return last_error();
  if ((status.st_mode & any_write) == 0) return std::make_error_code(std::errc::permission_denied);
  return {};
}

// Between the making and the locking another process may take the file for one that was left.
OpenFile create_held(const fs::path& path) {
  OpenFile file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, owner_only));
  if (!file.is_open()) return file;
  struct stat status {};
  const bool taken = !try_lock(file, LOCK_SH) && errno == EWOULDBLOCK;
  if (!taken && ::fstat(file.descriptor(), &status) == 0 && status.st_nlink > 0) return file;
  file.close();
  errno = EEXIST;
  return file;
}

OpenFile link_held(const fs::path& file, const fs::path& second, std::error_code& error) {
  for (;;) {
    OpenFile held(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    if (held.is_open()) (void)try_lock(held, LOCK_SH);
    fs::create_hard_link(file, second, error);
    if (error || !held.is_open() || is_at(second, held)) return held;
    (void)::unlink(second.c_str());  // another process has replaced the file meanwhile
  }
}

void remove_if_left(const fs::path& path) {
  const OpenFile file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (file.is_open() && try_lock(file, LOCK_EX)) (void)::unlink(path.c_str());
}

// Who is in the group of the new file only has what everybody has, unless it is the old one's.
void give_permissions(const OpenFile& file, const fs::path& target) {
  struct stat status {};
  const bool replaces = ::stat(target.c_str(), &status) == 0;
  const mode_t mask = ::umask(0);
  ::umask(mask);
  constexpr mode_t all_permissions = 07777;
  constexpr mode_t new_file = 0666;
  mode_t permissions = replaces ? status.st_mode & all_permissions : new_file & ~mask;
  const bool kept = !replaces || ::fchown(file.descriptor(), status.st_uid, status.st_gid) == 0 ||
                    ::fchown(file.descriptor(), uid_t(-1), status.st_gid) == 0;
  if (!kept) permissions &= ~mode_t{S_IRWXG} | (permissions & S_IRWXO) << 3;
  (void)::fchmod(file.descriptor(), permissions);
}

std::error_code replace(OpenFile& /*file*/, const fs::path& fresh, const fs::path& target) {
  std::error_code error;
  fs::rename(fresh, target, error);
  if (error) return error;
  // Renaming one name of a file to another one of it does nothing.
  (void)::unlink(fresh.c_str());
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  const OpenFile opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
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

namespace {

// As under nohup. Such a signal would stay pending while it is held, as if it had an effect.
bool is_ignored(int signal) {
  struct sigaction action {};
  return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

InterruptsHeld::InterruptsHeld() : former_(std::make_unique<Former>()) {
  sigset_t held;
  sigemptyset(&held);
  for (const int signal : held_signals) {
    if (!is_ignored(signal)) sigaddset(&held, signal);
  }
  pthread_sigmask(SIG_BLOCK, &held, &former_->signals);
  // A limit on the size of files is to be an error of write(), not the end of the program.
  (void)std::signal(SIGXFSZ, SIG_IGN);
}

InterruptsHeld::~InterruptsHeld() { pthread_sigmask(SIG_SETMASK, &former_->signals, nullptr); }

bool interrupt_waits() {
  sigset_t waiting;
  if (sigpending(&waiting) != 0) return false;
  return std::ranges::any_of(held_signals,
                             [&](int signal) { return sigismember(&waiting, signal) == 1; });
}

}  // namespace korvel::disk
