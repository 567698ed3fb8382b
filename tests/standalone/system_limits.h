// What tests do to the operating system to make files fail; false where it has no such thing.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace korvel::test {

[[nodiscard]] bool make_pipe(const std::filesystem::path& path);

// A file of that size that takes no room.
[[nodiscard]] bool make_hollow_file(const std::filesystem::path& path, std::int64_t size);

// While one exists, no file grows beyond 64 KiB.
class SmallFiles {
 public:
  SmallFiles();
  ~SmallFiles();
  SmallFiles(const SmallFiles&) = delete;
  SmallFiles& operator=(const SmallFiles&) = delete;
  [[nodiscard]] bool in_force() const { return in_force_; }

 private:
  bool in_force_ = false;
};

// What the process takes from the permissions of new files; the former. None: there is none.
std::optional<unsigned> change_file_mask(unsigned mask);

}  // namespace korvel::test
