// Reads polylines of all kinds and what is drawn like them.
#include <optional>
#include <utility>

#include "host/standalone/entity_shapes.h"

namespace korvel {
namespace {

// Bits of group 70 of POLYLINE.
constexpr std::int64_t closed_bit = 1;
constexpr std::int64_t three_d_bit = 8;
constexpr std::int64_t mesh_bit = 16;
constexpr std::int64_t polyface_bit = 64;
constexpr std::int64_t linetype_bit = 128;  // LWPOLYLINE has it too

// Bits of group 70 of VERTEX.
constexpr std::int64_t frame_control_bit = 16;
constexpr std::int64_t mesh_vertex_bit = 64;
constexpr std::int64_t polyface_vertex_bit = 128;

struct PolylineHead {
  std::int64_t flags = 0;
  std::optional<double> elevation;
  double start_width = 0;  // of vertices that have none of their own
  double end_width = 0;
  Extrusion extrusion;
};

PolylineHead read_head(EntityRecords& records) {
  PolylineHead head;
  dxf::Group group;
  while (records.next(group)) {
    if (group.code == 70) head.flags = group.integer();
    if (group.code == 30) head.elevation = group.real();
    if (group.code == 40) head.start_width = group.real();
    if (group.code == 41) head.end_width = group.real();
    head.extrusion.take(group);
  }
  return head;
}

bool is_mesh(const PolylineHead& head) { return (head.flags & (mesh_bit | polyface_bit)) != 0; }

struct FileVertex {
  Vertex vertex;
  std::int64_t flags = 0;
};

FileVertex read_vertex(EntityRecords& records, const PolylineHead& head) {
  FileVertex read;
  read.vertex.start_width = head.start_width;
  read.vertex.end_width = head.end_width;
  dxf::Group group;
  while (records.next(group)) {
    if (take_point(group, 10, read.vertex.point)) continue;
    if (group.code == 40) read.vertex.start_width = group.real();
    if (group.code == 41) read.vertex.end_width = group.real();
    if (group.code == 42) read.vertex.bulge = group.real();
    if (group.code == 70) read.flags = group.integer();
  }
  return read;
}

// False for control points of the frame and for the faces of a polyface mesh.
bool is_on_shape(std::int64_t vertex_flags) {
  const bool is_face =
      (vertex_flags & polyface_vertex_bit) != 0 && (vertex_flags & mesh_vertex_bit) == 0;
  return (vertex_flags & frame_control_bit) == 0 && !is_face;
}

// What follows the x of a lightweight polyline's vertex.
bool take_vertex(const dxf::Group& group, Vertex& vertex) {
  switch (group.code) {
    case 20:
      vertex.point.y = group.real();
      return true;
    case 40:
      vertex.start_width = group.real();
      return true;
    case 41:
      vertex.end_width = group.real();
      return true;
    case 42:
      vertex.bulge = group.real();
      return true;
    default:
      return false;
  }
}

}  // namespace

EntityGeometry read_lwpolyline(EntityRecords& records, const dxf::TextCodec&) {
  PolylineShape line;
  double elevation = 0;
  double constant_width = 0;
  Extrusion extrusion;
  dxf::Group group;
  while (records.next(group)) {
    if (group.code == 10) {
      line.vertices.push_back({{group.real(), 0, 0}, 0, constant_width, constant_width});
    } else if (group.code == 38) {
      elevation = group.real();
    } else if (group.code == 43) {
      constant_width = group.real();
    } else if (group.code == 70) {
      line.closed = (group.integer() & closed_bit) != 0;
      line.linetype_runs_on = (group.integer() & linetype_bit) != 0;
    } else if (line.vertices.empty() || !take_vertex(group, line.vertices.back())) {
      extrusion.take(group);
    }
  }
  const PlaneToWorld world(extrusion.normal);
  for (Vertex& vertex : line.vertices) {
    vertex.point.z = elevation;
    vertex.point = world(vertex.point);
  }
  line.normal = world.normal();
  return {std::move(line), extrusion.thickness};
}

EntityGeometry read_polyline(EntityRecords& records, const dxf::TextCodec&) {
  const PolylineHead head = read_head(records);
  if (is_mesh(head)) return {};
  const bool is_plane = (head.flags & three_d_bit) == 0;

  PolylineShape line;
  line.kind = is_plane ? PolylineKind::Old2d : PolylineKind::ThreeD;
  line.closed = (head.flags & closed_bit) != 0;
  const PlaneToWorld world(is_plane ? head.extrusion.normal : Vector3{});
  line.normal = world.normal();
  line.linetype_runs_on = is_plane && (head.flags & linetype_bit) != 0;

  while (records.next_record() && records.type() == "VERTEX") {
    FileVertex read = read_vertex(records, head);
    if (!is_on_shape(read.flags)) continue;
    if (is_plane) {
      if (head.elevation) read.vertex.point.z = *head.elevation;
      read.vertex.point = world(read.vertex.point);
    } else {
      read.vertex = {read.vertex.point};
    }
    line.vertices.push_back(read.vertex);
  }
  return {std::move(line), head.extrusion.thickness};
}

EntityGeometry read_mesh(EntityRecords& records, const dxf::TextCodec&) {
  const PolylineHead head = read_head(records);
  if (!is_mesh(head)) return {};
  PolylineShape line;
  line.kind = PolylineKind::ThreeD;
  while (records.next_record() && records.type() == "VERTEX") {
    const FileVertex read = read_vertex(records, head);
    if (is_on_shape(read.flags)) line.vertices.push_back({read.vertex.point});
  }
  return {std::move(line)};
}

EntityGeometry read_leader(EntityRecords& records, const dxf::TextCodec&) {
  std::vector<Point3> points;
  dxf::Group group;
  while (records.next(group))
    take_point(group, 10, points);

  PolylineShape line;
  line.kind = PolylineKind::ThreeD;
  line.vertices.reserve(points.size());
  for (const Point3& point : points)
    line.vertices.push_back({point, 0});
  return {std::move(line)};
}

EntityGeometry read_mline(EntityRecords& records, const dxf::TextCodec&) {
  constexpr std::int64_t closed_mline_bit = 2;
  MlineShape line;
  dxf::Group group;
  while (records.next(group)) {
    if (group.code == 71) {
      line.closed = (group.integer() & closed_mline_bit) != 0;
    } else {
      take_point(group, 11, line.vertices);
    }
  }
  return {std::move(line)};
}

}  // namespace korvel
