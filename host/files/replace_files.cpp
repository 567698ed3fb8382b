#include "host/files/replace_files.h"

#include <cerrno>
#include <cstdint>
#include <deque>
#include <random>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "frame/file_bytes.h"
#include "frame/utf.h"
#include "host/files/disk.h"

namespace korvel {
namespace {

namespace fs = std::filesystem;

using Failure = std::optional<FailedFile>;

Failure write_failure(const fs::path& path, std::wstring reason) {
  return FailedFile{path, FileDirection::Write, std::move(reason)};
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

// How the names of all temporary files of one target begin. They hold a number instead of the
// target's name, which may be as long as names can be.
std::string temporary_prefix(const fs::path& target) {
  constexpr std::uint64_t basis = 0xCBF29CE484222325;  // FNV-1a
  constexpr std::uint64_t prime = 0x100000001B3;
  std::uint64_t number = basis;
  for (const char byte : to_utf8(path_text(target.filename())))
    number = (number ^ static_cast<unsigned char>(byte)) * prime;
  return ".korvel-" + std::to_string(number) + "-";
}

fs::path temporary_beside(const fs::path& target) {
  std::random_device random;
  return target.parent_path() / (temporary_prefix(target) + std::to_string(random()) + ".tmp");
}

// Removes what killed processes left beside the target.
void remove_leftovers(const fs::path& target) {
  const fs::path prefix = temporary_prefix(target);
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  std::vector<fs::path> found;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error); entry != fs::directory_iterator();
       entry.increment(error)) {
    if (entry->path().filename().native().starts_with(prefix.native()))
      found.push_back(entry->path());
  }
  for (const fs::path& path : found)
    disk::remove_if_left(path);
}

// Bytes on their way into an open file. Small pieces are collected, large ones go out as they are.
class FileOutput {
 public:
  explicit FileOutput(const disk::OpenFile& file) : file_(file) { buffer_.reserve(capacity); }

  // False, also from then on: they cannot be written.
  bool write(std::string_view bytes) {
    if (buffer_.size() + bytes.size() > capacity) flush();
    if (bytes.size() > capacity) {
      put(bytes);
    } else {
      buffer_ += bytes;
    }
    return !error_;
  }
  void flush() {
    put(buffer_);
    buffer_.clear();
  }
  [[nodiscard]] std::error_code error() const { return error_; }

 private:
  void put(std::string_view bytes) {
    if (!error_ && !file_.write(bytes)) error_ = disk::last_error();
  }

  static constexpr std::size_t capacity = std::size_t{1} << 20;
  const disk::OpenFile& file_;
  std::string buffer_;
  std::error_code error_;
};

// A file beside a target that goes when this ends, unless it was put in place.
class Temporary {
 public:
  Temporary(fs::path path, disk::OpenFile held) : path_(std::move(path)), held_(std::move(held)) {}
  ~Temporary() {
    held_.close();
    std::error_code ignored;
    if (!path_.empty()) fs::remove(path_, ignored);
  }
  Temporary(const Temporary&) = delete;
  Temporary& operator=(const Temporary&) = delete;

  [[nodiscard]] const disk::OpenFile& file() const { return held_; }

  [[nodiscard]] std::error_code put(const fs::path& target) {
    const std::error_code error = disk::replace(held_, path_, target);
    if (!error) path_.clear();
    return error;
  }

 private:
  fs::path path_;
  disk::OpenFile held_;
};

// One file on its way to its place. The operations come in this order.
class Replacement {
 public:
  explicit Replacement(const NewFile& file) : file_(file), target_(behind_links(file.target)) {
    std::error_code ignored;
    status_ = fs::status(target_, ignored);
  }

  // Or a pipe.
  [[nodiscard]] bool is_device() const {
    return exists() && !fs::is_regular_file(status_) && !fs::is_directory(status_);
  }

  // Why the target is not to be written, found out without touching anything.
  [[nodiscard]] Failure check() const {
    if (fs::is_directory(status_)) return failure(L"it is a folder");
    if (!exists() || is_device()) return std::nullopt;
    return failure_if(disk::why_protected(target_));
  }

  [[nodiscard]] Failure begin() {
    if (is_device()) {
      device_.emplace(disk::open_to_write(target_));
      return device_->is_open() ? std::nullopt : failure_if(disk::last_error());
    }
    remove_leftovers(target_);
    for (;;) {
      fs::path path = temporary_beside(target_);
      disk::OpenFile file = disk::create_held(path);
      if (file.is_open()) {
        fresh_.emplace(std::move(path), std::move(file));
        disk::give_permissions(fresh_->file(), target_);
        return std::nullopt;
      }
      if (errno != EEXIST) return failure_if(disk::last_error());
    }
  }

  // False: the bytes are not wanted any more.
  [[nodiscard]] bool write(Failure& failed) {
    FileOutput output(device_ ? *device_ : fresh_->file());
    const bool wanted =
        file_.produce([&output](std::string_view bytes) { return output.write(bytes); });
    if (wanted) output.flush();
    std::error_code error = output.error();
    if (wanted && !error && fresh_ && !fresh_->file().sync()) error = disk::last_error();
    failed = failure_if(error);
    return wanted || failed;
  }

  // Gives the old file a second name, so that it never goes away before the new one is in place.
  [[nodiscard]] Failure keep_old() {
    if (!exists() || is_device()) return std::nullopt;
    const fs::path path = temporary_beside(target_);
    std::error_code error;
    old_.emplace(path, disk::link_held(target_, path, error));
    if (error) fs::copy_file(target_, path, error);  // file systems without hard links
    return failure_if(error);
  }

  // The second name becomes that under which the old file stays.
  [[nodiscard]] Failure put_old() {
    fs::path backup = target_;
    backup.replace_extension(".bak");
    if (!old_ || backup == target_) return std::nullopt;
    const std::error_code error = old_->put(backup);
    return error ? write_failure(backup, reason_text(error)) : std::nullopt;
  }

  [[nodiscard]] Failure put_new() {
    return fresh_ ? failure_if(fresh_->put(target_)) : std::nullopt;
  }

  void take_back_new() {
    std::error_code ignored;
    if (old_) {
      (void)old_->put(target_);
    } else if (!is_device()) {
      fs::remove(target_, ignored);
    }
  }

 private:
  [[nodiscard]] bool exists() const { return fs::exists(status_); }
  [[nodiscard]] Failure failure(std::wstring reason) const {
    return write_failure(file_.target, std::move(reason));
  }
  [[nodiscard]] Failure failure_if(std::error_code error) const {
    return error ? failure(reason_text(error)) : std::nullopt;
  }

  const NewFile& file_;
  fs::path target_;
  fs::file_status status_;
  std::optional<disk::OpenFile> device_;
  std::optional<Temporary> fresh_;
  std::optional<Temporary> old_;
};

enum class Backup { None, Kept };

using Replacements = std::deque<Replacement>;

// False: it failed, or the bytes are not wanted. What a device has got cannot be taken back, so
// devices come last.
bool write_all(Replacements& replacements, Failure& failed) {
  for (const bool devices : {false, true}) {
    for (Replacement& replacement : replacements) {
      if (replacement.is_device() != devices) continue;
      if (!replacement.write(failed) || failed) return false;
    }
  }
  return true;
}

Failure keep_old_files(Replacements& replacements, Backup backup) {
  for (Replacement& replacement : replacements) {
    Failure failed = replacement.keep_old();
    if (!failed && backup == Backup::Kept) failed = replacement.put_old();
    if (failed) return failed;
  }
  return std::nullopt;
}

Failure put_all(Replacements& replacements) {
  for (std::size_t i = 0; i < replacements.size(); ++i) {
    Failure failed = replacements[i].put_new();
    if (!failed) continue;
    while (i-- > 0)
      replacements[i].take_back_new();
    return failed;
  }
  return std::nullopt;
}

Failure replace(std::span<const NewFile> files, Backup backup) {
  std::optional<disk::InterruptsHeld> interrupts_held;  // until nothing is left over
  Replacements replacements;
  for (const NewFile& file : files) {
    const Replacement& added = replacements.emplace_back(file);
    if (Failure failed = added.check()) return failed;
    // Who waits at a pipe must be able to leave.
    if (!added.is_device() && !interrupts_held) interrupts_held.emplace();
  }
  Failure failed;
  for (Replacement& replacement : replacements) {
    if ((failed = replacement.begin())) return failed;
  }
  if (!write_all(replacements, failed)) return failed;
  const bool keeps_old = backup == Backup::Kept || files.size() > 1;
  if (keeps_old && (failed = keep_old_files(replacements, backup))) return failed;
  return put_all(replacements);
}

}  // namespace

std::optional<FailedFile> replace_files(std::span<const NewFile> files) {
  return replace(files, Backup::None);
}

std::optional<FailedFile> replace_drawing_file(const NewFile& file) {
  if (Replacement(file).is_device()) {
    return write_failure(file.target, L"it is not a file but a device");
  }
  return replace({&file, 1}, Backup::Kept);
}

}  // namespace korvel
