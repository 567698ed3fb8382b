#include "host/console/paths.h"

#include <system_error>

namespace korvel {

bool is_there(const std::filesystem::path& path) {
  std::error_code ignored;
  return std::filesystem::exists(path, ignored);
}

bool is_folder(const std::filesystem::path& path) {
  std::error_code ignored;
  return std::filesystem::is_directory(path, ignored);
}

bool is_no_file(const std::filesystem::path& path) {
  std::error_code ignored;
  const std::filesystem::file_status status = std::filesystem::status(path, ignored);
  return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
}

bool replaces_another(const std::filesystem::path& target, const std::filesystem::path& own) {
  if (!is_there(target)) return false;
  std::error_code ignored;
  return own.empty() || !std::filesystem::equivalent(target, own, ignored);
}

}  // namespace korvel
