// Moves values between the attributes of block references and their object data.
//
// Both write, so the document is to be locked around them. Entities that are no block references,
// and references of blocks without a mapping, are passed over. Tags are compared exactly. The user
// may interrupt either of them; what is done by then stays done and is counted.
#pragma once

#include <cstddef>

#include "attributes/attribute_mapping.h"
#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

struct AttributeTransfer {
  std::size_t made = 0;        // records attached, or attribute texts set
  std::size_t references = 0;  // whose block has a mapping

  friend bool operator==(const AttributeTransfer&, const AttributeTransfer&) = default;
};

// Reads attribute texts into every record of the mapped tables. A reference that carries no record
// of such a table gets one, with the table's defaults. Of several attributes of one tag the first
// counts. A column stays as it is when the reference lacks its attribute or the text says no value
// of the column's type.
AttributeTransfer load_attributes(const AttributeMapping& mapping, ODStore& store,
                                  DrawingHost& host, const EntityList& entities);

// Writes the values of the mapped columns into the attributes, all those of the tag. Of several
// records of one table each is written in turn, so that the last one stays; each counts.
AttributeTransfer store_attributes(const AttributeMapping& mapping, ODStore& store,
                                   DrawingHost& host, const EntityList& entities);

}  // namespace korvel
