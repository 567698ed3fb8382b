// Writes new entities.
#include "host/standalone/entity_writer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

#include "geometry/elliptic_arc.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

constexpr double degrees_per_radian = 180 / std::numbers::pi;
constexpr Vector3 plan_normal{0, 0, 1};

// Degrees from 0 up to but not including 360.
double angle_in_degrees(double radians) {
  const double degrees = std::fmod(radians * degrees_per_radian, 360.0);
  const double positive = degrees < 0 ? degrees + 360 : degrees;
  return positive < 360 ? positive : 0;
}

// Adding 0 makes a zero of a negative one.
Point3 to_plane(const PlaneFrame& frame, Point3 world) {
  const Point3 ocs = from_world(frame, world);
  return {ocs.x + 0.0, ocs.y + 0.0, ocs.z + 0.0};
}

class EntityWriter {
 public:
  EntityWriter(const EntityProperties& properties, const NewEntityPlace& place)
      : properties_(properties), place_(place), groups_(place.manner, place.codec, out_) {}

  EntityWriter(const EntityWriter&) = delete;
  EntityWriter& operator=(const EntityWriter&) = delete;
  ~EntityWriter() = default;

  // False when no entity type suits the shape.
  bool write(const EntityGeometry& geometry) {
    thickness_ = geometry.thickness;
    return std::visit([this](const auto& shape) { return write_shape(shape); }, geometry.shape);
  }

  NewEntity result() { return {std::move(out_), handle_}; }

 private:
  template <class Unsuitable>
  bool write_shape(const Unsuitable&) {
    return false;
  }

  bool write_shape(const PointShape& point) {
    begin_entity("POINT");
    marker("AcDbPoint");
    groups_.point(10, point.position);
    write_thickness();
    write_normal(point.normal);
    return true;
  }

  bool write_shape(const LineShape& line) {
    begin_entity("LINE");
    marker("AcDbLine");
    write_thickness();
    groups_.point(10, line.start);
    groups_.point(11, line.end);
    write_normal(line.normal);
    return true;
  }

  bool write_shape(const ArcShape& arc) {
    const bool is_circle = is_whole_turn(arc.sweep);
    const PlaneFrame frame = plane_frame(arc.normal);
    begin_entity(is_circle ? "CIRCLE" : "ARC");
    marker("AcDbCircle");
    write_thickness();
    groups_.point(10, to_plane(frame, arc.center));
    groups_.real(40, arc.radius);
    write_normal(frame.normal);
    if (is_circle) return true;
    const double start = std::atan2(dot(arc.start, frame.y), dot(arc.start, frame.x));
    marker("AcDbArc");
    groups_.real(50, angle_in_degrees(start));
    groups_.real(51, angle_in_degrees(start + arc.sweep));
    return true;
  }

  bool write_shape(const EllipseShape& ellipse) {
    if (!place_.subclass_markers) return false;  // R12 has none
    begin_entity("ELLIPSE");
    marker("AcDbEllipse");
    groups_.point(10, ellipse.center);
    groups_.point(11, {ellipse.major.x, ellipse.major.y, ellipse.major.z});
    groups_.point(210, {ellipse.normal.x, ellipse.normal.y, ellipse.normal.z});
    groups_.real(40, ellipse.ratio);
    groups_.real(41, ellipse.start);
    groups_.real(42, ellipse.end);
    return true;
  }

  bool write_shape(const PolylineShape& line) {
    if (line.vertices.empty()) return false;
    if (line.kind == PolylineKind::ThreeD) {
      write_3d_polyline(line);
    } else if (line.kind == PolylineKind::Light && place_.lightweight_polylines) {
      write_lwpolyline(line);
    } else {
      write_2d_polyline(line);
    }
    return true;
  }

  bool write_shape(const TextShape& text) {
    const PlaneFrame frame = plane_frame(text.normal);
    begin_entity("TEXT");
    marker("AcDbText");
    write_thickness();
    groups_.point(10, to_plane(frame, text.position));
    groups_.real(40, text.height);
    groups_.text(1, text.text);
    write_rotation(text.rotation);
    if (text.width_factor != 1) groups_.real(41, text.width_factor);
    write_normal(frame.normal);
    marker("AcDbText");
    return true;
  }

  bool write_shape(const BlockReferenceShape& reference) {
    const PlaneFrame frame = plane_frame(reference.normal);
    const bool is_array = reference.columns > 1 || reference.rows > 1;
    begin_entity("INSERT");
    marker(is_array ? "AcDbMInsertBlock" : "AcDbBlockReference");
    groups_.text(2, reference.block);
    groups_.point(10, to_plane(frame, reference.position));
    if (reference.scale.x != 1) groups_.real(41, reference.scale.x);
    if (reference.scale.y != 1) groups_.real(42, reference.scale.y);
    if (reference.scale.z != 1) groups_.real(43, reference.scale.z);
    write_rotation(reference.rotation);
    if (is_array) {
      groups_.integer(70, reference.columns);
      groups_.integer(71, reference.rows);
      groups_.real(44, reference.column_spacing);
      groups_.real(45, reference.row_spacing);
    }
    write_normal(frame.normal);
    return true;
  }

  void write_lwpolyline(const PolylineShape& line) {
    const PlaneFrame frame = plane_frame(line.normal);
    const double elevation = to_plane(frame, line.vertices.front().point).z;
    begin_entity("LWPOLYLINE");
    marker("AcDbPolyline");
    groups_.integer(90, static_cast<std::int64_t>(line.vertices.size()));
    groups_.integer(70, flags_of(line));
    const double first_width = line.vertices.front().start_width;
    const bool constant_width = std::ranges::all_of(line.vertices, [&](const Vertex& vertex) {
      return vertex.start_width == first_width && vertex.end_width == first_width;
    });
    if (constant_width && first_width != 0) groups_.real(43, first_width);
    if (elevation != 0) groups_.real(38, elevation);
    write_thickness();
    for (const Vertex& vertex : line.vertices) {
      const Point3 ocs = to_plane(frame, vertex.point);
      groups_.real(10, ocs.x);
      groups_.real(20, ocs.y);
      if (!constant_width) write_widths(vertex);
      if (vertex.bulge != 0) groups_.real(42, vertex.bulge);
    }
    write_normal(frame.normal);
  }

  void write_2d_polyline(const PolylineShape& line) {
    const PlaneFrame frame = plane_frame(line.normal);
    const double elevation = to_plane(frame, line.vertices.front().point).z;
    const std::string owner =
        begin_polyline("AcDb2dPolyline", elevation, flags_of(line), frame.normal);
    for (const Vertex& vertex : line.vertices) {
      const Point3 ocs = to_plane(frame, vertex.point);
      begin_vertex(owner, "AcDb2dVertex");
      groups_.point(10, {ocs.x, ocs.y, elevation});
      write_widths(vertex);
      if (vertex.bulge != 0) groups_.real(42, vertex.bulge);
    }
    begin_record("SEQEND", owner);
  }

  static int flags_of(const PolylineShape& line) {
    return (line.closed ? 1 : 0) | (line.linetype_runs_on ? 128 : 0);
  }

  void write_widths(const Vertex& vertex) {
    if (vertex.start_width == 0 && vertex.end_width == 0) return;
    groups_.real(40, vertex.start_width);
    groups_.real(41, vertex.end_width);
  }

  void write_3d_polyline(const PolylineShape& line) {
    const std::string owner = begin_polyline("AcDb3dPolyline", 0, line.closed ? 9 : 8, plan_normal);
    for (const Vertex& vertex : line.vertices) {
      begin_vertex(owner, "AcDb3dPolylineVertex");
      groups_.point(10, vertex.point);
      groups_.integer(70, 32);
    }
    begin_record("SEQEND", owner);
  }

  // The answer is what the vertices and the SEQEND name as their owner.
  std::string begin_polyline(std::string_view subclass, double elevation, int flags,
                             Vector3 normal) {
    begin_entity("POLYLINE");
    marker(subclass);
    groups_.integer(66, 1);
    groups_.point(10, {0, 0, elevation});
    write_thickness();
    if (flags != 0) groups_.integer(70, flags);
    write_normal(normal);
    return place_.owner.empty() ? std::string{} : handle_;
  }

  void begin_vertex(std::string_view owner, std::string_view subclass) {
    begin_record("VERTEX", owner);
    marker("AcDbVertex");
    marker(subclass);
  }

  void begin_entity(std::string_view type) { handle_ = begin_record(type, place_.owner); }

  std::string begin_record(std::string_view type, std::string_view owner) {
    constexpr std::array<int, 3> properties_of_all_versions{8, 6, 62};
    constexpr std::array<int, 7> properties_since_r13{8, 6, 62, 48, 420, 370, 430};
    std::string handle = place_.new_handle();
    groups_.raw(0, type);
    if (!handle.empty()) groups_.raw(5, handle);
    if (!owner.empty()) groups_.raw(330, owner);
    marker("AcDbEntity");
    const auto write_all = [this](const auto& codes) {
      for (const int code : codes)
        write_property(code, properties_, groups_);
    };
    if (place_.subclass_markers) {
      write_all(properties_since_r13);
    } else {
      write_all(properties_of_all_versions);
    }
    return handle;
  }

  void marker(std::string_view subclass) {
    if (place_.subclass_markers) groups_.raw(100, subclass);
  }

  void write_thickness() {
    if (thickness_ != 0) groups_.real(39, thickness_);
  }

  void write_rotation(double radians) {
    const double degrees = angle_in_degrees(radians);
    if (degrees != 0) groups_.real(50, degrees);
  }

  void write_normal(Vector3 normal) {
    if (normal != plan_normal) groups_.point(210, {normal.x, normal.y, normal.z});
  }

  const EntityProperties& properties_;
  const NewEntityPlace& place_;
  std::string out_;
  dxf::GroupWriter groups_;
  std::string handle_;
  double thickness_ = 0;
};

}  // namespace

std::optional<NewEntity> write_entity(const EntityGeometry& geometry,
                                      const EntityProperties& properties,
                                      const NewEntityPlace& place) {
  EntityWriter writer(properties, place);
  if (!writer.write(geometry)) return std::nullopt;
  return writer.result();
}

}  // namespace korvel
