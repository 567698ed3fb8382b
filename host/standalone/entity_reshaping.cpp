// Gives existing entities, or copies of them, another shape.
#include "host/standalone/dxf/number_text.h"
#include "host/standalone/entity_reader.h"
#include "host/standalone/entity_writer.h"

namespace korvel {
namespace {

// An entity in pieces.
struct Pieces {
  std::string_view type;    // the group 0
  std::string identity;     // handle, application groups, owner
  bool has_marker = false;  // whether the properties begin with a subclass marker
  std::string properties;
  std::string shape;  // what entities of its type have
  std::string_view xdata;
  std::string_view parts;  // the records behind the head
};

// Without a marker in front of the shape only the codes tell what all entities share.
void split(dxf::GroupReader groups, std::string_view head, bool holds_shape, Pieces& pieces) {
  bool in_application_groups = false;
  for (dxf::Group group; groups.next(group) && group.end <= head.size();) {
    const std::string_view bytes = head.substr(group.begin, group.end - group.begin);
    const bool is_owner = group.code == 330 && pieces.shape.empty();
    const bool is_identity =
        in_application_groups || group.code == 102 || group.code == 5 || is_owner;
    if (is_identity && !pieces.has_marker) {
      pieces.identity += bytes;
    } else if (!holds_shape || group.code == 100 || is_common_property(group.code)) {
      pieces.has_marker |= group.code == 100;
      pieces.properties += bytes;
    } else {
      pieces.shape += bytes;
    }
    if (group.code == 102) in_application_groups = !in_application_groups;
  }
}

Pieces pieces_of(std::string_view bytes, dxf::Framing framing) {
  dxf::GroupReader reader(bytes, framing);
  Pieces pieces;
  dxf::Group group;
  (void)reader.next(group);
  const dxf::GroupReader behind_type = reader;
  pieces.type = bytes.substr(0, group.end);
  std::size_t shape = 0;  // its first marker, 0: there is none
  std::size_t xdata = 0;
  std::size_t record_end = bytes.size();
  while (reader.next(group)) {
    if (group.code == 0) {
      record_end = group.begin;
      break;
    }
    const bool is_marker = group.code == 100 && group.value != "AcDbEntity";
    if (is_marker && shape == 0) shape = group.begin;
    if (group.code >= 1000 && xdata == 0) xdata = group.begin;
  }
  if (xdata == 0) xdata = record_end;
  pieces.xdata = bytes.substr(xdata, record_end - xdata);
  pieces.parts = bytes.substr(record_end);
  if (shape == 0) {
    split(behind_type, bytes.substr(0, xdata), true, pieces);
  } else {
    split(behind_type, bytes.substr(0, shape), false, pieces);
    pieces.has_marker = true;
    pieces.shape = bytes.substr(shape, xdata - shape);
  }
  return pieces;
}

// `shape` is an entity that was written anew.
std::string joined(const std::string& identity, const Pieces& old, const Pieces& shape,
                   const EntityProperties& properties, const NewEntityPlace& place) {
  std::string bytes(shape.type);
  bytes += identity;
  if (place.subclass_markers && !old.has_marker) {
    dxf::GroupWriter(place.manner, place.codec, bytes).raw(100, "AcDbEntity");
  }
  bytes += old.properties;
  bytes += shape.shape;
  bytes += old.xdata;
  bytes += shape.parts;
  return with_properties(bytes, properties, place.manner, place.codec);
}

}  // namespace

std::optional<std::string> with_geometry(std::string_view entity_bytes,
                                         const EntityGeometry& geometry,
                                         const NewEntityPlace& place) {
  const dxf::Framing framing = place.manner.framing;
  dxf::GroupReader groups(entity_bytes, framing);
  const EntityProperties properties = read_properties(groups, place.codec);
  std::string handle;
  for (dxf::Group group; handle.empty() && groups.next(group) && group.code != 100;) {
    if (group.code == 5) handle = dxf::trimmed(group.value);
  }
  // The vertices of a polyline are owned by the entity, whose handle is not a new one.
  bool given = false;
  NewEntityPlace same_place = place;
  same_place.new_handle = [&] { return std::exchange(given, true) ? place.new_handle() : handle; };
  const std::optional<NewEntity> written = write_entity(geometry, properties, same_place);
  if (!written) return std::nullopt;
  const Pieces old = pieces_of(entity_bytes, framing);
  const Pieces fresh = pieces_of(written->bytes, framing);

  return joined(old.identity, old, fresh, properties, place);
}

std::optional<NewEntity> copied_with_geometry(std::string_view entity_bytes,
                                              const EntityGeometry& geometry,
                                              const NewEntityPlace& place) {
  const dxf::Framing framing = place.manner.framing;
  const EntityProperties properties = read_properties({entity_bytes, framing}, place.codec);
  std::optional<NewEntity> written = write_entity(geometry, properties, place);
  if (!written) return std::nullopt;
  const Pieces old = pieces_of(entity_bytes, framing);
  const Pieces fresh = pieces_of(written->bytes, framing);
  return NewEntity{joined(fresh.identity, old, fresh, properties, place), written->handle};
}

}  // namespace korvel
