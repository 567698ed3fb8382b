// Reads points, lines, single curves, plates and references to blocks.
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "geometry/elliptic_arc.h"
#include "host/standalone/entity_shapes.h"

namespace korvel {
namespace {

constexpr int most_cells = 32767;  // rows or columns; they are 16-bit numbers

// Start and sweep in degrees, the sweep above 0 and at most 360.
ArcShape arc_in_plane(Point3 center, double radius, const Extrusion& extrusion, double start,
                      double sweep) {
  const PlaneToWorld world(extrusion.normal);
  const double angle = start * radians_per_degree;
  const PlaneFrame& frame = world.frame();
  return {.center = world(center),
          .normal = frame.normal,
          .start = std::cos(angle) * frame.x + std::sin(angle) * frame.y,
          .radius = std::abs(radius),
          .sweep = sweep == 360 ? whole_turn : sweep * radians_per_degree};
}

double sweep_between(double start, double end) {
  const double sweep = std::fmod(end - start, 360.0);
  return sweep > 0 ? sweep : sweep + 360;
}

// A fourth corner that is missing is the third once more, which makes a triangle.
class Corners {
 public:
  bool take(const dxf::Group& group) {
    for (std::size_t i = 0; i < corners_.size(); ++i) {
      if (!take_point(group, static_cast<int>(10 + i), corners_[i])) continue;
      if (i == 3) has_fourth_ = true;
      return true;
    }
    return false;
  }

  [[nodiscard]] std::vector<Point3> in_order(const std::array<std::size_t, 4>& order,
                                             const PlaneToWorld& world) const {
    const bool is_triangle = !has_fourth_ || corners_[3] == corners_[2];
    std::vector<Point3> points;
    points.reserve(corners_.size());
    for (const std::size_t index : order) {
      if (index != 3 || !is_triangle) points.push_back(world(corners_[index]));
    }
    return points;
  }

 private:
  std::array<Point3, 4> corners_{};
  bool has_fourth_ = false;
};

int cell_count(const dxf::Group& group) {
  return static_cast<int>(std::clamp<std::int64_t>(group.integer(1), 1, most_cells));
}

bool take_reference(const dxf::Group& group, const dxf::TextCodec& codec,
                    BlockReferenceShape& reference) {
  switch (group.code) {
    case 2:
      codec.decode(group.value, reference.block);
      return true;
    case 41:
      reference.scale.x = group.real(1);
      return true;
    case 42:
      reference.scale.y = group.real(1);
      return true;
    case 43:
      reference.scale.z = group.real(1);
      return true;
    case 44:
      reference.column_spacing = group.real();
      return true;
    case 45:
      reference.row_spacing = group.real();
      return true;
    case 50:
      reference.rotation = group.real() * radians_per_degree;
      return true;
    case 70:
      reference.columns = cell_count(group);
      return true;
    case 71:
      reference.rows = cell_count(group);
      return true;
    default:
      return take_point(group, 10, reference.position);
  }
}

void place_in_world(BlockReferenceShape& reference, const Extrusion& extrusion) {
  const PlaneToWorld world(extrusion.normal);
  reference.position = world(reference.position);
  reference.normal = world.normal();
}

}  // namespace

EntityGeometry read_point(EntityRecords& records, const dxf::TextCodec&) {
  PointShape point;
  Extrusion extrusion;
  dxf::Group group;
  while (records.next(group)) {
    if (!take_point(group, 10, point.position)) extrusion.take(group);
  }
  point.normal = PlaneToWorld(extrusion.normal).normal();
  return {point, extrusion.thickness};
}

EntityGeometry read_line(EntityRecords& records, const dxf::TextCodec&) {
  LineShape line;
  Extrusion extrusion;
  dxf::Group group;
  while (records.next(group)) {
    if (take_point(group, 10, line.start) || take_point(group, 11, line.end)) continue;
    extrusion.take(group);
  }
  line.normal = PlaneToWorld(extrusion.normal).normal();
  return {line, extrusion.thickness};
}

EntityGeometry read_circle(EntityRecords& records, const dxf::TextCodec&) {
  Point3 center;
  double radius = 0;
  Extrusion extrusion;
  dxf::Group group;
  while (records.next(group)) {
    if (take_point(group, 10, center) || extrusion.take(group)) continue;
    if (group.code == 40) radius = group.real();
  }
  return {arc_in_plane(center, radius, extrusion, 0, 360), extrusion.thickness};
}

EntityGeometry read_arc(EntityRecords& records, const dxf::TextCodec&) {
  Point3 center;
  double radius = 0;
  double start = 0;
  double end = 360;
  Extrusion extrusion;
  dxf::Group group;
  while (records.next(group)) {
    if (take_point(group, 10, center) || extrusion.take(group)) continue;
    if (group.code == 40) radius = group.real();
    if (group.code == 50) start = group.real();
    if (group.code == 51) end = group.real();
  }
  const double sweep = sweep_between(start, end);
  return {arc_in_plane(center, radius, extrusion, start, sweep), extrusion.thickness};
}

EntityGeometry read_ellipse(EntityRecords& records, const dxf::TextCodec&) {
  EllipseShape ellipse;
  ellipse.end = whole_turn;
  Point3 major;
  Extrusion extrusion;
  dxf::Group group;
  while (records.next(group)) {
    if (take_point(group, 10, ellipse.center) || take_point(group, 11, major)) continue;
    if (group.code == 40) ellipse.ratio = group.real(1);
    if (group.code == 41) ellipse.start = group.real();
    if (group.code == 42) ellipse.end = group.real();
    extrusion.take(group);
  }
  ellipse.major = major - Point3{};
  ellipse.normal = normalise(extrusion.normal);
  return {ellipse, extrusion.thickness};
}

EntityGeometry read_spline(EntityRecords& records, const dxf::TextCodec&) {
  SplineShape spline;
  dxf::Group group;
  while (records.next(group)) {
    // A helix goes on with its axis and radius under the same codes.
    if (group.code == 100 && group.value == "AcDbHelix") break;
    switch (group.code) {
      case 40:
        spline.knots.push_back(group.real());
        break;
      case 41:
        spline.weights.push_back(group.real());
        break;
      case 70:
        spline.closed = (group.integer() & 1) != 0;
        break;
      case 71:
        spline.degree = static_cast<int>(std::clamp<std::int64_t>(group.integer(), 0, 100));
        break;
      default:
        if (!take_point(group, 10, spline.control_points)) {
          take_point(group, 11, spline.fit_points);
        }
    }
  }
  return {std::move(spline)};
}

EntityGeometry read_solid(EntityRecords& records, const dxf::TextCodec&) {
  Corners corners;
  Extrusion extrusion;
  dxf::Group group;
  while (records.next(group)) {
    if (!corners.take(group)) extrusion.take(group);
  }
  // The file has them from one side to the other, not round about.
  return {FaceShape{corners.in_order({0, 1, 3, 2}, PlaneToWorld(extrusion.normal))},
          extrusion.thickness};
}

EntityGeometry read_3d_face(EntityRecords& records, const dxf::TextCodec&) {
  Corners corners;
  dxf::Group group;
  while (records.next(group))
    corners.take(group);
  return {FaceShape{corners.in_order({0, 1, 2, 3}, PlaneToWorld({0, 0, 1}))}};
}

EntityGeometry read_insert(EntityRecords& records, const dxf::TextCodec& codec) {
  BlockReferenceShape reference;
  Extrusion extrusion;
  dxf::Group group;
  while (records.next(group)) {
    if (!take_reference(group, codec, reference)) extrusion.take(group);
  }
  place_in_world(reference, extrusion);
  return {std::move(reference)};
}

EntityGeometry read_dimension(EntityRecords& records, const dxf::TextCodec& codec) {
  dxf::Group group;
  while (records.next(group)) {
    if (group.code != 2) continue;
    // The block is drawn in world coordinates.
    BlockReferenceShape reference;
    codec.decode(group.value, reference.block);
    return {std::move(reference)};
  }
  return {};
}

EntityGeometry read_table(EntityRecords& records, const dxf::TextCodec& codec) {
  BlockReferenceShape reference;
  Extrusion extrusion;
  dxf::Group group;
  while (records.next(group)) {
    // The cells that follow use the same codes.
    if (group.code == 100 && group.value == "AcDbTable") break;
    if (!take_reference(group, codec, reference)) extrusion.take(group);
  }
  // The direction of the rows is the table's first group 11.
  std::vector<Point3> direction;
  while (records.next(group) && group.code != 91)
    take_point(group, 11, direction);
  place_in_world(reference, extrusion);
  if (!direction.empty()) {
    const PlaneFrame frame = plane_frame(reference.normal);
    const Vector3 along = direction.front() - Point3{};
    reference.rotation = std::atan2(dot(along, frame.y), dot(along, frame.x));
  }
  return {std::move(reference)};
}

}  // namespace korvel
