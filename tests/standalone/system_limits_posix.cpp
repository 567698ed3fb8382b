// Limits and pipes of POSIX systems.
#include <csignal>
#include <fstream>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/standalone/system_limits.h"

namespace korvel::test {
namespace {

bool limit_files_to(rlim_t size) {
  rlimit limit{};
  if (::getrlimit(RLIMIT_FSIZE, &limit) != 0) return false;
  limit.rlim_cur = size;
  return ::setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

}  // namespace

bool make_pipe(const std::filesystem::path& path) { return ::mkfifo(path.c_str(), 0600) == 0; }

bool make_hollow_file(const std::filesystem::path& path, std::int64_t size) {
  std::ofstream(path).close();
  return ::truncate(path.c_str(), off_t{size}) == 0;
}

SmallFiles::SmallFiles() {
  (void)std::signal(SIGXFSZ, SIG_IGN);
  in_force_ = limit_files_to(65536);
}

SmallFiles::~SmallFiles() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_FSIZE, &limit) == 0) limit_files_to(limit.rlim_max);
  (void)std::signal(SIGXFSZ, SIG_DFL);
}

std::optional<unsigned> change_file_mask(unsigned mask) { return ::umask(mask); }

}  // namespace korvel::test
