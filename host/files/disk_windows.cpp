// Files on Windows.
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <io.h>
#include <mutex>
#include <share.h>
#include <sys/stat.h>
#include <windows.h>

#include "host/files/disk.h"

namespace korvel::disk {
namespace {

namespace fs = std::filesystem;

// What the library's reading and writing take at once.
constexpr std::size_t most_at_once = std::size_t{1} << 30;

HANDLE handle_of(const OpenFile& file) {
  return reinterpret_cast<HANDLE>(_get_osfhandle(file.descriptor()));  // NOLINT: what it returns
}

std::atomic<bool> waits = false;  // NOLINT: written by a handler

// Held while a file is on its way. The system calls the handler in a thread of its own, which may
// wait; then the handlers entered before have their turn.
std::mutex& on_the_way() {
  static std::mutex mutex;
  return mutex;
}

BOOL WINAPI wait_for_the_file(DWORD /*event*/) {
  waits = true;
  const std::lock_guard wait(on_the_way());
  waits = false;
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

int open_to_write(const fs::path& path) {
  return _wopen(path.c_str(), _O_WRONLY | _O_BINARY | _O_NOINHERIT);
}

std::optional<Stamp> stamp_of(const fs::path& path) {
  constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  HANDLE const file = CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, shared, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return std::nullopt;
  BY_HANDLE_FILE_INFORMATION about{};
  const bool known = GetFileInformationByHandle(file, &about) != 0;
  CloseHandle(file);
  if (!known) return std::nullopt;
  const auto joined = [](DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; };
  return Stamp{about.dwVolumeSerialNumber, joined(about.nFileIndexHigh, about.nFileIndexLow),
               joined(about.nFileSizeHigh, about.nFileSizeLow),
               static_cast<std::int64_t>(joined(about.ftLastWriteTime.dwHighDateTime,
                                                about.ftLastWriteTime.dwLowDateTime))};
}

std::error_code why_protected(const fs::path& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  const bool is_protected =
      attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
  return is_protected ? std::make_error_code(std::errc::permission_denied) : std::error_code{};
}

// Nobody else can open it, and so not delete it, while it is open.
OpenFile create_held(const fs::path& path) {
  constexpr int flags = _O_WRONLY | _O_BINARY | _O_CREAT | _O_EXCL | _O_NOINHERIT;
  return OpenFile(_wsopen(path.c_str(), flags, _SH_DENYRW, _S_IREAD | _S_IWRITE));
}

// The file has to stay open to others; its second name is there for moments only.
OpenFile link_held(const fs::path& file, const fs::path& second, std::error_code& error) {
  fs::create_hard_link(file, second, error);
  return OpenFile(-1);
}

void remove_if_left(const fs::path& path) { DeleteFileW(path.c_str()); }

// A new file has what its folder grants, which is what a file there is meant to have.
void give_permissions(const OpenFile& /*file*/, const fs::path& /*target*/) {}

// A file that nobody else can open has to be closed first.
std::error_code replace(OpenFile& file, const fs::path& fresh, const fs::path& target) {
  constexpr DWORD flags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
  file.close();
  if (MoveFileExW(fresh.c_str(), target.c_str(), flags) == 0) {
    return {static_cast<int>(GetLastError()), std::system_category()};
  }
  DeleteFileW(fresh.c_str());  // if both were names of one file
  return {};
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

bool interrupt_waits() { return waits; }

}  // namespace korvel::disk
