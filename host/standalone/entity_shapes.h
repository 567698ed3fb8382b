// Readers of the shapes of the entity types, by family; each reads the record it is given.
#pragma once

#include "frame/entity_geometry.h"
#include "host/standalone/dxf/text_codec.h"
#include "host/standalone/entity_records.h"

namespace korvel {

[[nodiscard]] EntityGeometry read_point(EntityRecords& records, const dxf::TextCodec& codec);
[[nodiscard]] EntityGeometry read_line(EntityRecords& records, const dxf::TextCodec& codec);
[[nodiscard]] EntityGeometry read_circle(EntityRecords& records, const dxf::TextCodec& codec);
[[nodiscard]] EntityGeometry read_arc(EntityRecords& records, const dxf::TextCodec& codec);
[[nodiscard]] EntityGeometry read_ellipse(EntityRecords& records, const dxf::TextCodec& codec);
[[nodiscard]] EntityGeometry read_spline(EntityRecords& records, const dxf::TextCodec& codec);

// SOLID and TRACE; 3DFACE.
[[nodiscard]] EntityGeometry read_solid(EntityRecords& records, const dxf::TextCodec& codec);
[[nodiscard]] EntityGeometry read_3d_face(EntityRecords& records, const dxf::TextCodec& codec);

[[nodiscard]] EntityGeometry read_lwpolyline(EntityRecords& records, const dxf::TextCodec& codec);
// POLYLINE is a polyline or else a mesh, polygon or polyface; what it is not has no shape.
[[nodiscard]] EntityGeometry read_polyline(EntityRecords& records, const dxf::TextCodec& codec);
[[nodiscard]] EntityGeometry read_mesh(EntityRecords& records, const dxf::TextCodec& codec);
[[nodiscard]] EntityGeometry read_leader(EntityRecords& records, const dxf::TextCodec& codec);
[[nodiscard]] EntityGeometry read_mline(EntityRecords& records, const dxf::TextCodec& codec);

[[nodiscard]] EntityGeometry read_text(EntityRecords& records, const dxf::TextCodec& codec);
[[nodiscard]] EntityGeometry read_mtext(EntityRecords& records, const dxf::TextCodec& codec);

[[nodiscard]] EntityGeometry read_hatch(EntityRecords& records, const dxf::TextCodec& codec);
[[nodiscard]] EntityGeometry read_mpolygon(EntityRecords& records, const dxf::TextCodec& codec);

[[nodiscard]] EntityGeometry read_insert(EntityRecords& records, const dxf::TextCodec& codec);
[[nodiscard]] EntityGeometry read_dimension(EntityRecords& records, const dxf::TextCodec& codec);
[[nodiscard]] EntityGeometry read_table(EntityRecords& records, const dxf::TextCodec& codec);

}  // namespace korvel
