// Files as the operating system has them; each system has its own version of these operations.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace korvel::disk {

// Closes what it holds. Operations that fail leave the reason in errno.
class OpenFile {
 public:
  explicit OpenFile(int descriptor) : descriptor_(descriptor) {}
  ~OpenFile() { (void)close(); }
  OpenFile(OpenFile&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  OpenFile& operator=(OpenFile&&) = delete;

  [[nodiscard]] bool is_open() const { return descriptor_ >= 0; }
  [[nodiscard]] int descriptor() const { return descriptor_; }

  // At most so many bytes; 0 at the end, -1 on failure.
  [[nodiscard]] std::ptrdiff_t read(char* to, std::size_t most) const;
  [[nodiscard]] bool write(std::string_view bytes) const;
  // Whatever was written is on the disk.
  [[nodiscard]] bool sync() const;
  bool close();

 private:
  int descriptor_;
};

// The reason in errno.
[[nodiscard]] inline std::error_code last_error() { return {errno, std::generic_category()}; }

// The descriptor, or -1 and the reason in errno.
[[nodiscard]] int open_to_read(const std::filesystem::path& path);
// The same of a device or a pipe, which are written as they are.
[[nodiscard]] int open_to_write(const std::filesystem::path& path);

enum class Kind { RegularFile, Pipe, Device };
struct Status {
  Kind kind = Kind::Device;
  std::uint64_t size = 0;  // a hint: 0 for pipes
};
[[nodiscard]] std::optional<Status> status_of(const OpenFile& file);

// Differs when the content of a file may differ, without reading it.
struct Stamp {
  std::uint64_t volume = 0;
  std::uint64_t file = 0;  // its number on the volume
  std::uint64_t size = 0;
  std::int64_t written = 0;  // when, in the finest unit that the system has

  friend bool operator==(const Stamp&, const Stamp&) = default;
};
// None: there is no such file.
[[nodiscard]] std::optional<Stamp> stamp_of(const std::filesystem::path& path);

// Why an existing file is not to be replaced, although its folder may allow it: it is
// write-protected. No error: it may.
[[nodiscard]] std::error_code why_protected(const std::filesystem::path& path);

// A temporary file, held by a lock until it is closed. Its descriptor is -1 on failure, with the
// reason in errno; then there is no file.
[[nodiscard]] OpenFile create_held(const std::filesystem::path& path);

// Gives a file a second name, under which it is held in the same way as far as the system can.
[[nodiscard]] OpenFile link_held(const std::filesystem::path& file,
                                 const std::filesystem::path& second, std::error_code& error);

// Removes a temporary file that no process holds.
void remove_if_left(const std::filesystem::path& path);

// Lets the new file be used by those who may use `target`, or any new file if there is none.
void give_permissions(const OpenFile& file, const std::filesystem::path& target);

// Renames `file`, which is `fresh`, to `target`, whatever is there, and waits until the disk knows
// it.
[[nodiscard]] std::error_code replace(OpenFile& file, const std::filesystem::path& fresh,
                                      const std::filesystem::path& target);

// In bytes.
[[nodiscard]] std::uint64_t physical_memory();

// While one exists, Ctrl+C and other signals that end the program wait.
class InterruptsHeld {
 public:
  InterruptsHeld();
  ~InterruptsHeld();
  InterruptsHeld(const InterruptsHeld&) = delete;
  InterruptsHeld& operator=(const InterruptsHeld&) = delete;

 private:
  struct Former;
  std::unique_ptr<Former> former_;
};

// Whether such a signal waits.
[[nodiscard]] bool interrupt_waits();

}  // namespace korvel::disk
