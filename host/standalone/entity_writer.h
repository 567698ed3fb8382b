// Writes new entities, and changed properties of existing ones, as the bytes of a drawing file.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "frame/entity_geometry.h"
#include "host/standalone/drawing.h"
#include "host/standalone/dxf/group_writer.h"
#include "host/standalone/dxf/text_codec.h"

namespace korvel {

// What a new entity needs to know of the drawing it goes into. Handles are digits as the file
// spells them.
struct NewEntityPlace {
  const dxf::Manner& manner;
  const dxf::TextCodec& codec;
  bool subclass_markers = true;       // R13 and later
  bool lightweight_polylines = true;  // R14 and later; else plane polylines are old-style ones
  std::string owner = {};             // BLOCK_RECORD of the space; empty: none is written
  std::function<std::string()> new_handle;  // answers none where the file's objects have none
};

struct NewEntity {
  std::string bytes;  // the entity with its parts
  std::string handle;
};

// The entity whose type suits the shape: POINT, LINE, CIRCLE or ARC, ELLIPSE (but in R12),
// LWPOLYLINE or POLYLINE, TEXT, INSERT. None for the other shapes and for a polyline without
// vertices. The vertices of a plane polyline are taken to lie in the plane of the first. Without
// subclass markers there are no linetype scale, lineweight and true colour either, as those
// versions have none.
[[nodiscard]] std::optional<NewEntity> write_entity(const EntityGeometry& geometry,
                                                    const EntityProperties& properties,
                                                    const NewEntityPlace& place);

// The entity in another shape: of the type that suits it, with the handle, the extension
// dictionary, the properties and the XDATA it had. Parts (vertices) are new. None as for
// write_entity.
[[nodiscard]] std::optional<std::string> with_geometry(std::string_view entity_bytes,
                                                       const EntityGeometry& geometry,
                                                       const NewEntityPlace& place);

// A new entity in this shape with the properties and the XDATA of another, but without its
// extension dictionary and reactors.
[[nodiscard]] std::optional<NewEntity> copied_with_geometry(std::string_view entity_bytes,
                                                            const EntityGeometry& geometry,
                                                            const NewEntityPlace& place);

// The entity with other properties. Only the head record changes, and in it only the groups of
// properties whose values change; names are compared without case. A property that becomes the
// default loses its group, a missing group is put where its place is.
[[nodiscard]] std::string with_properties(std::string_view entity_bytes,
                                          const EntityProperties& properties,
                                          const dxf::Manner& manner, const dxf::TextCodec& codec);

// Whether groups of this code say the same of entities of all types: layer, colour, space and such.
[[nodiscard]] bool is_common_property(int code);

// Writes the group of one property (8, 6, 62, 48, 420, 370, 430); nothing for the default, which
// only the layer has none of.
void write_property(int code, const EntityProperties& properties, dxf::GroupWriter& writer);

}  // namespace korvel
