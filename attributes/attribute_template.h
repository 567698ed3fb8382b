// Writes the beginnings of a mapping file: what blocks and tables there are, with a placeholder for
// each field that only the user can know.
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>

#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

// The tags met on the references of each block, both in ordinal order.
using BlockCatalogue = std::map<std::wstring, std::set<std::wstring>>;

// Of those of the entities that are block references with attributes.
[[nodiscard]] BlockCatalogue block_catalogue(DrawingHost& host, const EntityList& entities);

struct AttributeTemplate {
  std::wstring text;       // lines ending in "\n"
  std::size_t tables = 0;  // user tables, in the drawing's order
};

[[nodiscard]] AttributeTemplate attribute_template(const BlockCatalogue& blocks,
                                                   const ODStore& store);

}  // namespace korvel
