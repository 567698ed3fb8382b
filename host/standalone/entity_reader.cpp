// Finds the reader of an entity's type and reads the attributes of block references.
#include "host/standalone/entity_reader.h"

#include <array>
#include <string_view>
#include <utility>

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

AttributeText read_attribute(EntityRecords& records, const dxf::TextCodec& codec) {
  AttributeText attribute;
  dxf::Group group;
  while (records.next(group)) {
    if (group.code == 1) codec.decode(group.value, attribute.text);
    if (group.code == 2) codec.decode(group.value, attribute.tag);
  }
  // The embedded object of a multi-line attribute has the text; the attribute itself has a blank.
  std::wstring paragraphs;
  bool is_multi_line = false;
  while (records.next_embedded(group)) {
    if (group.code != 1 && group.code != 3) continue;
    paragraphs += codec.decode(group.value);
    is_multi_line = true;
  }
  if (is_multi_line) attribute.text = std::move(paragraphs);
  return attribute;
}

}  // namespace

EntityGeometry read_geometry(dxf::GroupReader groups, const dxf::TextCodec& codec) {
  EntityRecords records(groups);
  if (!records.next_record()) return {};
  for (const ShapeReader& reader : shape_readers) {
    if (reader.type == records.type()) return reader.read(records, codec);
  }
  return {};
}

std::vector<AttributeText> read_attributes(dxf::GroupReader groups, const dxf::TextCodec& codec) {
  std::vector<AttributeText> attributes;
  EntityRecords records(groups);
  if (!records.next_record() || records.type() != "INSERT") return attributes;
  while (records.next_record() && records.type() == "ATTRIB") {
    attributes.push_back(read_attribute(records, codec));
  }
  return attributes;
}

}  // namespace korvel
