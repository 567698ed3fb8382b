// Files on Windows.
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <mutex>
#include <random>
#include <share.h>
#include <string>
#include <sys/stat.h>
#include <windows.h>

#include "host/standalone/disk.h"

namespace korvel::disk {
namespace {

namespace fs = std::filesystem;

// What the library's reading and writing take at once.
constexpr std::size_t most_at_once = std::size_t{1} << 30;

HANDLE handle_of(const OpenFile& file) {
  return reinterpret_cast<HANDLE>(_get_osfhandle(file.descriptor()));  // NOLINT: what it returns
}

// Held while a file is on its way. The system calls the handler in a thread of its own, which may
// wait; then the handlers entered before have their turn.
std::mutex& on_the_way() {
  static std::mutex mutex;
  return mutex;
}

BOOL WINAPI wait_for_the_file(DWORD /*event*/) {
  const std::lock_guard wait(on_the_way());
  return FALSE;
}

}  // namespace

std::ptrdiff_t OpenFile::read(char* to, std::size_t most) const {
  return _read(descriptor_, to, static_cast<unsigned>(std::min(most, most_at_once)));
}

bool OpenFile::write(std::string_view bytes) const {
  while (!bytes.empty()) {
    const std::string_view piece = bytes.substr(0, most_at_once);
    const int written = _write(descriptor_, piece.data(), static_cast<unsigned>(piece.size()));
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool OpenFile::sync() const { return _commit(descriptor_) == 0; }  // FlushFileBuffers

bool OpenFile::close() {
  if (descriptor_ < 0) return true;
  const int closed = _close(descriptor_);
  descriptor_ = -1;
  return closed == 0;
}

int open_to_read(const fs::path& path) {
  return _wopen(path.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT);
}

std::optional<Status> status_of(const OpenFile& file) {
  const DWORD type = GetFileType(handle_of(file));
  if (type != FILE_TYPE_DISK) return Status{type == FILE_TYPE_PIPE ? Kind::Pipe : Kind::Device};
  LARGE_INTEGER size{};
  if (GetFileSizeEx(handle_of(file), &size) == 0) return std::nullopt;
  return Status{Kind::RegularFile, static_cast<std::uint64_t>(size.QuadPart)};
}

NewFile create_beside(const fs::path& target) {
  constexpr int flags = _O_WRONLY | _O_BINARY | _O_CREAT | _O_EXCL | _O_NOINHERIT;
  std::random_device random;
  NewFile file;
  do {
    file.path = target;
    file.path += "." + std::to_string(random());
    file.descriptor = _wsopen(file.path.c_str(), flags, _SH_DENYNO, _S_IREAD | _S_IWRITE);
  } while (file.descriptor < 0 && errno == EEXIST);
  return file;
}

// A new file has what its folder grants, which is what a file there is meant to have.
void give_permissions(const OpenFile& /*file*/, const fs::path& /*target*/) {}

std::error_code replace(const fs::path& fresh, const fs::path& target) {
  constexpr DWORD flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
  if (MoveFileExW(fresh.c_str(), target.c_str(), flags) != 0) return {};
  return {static_cast<int>(GetLastError()), std::system_category()};
}

std::uint64_t physical_memory() {
  MEMORYSTATUSEX memory{};
  memory.dwLength = sizeof memory;
  return GlobalMemoryStatusEx(&memory) != 0 ? memory.ullTotalPhys : 0;
}

struct InterruptsHeld::Former {
  std::unique_lock<std::mutex> lock{on_the_way()};
};

InterruptsHeld::InterruptsHeld() : former_(std::make_unique<Former>()) {
  SetConsoleCtrlHandler(wait_for_the_file, TRUE);
}

InterruptsHeld::~InterruptsHeld() {
  former_->lock.unlock();  // first, since removing waits for a handler that runs
  SetConsoleCtrlHandler(wait_for_the_file, FALSE);
}

}  // namespace korvel::disk
