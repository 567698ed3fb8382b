// Texts that lie in entities, or near them, written into the object data of those.
#pragma once

#include <cstddef>
#include <string>

#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

struct TextColumn {
  std::wstring table;
  std::wstring column;
  double tolerance = 0;  // how far from its outline an entity reaches; finite, not negative
};

struct TextCounts {
  std::size_t completed = 0;
  std::size_t entities = 0;  // those that open for reading
  // Entities with a record of the table and, in reach of them, no text or more than one.
  std::size_t out_of_range = 0;
  std::size_t multiple = 0;
};

// Writes into the first record of the table on each entity the one text of which the insertion
// point is in its reach: in its area, or no farther from its outline than the tolerance, in plan
// view. A justified text counts by the point it is aligned to, a block reference as a point. Texts
// are the single-line and multiline texts of model space on layers that are thawed and on, locked
// ones included, without their formatting; the entity itself is none of them. The document is to be
// locked. Throws Interrupted before it writes anything.
TextCounts set_texts(ODStore& store, DrawingHost& host, const EntityList& entities,
                     const TextColumn& column);

}  // namespace korvel
