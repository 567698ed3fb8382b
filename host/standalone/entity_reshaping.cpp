// Gives existing entities another shape.
#include "host/standalone/entity_reader.h"
#include "host/standalone/entity_writer.h"

namespace korvel {
namespace {

// Where the pieces of an entity's head record stand.
struct HeadPlaces {
  std::size_t type_end = 0;    // behind the group 0
  std::size_t shape = 0;       // first group of the entity's type
  std::size_t xdata = 0;       // first group of the XDATA, or the end of the record
  std::size_t record_end = 0;  // the next record, or the end of the entity
};

HeadPlaces places_in(std::string_view bytes, dxf::Framing framing) {
  dxf::GroupReader reader(bytes, framing);
  HeadPlaces places;
  dxf::Group group;
  (void)reader.next(group);
  places.type_end = group.end;
  places.record_end = bytes.size();
  while (reader.next(group)) {
    if (group.code == 0) {
      places.record_end = group.begin;
      break;
    }
    const bool is_marker = group.code == 100 && group.value != "AcDbEntity";
    if (is_marker && places.shape == 0) places.shape = group.begin;
    if (group.code >= 1000 && places.xdata == 0) places.xdata = group.begin;
  }
  if (places.xdata == 0) places.xdata = places.record_end;
  if (places.shape == 0) places.shape = places.xdata;
  return places;
}

}  // namespace

std::optional<std::string> with_geometry(std::string_view entity_bytes,
                                         const EntityGeometry& geometry,
                                         const NewEntityPlace& place) {
  const dxf::Framing framing = place.manner.framing;
  dxf::GroupReader groups(entity_bytes, framing);
  const EntityProperties properties = read_properties(groups, place.codec);
  std::uint64_t handle = 0;
  for (dxf::Group group; handle == 0 && groups.next(group) && group.code != 100;) {
    if (group.code == 5) handle = group.handle();
  }
  // The vertices of a polyline are owned by the entity, whose handle is not a new one.
  bool given = false;
  NewEntityPlace same_place = place;
  same_place.new_handle = [&] { return std::exchange(given, true) ? place.new_handle() : handle; };
  const std::optional<NewEntity> written = write_entity(geometry, properties, same_place);
  if (!written) return std::nullopt;
  const std::string_view fresh = written->bytes;
  const HeadPlaces old = places_in(entity_bytes, framing);
  const HeadPlaces now = places_in(fresh, framing);

  std::string bytes;
  if (place.subclass_markers) {
    bytes += fresh.substr(0, now.type_end);
    bytes += entity_bytes.substr(old.type_end, old.shape - old.type_end);
    bytes += fresh.substr(now.shape, now.xdata - now.shape);
  } else {
    bytes += fresh.substr(0, now.record_end);
  }
  bytes += entity_bytes.substr(old.xdata, old.record_end - old.xdata);
  bytes += fresh.substr(now.record_end);
  return with_properties(bytes, properties, place.manner, place.codec);
}

}  // namespace korvel
