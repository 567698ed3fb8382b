// Windows has none of these.
#include "tests/standalone/system_limits.h"

namespace korvel::test {

bool make_pipe(const std::filesystem::path& /*path*/) { return false; }

bool make_hollow_file(const std::filesystem::path& /*path*/, std::int64_t /*size*/) {
  return false;
}

SmallFiles::SmallFiles() = default;
SmallFiles::~SmallFiles() = default;

std::optional<unsigned> change_file_mask(unsigned /*mask*/) { return std::nullopt; }

}  // namespace korvel::test
