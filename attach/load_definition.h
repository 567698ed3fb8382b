// Brings the table definitions of another drawing file into the active drawing, and nothing else of
// it.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

enum class DefinitionLoad {
  Copied,
  AlreadyThere,  // with the same definition
  DoesNotMatch,  // there with another one, and left as it is
  Refused,
  NotReached  // the user interrupted
};

struct LoadedDefinition {
  std::wstring table;
  DefinitionLoad result;
};

// Copies the definitions of all user tables of the file, in its order; one that does not come over
// keeps none of the others back. None, and nothing changed, when the file cannot be read as a
// drawing. The file is only read, and let go before this returns. Throws Interrupted before it
// changes anything.
[[nodiscard]] std::optional<std::vector<LoadedDefinition>> load_definitions(
    DrawingHost& host, ODStore& store, const std::filesystem::path& file);

}  // namespace korvel
