// Objects of a drawing copied together with what they own.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/standalone/dxf/document.h"

namespace korvel {

// The object and what it owns, and what that owns, each once, owners first: of the OBJECTS section,
// not erased. What says that it has another owner is left out, and so is what `is_kept` names.
[[nodiscard]] std::vector<dxf::ItemIndex> owned_objects(
    const dxf::Document& document, std::uint64_t handle,
    const std::function<bool(dxf::ItemIndex)>& is_kept, std::unordered_set<std::uint64_t>& visited);

struct CopiedObject {
  std::uint64_t handle = 0;  // of the original
  std::string bytes;
};

// An object with all that it owns, the object itself first.
struct ObjectTree {
  std::uint64_t owner = 0;       // as the object says
  std::uint64_t dictionary = 0;  // whose entry it is
  std::vector<CopiedObject> objects;
};

// The bytes of one object of the tree for another place: `handles[i]` is the new handle of object
// i, `dictionary` that of the dictionary of which the tree becomes an entry. References within the
// tree, to its owner and to its dictionary as a reactor follow; all others stay.
[[nodiscard]] std::string replanted(const ObjectTree& tree, std::size_t object,
                                    const std::vector<std::uint64_t>& handles,
                                    std::uint64_t dictionary, const dxf::Document& document);

}  // namespace korvel
