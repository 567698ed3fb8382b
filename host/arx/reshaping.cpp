#include "host/arx/reshaping.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <memory>
#include <utility>

#include "geometry/elliptic_arc.h"
#include "geometry/vector.h"
#include "host/arx/ge_values.h"
#include "host/arx/geometry.h"
#include "host/arx/guards.h"
#include "host/arx/object_ids.h"
#include "host/arx/parts.h"
#include "host/arx/symbol_records.h"

namespace korvel::arx {
namespace {

// In the order given, also behind one that fails.
bool all_ok(std::initializer_list<Acad::ErrorStatus> results) {
  return std::ranges::all_of(results, [](Acad::ErrorStatus result) { return result == Acad::eOk; });
}

// Unconfirmed: the members of the host's classes that set a shape. Each class is set in a function
// of its own, and nowhere else. False: the host refuses a value.

bool fill(AcDbPoint& point, const PointShape& shape, double thickness) {
  return all_ok({point.setNormal(host_vector(shape.normal)),
                 point.setPosition(host_point(shape.position)), point.setThickness(thickness)});
}

bool fill(AcDbLine& line, const LineShape& shape, double thickness) {
  return all_ok({line.setNormal(host_vector(shape.normal)),
                 line.setStartPoint(host_point(shape.start)),
                 line.setEndPoint(host_point(shape.end)), line.setThickness(thickness)});
}

bool fill(AcDbCircle& circle, const ArcShape& shape, double thickness) {
  return all_ok({circle.setNormal(host_vector(normalise(shape.normal))),
                 circle.setCenter(host_point(shape.center)), circle.setRadius(shape.radius),
                 circle.setThickness(thickness)});
}

bool fill(AcDbArc& arc, const ArcShape& shape, double thickness) {
  const PlaneFrame frame = plane_frame(shape.normal);
  const double start = std::atan2(dot(shape.start, frame.y), dot(shape.start, frame.x));
  return all_ok({arc.setNormal(host_vector(frame.normal)), arc.setCenter(host_point(shape.center)),
                 arc.setRadius(shape.radius), arc.setStartAngle(start),
                 arc.setEndAngle(std::fmod(start + shape.sweep, whole_turn)),
                 arc.setThickness(thickness)});
}

bool fill(AcDbEllipse& ellipse, const EllipseShape& shape, double /*thickness*/) {
  return all_ok({ellipse.set(host_point(shape.center), host_vector(normalise(shape.normal)),
                             host_vector(shape.major), shape.ratio),
                 ellipse.setStartParam(shape.start), ellipse.setEndParam(shape.end)});
}

// All vertices are taken to lie in the plane of the first.
class Plane {
 public:
  explicit Plane(const PolylineShape& shape)
      : frame_(plane_frame(shape.normal)),
        elevation_(from_world(frame_, shape.vertices.front().point).z) {}
  [[nodiscard]] AcGeVector3d normal() const { return host_vector(frame_.normal); }
  [[nodiscard]] double elevation() const { return elevation_; }
  [[nodiscard]] Point3 operator()(const Point3& world) const {
    const Point3 in_plane = from_world(frame_, world);
    return {in_plane.x, in_plane.y, elevation_};
  }

 private:
  PlaneFrame frame_;
  double elevation_;
};

bool fill(AcDbPolyline& line, const PolylineShape& shape, double thickness) {
  const Plane plane(shape);
  constexpr bool keep_vertices = false;
  const auto count = static_cast<unsigned int>(shape.vertices.size());
  bool done = all_ok({line.reset(keep_vertices, count), line.setNormal(plane.normal()),
                      line.setElevation(plane.elevation()), line.setThickness(thickness)});
  for (unsigned int i = 0; i < count; ++i) {
    const Vertex& vertex = shape.vertices[i];
    const Point3 point = plane(vertex.point);
    done = done && line.addVertexAt(i, {point.x, point.y}, vertex.bulge, vertex.start_width,
                                    vertex.end_width) == Acad::eOk;
  }
  line.setClosed(shape.closed);
  line.setPlinegen(shape.linetype_runs_on);
  return done;
}

// The polyline, which is not in the drawing yet, owns its vertices.
template <class Polyline, class HostVertex>
bool append(Polyline& line, std::unique_ptr<HostVertex> vertex) {
  if (line.appendVertex(vertex.get()) != Acad::eOk) return false;
  (void)vertex.release();
  return true;
}

bool fill(AcDb2dPolyline& line, const PolylineShape& shape, double thickness) {
  const Plane plane(shape);
  bool done = all_ok({line.setNormal(plane.normal()), line.setElevation(plane.elevation()),
                      line.setThickness(thickness)});
  for (const Vertex& vertex : shape.vertices) {
    done = done && append(line, std::make_unique<AcDb2dVertex>(host_point(plane(vertex.point)),
                                                               vertex.bulge, vertex.start_width,
                                                               vertex.end_width));
  }
  if (shape.closed) line.makeClosed();
  if (shape.linetype_runs_on) line.setLinetypeGenerationOn();
  return done;
}

bool fill(AcDb3dPolyline& line, const PolylineShape& shape, double /*thickness*/) {
  bool done = true;
  for (const Vertex& vertex : shape.vertices)
    done = done && append(line, std::make_unique<AcDb3dPolylineVertex>(host_point(vertex.point)));
  if (shape.closed) line.makeClosed();
  return done;
}

bool fill(AcDbText& text, const TextShape& shape, double thickness) {
  return all_ok({text.setHorizontalMode(AcDb::kTextLeft), text.setVerticalMode(AcDb::kTextBase),
                 text.setNormal(host_vector(normalise(shape.normal))),
                 text.setPosition(host_point(shape.position)),
                 text.setTextString(shape.text.c_str()), text.setHeight(shape.height),
                 text.setRotation(shape.rotation), text.setWidthFactor(shape.width_factor),
                 text.setThickness(thickness)});
}

bool fill(AcDbBlockReference& reference, const BlockReferenceShape& shape, double /*thickness*/) {
  const AcDbObjectId block = block_named(shape.block);
  return !block.isNull() &&
         all_ok({reference.setBlockTableRecord(block),
                 reference.setNormal(host_vector(normalise(shape.normal))),
                 reference.setPosition(host_point(shape.position)),
                 reference.setScaleFactors({shape.scale.x, shape.scale.y, shape.scale.z}),
                 reference.setRotation(shape.rotation)});
}

bool fill(AcDbMInsertBlock& array, const BlockReferenceShape& shape, double thickness) {
  AcDbBlockReference& reference = array;
  return fill(reference, shape, thickness) &&
         all_ok({array.setColumns(static_cast<Adesk::UInt16>(shape.columns)),
                 array.setRows(static_cast<Adesk::UInt16>(shape.rows)),
                 array.setColumnSpacing(shape.column_spacing),
                 array.setRowSpacing(shape.row_spacing)});
}

// Unconfirmed: the two members, and that what owns parts leaves them behind.

std::vector<AcDbObjectId> parts_of(const AcDbEntity& entity) {
  if (const auto* line = AcDb2dPolyline::cast(&entity)) return ids_of(line->vertexIterator());
  if (const auto* line = AcDb3dPolyline::cast(&entity)) return ids_of(line->vertexIterator());
  if (const auto* block = AcDbBlockReference::cast(&entity)) {
    return ids_of(block->attributeIterator());
  }
  return {};
}

void erase(const std::vector<AcDbObjectId>& parts) {
  for (const AcDbObjectId& id : parts) {
    if (const auto part = open_as<AcDbObject>(id, AcDb::kForWrite)) part->erase();
  }
}

// Unconfirmed: the call, that both remain open, and that the old entity is the caller's from now
// on. Extended data and the extension dictionary go with the identity.
bool hand_over(Opened<AcDbEntity>& old, AcDbEntity& fresh) {
  constexpr bool keep = true;
  if (old->handOverTo(&fresh, keep, keep) != Acad::eOk) return false;
  delete old.release();
  return true;
}

// Puts the new entity, which is in no drawing, in the place of the old one.
bool replace(Opened<AcDbEntity> old, std::unique_ptr<AcDbEntity> fresh) {
  if (fresh->setPropertiesFrom(old.get()) != Acad::eOk) return false;
  const std::vector<AcDbObjectId> parts = parts_of(*old);
  if (!hand_over(old, *fresh)) return false;
  const Opened<AcDbEntity> in_drawing(fresh.release());
  erase(parts);
  return true;
}

template <class Class, class GivenShape>
bool change(Opened<AcDbEntity> entity, const GivenShape& shape, double thickness) {
  if (fill(static_cast<Class&>(*entity), shape, thickness)) return true;
  entity.release()->cancel();
  return false;
}

// A polyline that owns its vertices, and whatever is of another class, makes room for a new entity.
template <class Class, class GivenShape>
bool become(Opened<AcDbEntity> entity, const GivenShape& shape, double thickness) {
  constexpr bool owns_vertices =
      std::is_same_v<Class, AcDb2dPolyline> || std::is_same_v<Class, AcDb3dPolyline>;
  if (!owns_vertices && entity->isA() == Class::desc()) {
    return change<Class>(std::move(entity), shape, thickness);
  }
  auto fresh = std::make_unique<Class>();
  return fill(*fresh, shape, thickness) && replace(std::move(entity), std::move(fresh));
}

// Chooses the host's class for a shape.
class Reshaping {
 public:
  Reshaping(Opened<AcDbEntity> entity, double thickness)
      : entity_(std::move(entity)), thickness_(thickness) {}

  template <class Unsuitable>
  bool operator()(const Unsuitable& /*shape*/) {
    return false;
  }
  bool operator()(const PointShape& point) { return to<AcDbPoint>(point); }
  bool operator()(const LineShape& line) { return to<AcDbLine>(line); }
  bool operator()(const ArcShape& arc) {
    return is_whole_turn(arc.sweep) ? to<AcDbCircle>(arc) : to<AcDbArc>(arc);
  }
  bool operator()(const EllipseShape& ellipse) { return to<AcDbEllipse>(ellipse); }
  bool operator()(const PolylineShape& line) {
    if (line.vertices.empty()) return false;
    switch (line.kind) {
      case PolylineKind::Light:
        return to<AcDbPolyline>(line);
      case PolylineKind::Old2d:
        return to<AcDb2dPolyline>(line);
      default:
        return to<AcDb3dPolyline>(line);
    }
  }
  bool operator()(const TextShape& text) { return to<AcDbText>(text); }
  bool operator()(const BlockReferenceShape& reference) {
    const bool is_array = reference.columns > 1 || reference.rows > 1;
    return is_array ? to<AcDbMInsertBlock>(reference) : to<AcDbBlockReference>(reference);
  }

 private:
  template <class Class, class GivenShape>
  bool to(const GivenShape& shape) {
    return become<Class>(std::move(entity_), shape, thickness_);
  }

  Opened<AcDbEntity> entity_;
  double thickness_;
};

}  // namespace

bool set_geometry(EntityId entity, const EntityGeometry& geometry) {
  Opened<AcDbEntity> opened = open_entity(object_id(entity), AcDb::kForWrite);
  const bool has_shape = opened && geometry_of(*opened).shape.index() != 0;
  return has_shape && std::visit(Reshaping(std::move(opened), geometry.thickness), geometry.shape);
}

}  // namespace korvel::arx
