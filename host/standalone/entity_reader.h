// What the groups of an entity say: its shape and its properties.
//
// The groups given are those of one entity: the head record from its group 0 on, then the VERTEX or
// ATTRIB records that belong to it. Nothing in them is trusted: counts are not used, unreadable
// numbers are 0, what is missing has its default.
#pragma once

#include "frame/entity_geometry.h"
#include "host/standalone/drawing.h"
#include "host/standalone/dxf/group.h"
#include "host/standalone/dxf/text_codec.h"

namespace korvel {

// The shape in world coordinates. Dimensions, leaders, meshes, rays, construction lines, proxies
// and types that are not known have none.
[[nodiscard]] EntityGeometry read_geometry(dxf::GroupReader groups, const dxf::TextCodec& codec);

// What is seen of the entity: its shape; for dimensions, a reference to the block that pictures
// them; for leaders and meshes, the 3D polyline of their vertices.
[[nodiscard]] EntityGeometry read_picture(dxf::GroupReader groups, const dxf::TextCodec& codec);

// The properties of the head record.
[[nodiscard]] EntityProperties read_properties(dxf::GroupReader groups,
                                               const dxf::TextCodec& codec);

}  // namespace korvel
