// Files as the operating system has them; each system has its own version of these operations.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>

namespace korvel::disk {

// Closes what it holds. Operations that fail leave the reason in errno.
class OpenFile {
 public:
  explicit OpenFile(int descriptor) : descriptor_(descriptor) {}
  ~OpenFile() { (void)close(); }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;

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

// The descriptor, or -1 and the reason in errno.
[[nodiscard]] int open_to_read(const std::filesystem::path& path);

enum class Kind { RegularFile, Pipe, Device };
struct Status {
  Kind kind = Kind::Device;
  std::uint64_t size = 0;  // a hint: 0 for pipes
};
[[nodiscard]] std::optional<Status> status_of(const OpenFile& file);

// A new file in the same folder under a name of its own. Its descriptor is -1 on failure, with the
// reason in errno.
struct NewFile {
  int descriptor = -1;
  std::filesystem::path path;
};
[[nodiscard]] NewFile create_beside(const std::filesystem::path& target);

// Lets the new file be used by those who may use `target`, or any new file if there is none.
void give_permissions(const OpenFile& file, const std::filesystem::path& target);

// Renames `fresh` to `target`, whatever stood there, and waits until the disk knows it.
[[nodiscard]] std::error_code replace(const std::filesystem::path& fresh,
                                      const std::filesystem::path& target);

// In bytes.
[[nodiscard]] std::uint64_t physical_memory();

// While one exists, Ctrl+C and the end of the program that others wish wait.
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

}  // namespace korvel::disk
