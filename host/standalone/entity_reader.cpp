// Finds the reader of an entity's type.
#include "host/standalone/entity_reader.h"

#include <array>
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
constexpr std::array<ShapeReader, 23> shape_readers{{
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
    {"DIMENSION", read_dimension},
    {"SPLINE", read_spline},
    {"ELLIPSE", read_ellipse},
    {"SOLID", read_solid},
    {"TRACE", read_solid},
    {"3DFACE", read_3d_face},
    {"LEADER", read_leader},
    {"MLINE", read_mline},
    {"ATTDEF", read_text},
    {"HELIX", read_spline},
    {"ACAD_TABLE", read_table},
    {"ARC_DIMENSION", read_dimension},
    {"LARGE_RADIAL_DIMENSION", read_dimension},
}};

}  // namespace

EntityGeometry read_geometry(dxf::GroupReader groups, const dxf::TextCodec& codec) {
  EntityRecords records(groups);
  if (!records.next_record()) return {};
  for (const ShapeReader& reader : shape_readers) {
    if (reader.type == records.type()) return reader.read(records, codec);
  }
  return {};
}

}  // namespace korvel
