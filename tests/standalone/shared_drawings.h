// A folder of drawings that CAD programs wrote, where one is at hand: KORVEL_SHARED_DRAWINGS, else
// ../shared/drawings beside the sources.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace korvel::test {

// Empty when there is no such folder.
inline std::vector<std::filesystem::path> shared_drawings() {
  namespace fs = std::filesystem;
  const char* const given = std::getenv("KORVEL_SHARED_DRAWINGS");
  const fs::path folder =
      given != nullptr ? fs::path(given) : fs::path(KORVEL_SOURCE_DIR) / "../shared/drawings";
  std::vector<fs::path> drawings;
  if (!fs::is_directory(folder)) return drawings;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
    if (entry.path().extension() == ".dxf") drawings.push_back(entry.path());
  }
  std::sort(drawings.begin(), drawings.end());
  return drawings;
}

}  // namespace korvel::test
