// Finds the reader of an entity's type.
#include "host/standalone/entity_reader.h"

#include <array>
#include <span>
#include <string_view>

#include "host/standalone/entity_records.h"
#include "host/standalone/entity_shapes.h"

namespace korvel {
namespace {

struct ShapeReader {
  std::string_view type;
  EntityGeometry (*read)(EntityRecords&, const dxf::TextCodec&);
};

// The usual ones first.
constexpr std::array<ShapeReader, 20> shape_readers{{
    {"LWPOLYLINE", read_lwpolyline},
    {"LINE", read_line},
    {"INSERT", read_insert},
    {"TEXT", read_text},
    {"POLYLINE", read_polyline},
    {"POINT", read_point},
    {"ARC", read_arc},
    {"CIRCLE", read_circle},
    {"MTEXT", read_mtext},
    {"HATCH", read_hatch},
    {"MPOLYGON", read_mpolygon},
    {"SPLINE", read_spline},
    {"ELLIPSE", read_ellipse},
    {"SOLID", read_solid},
    {"TRACE", read_solid},
    {"3DFACE", read_3d_face},
    {"MLINE", read_mline},
    {"ATTDEF", read_text},
    {"HELIX", read_spline},
    {"ACAD_TABLE", read_table},
}};

// Of entities that have no shape.
constexpr std::array<ShapeReader, 5> picture_readers{{
    {"DIMENSION", read_dimension},
    {"LEADER", read_leader},
    {"POLYLINE", read_mesh},
    {"ARC_DIMENSION", read_dimension},
    {"LARGE_RADIAL_DIMENSION", read_dimension},
}};

EntityGeometry read_by(std::span<const ShapeReader> readers, dxf::GroupReader groups,
                       const dxf::TextCodec& codec) {
  EntityRecords records(groups);
  if (!records.next_record()) return {};
  for (const ShapeReader& reader : readers) {
    if (reader.type == records.type()) return reader.read(records, codec);
  }
  return {};
}

}  // namespace

EntityGeometry read_geometry(dxf::GroupReader groups, const dxf::TextCodec& codec) {
  return read_by(shape_readers, groups, codec);
}

EntityGeometry read_picture(dxf::GroupReader groups, const dxf::TextCodec& codec) {
  EntityGeometry geometry = read_geometry(groups, codec);
  const bool has_shape = !std::holds_alternative<std::monostate>(geometry.shape);
  return has_shape ? geometry : read_by(picture_readers, groups, codec);
}

}  // namespace korvel
