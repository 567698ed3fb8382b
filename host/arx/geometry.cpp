#include "host/arx/geometry.h"

#include <array>
#include <cmath>
#include <utility>

#include "geometry/elliptic_arc.h"
#include "geometry/vector.h"
#include "host/arx/block_references.h"
#include "host/arx/ge_values.h"
#include "host/arx/guards.h"
#include "host/arx/hatch_outlines.h"
#include "host/arx/object_ids.h"
#include "host/arx/parts.h"
#include "host/arx/symbol_records.h"
#include "host/arx/texts.h"

namespace korvel::arx {
namespace {

// Unconfirmed: the members of the host's classes that are read here. Each class is read in a
// function of its own, and nowhere else.

EntityGeometry read(const AcDbPoint& point) {
  return {PointShape{point_of(point.position()), vector_of(point.normal())}, point.thickness()};
}

EntityGeometry read(const AcDbLine& line) {
  return {
      LineShape{point_of(line.startPoint()), point_of(line.endPoint()), vector_of(line.normal())},
      line.thickness()};
}

// Angles begin at the x axis that belongs to the normal.
template <class ArcOrCircle>
EntityGeometry arc_of(const ArcOrCircle& arc, double start, double sweep) {
  const PlaneFrame frame = plane_frame(vector_of(arc.normal()));
  return {ArcShape{point_of(arc.center()), frame.normal,
                   std::cos(start) * frame.x + std::sin(start) * frame.y, arc.radius(), sweep},
          arc.thickness()};
}

EntityGeometry read(const AcDbCircle& circle) { return arc_of(circle, 0, whole_turn); }

EntityGeometry read(const AcDbArc& arc) {
  const double sweep = std::fmod(arc.endAngle() - arc.startAngle(), whole_turn);
  return arc_of(arc, arc.startAngle(), sweep > 0 ? sweep : sweep + whole_turn);
}

EntityGeometry read(const AcDbEllipse& ellipse) {
  EllipseShape shape{point_of(ellipse.center()), vector_of(ellipse.normal()),
                     vector_of(ellipse.majorAxis()), ellipse.radiusRatio()};
  const bool has_ends = ellipse.getStartParam(shape.start) == Acad::eOk &&
                        ellipse.getEndParam(shape.end) == Acad::eOk;
  return has_ends ? EntityGeometry{shape} : EntityGeometry{};
}

EntityGeometry read(const AcDbPolyline& line) {
  PolylineShape shape;
  shape.normal = vector_of(line.normal());
  shape.closed = line.isClosed();
  shape.linetype_runs_on = line.hasPlinegen();
  shape.vertices.resize(line.numVerts());
  AcGePoint3d point;
  for (unsigned int i = 0; i < line.numVerts(); ++i) {
    Vertex& vertex = shape.vertices[i];
    if (line.getPointAt(i, point) == Acad::eOk) vertex.point = point_of(point);
    line.getBulgeAt(i, vertex.bulge);
    line.getWidthsAt(i, vertex.start_width, vertex.end_width);
  }
  return {std::move(shape), line.thickness()};
}

EntityGeometry read(const AcDb2dPolyline& line) {
  PolylineShape shape;
  shape.kind = PolylineKind::Old2d;
  shape.normal = vector_of(line.normal());
  shape.closed = line.isClosed();
  shape.linetype_runs_on = line.isLinetypeGenerationOn();
  for_each_part<AcDb2dVertex>(line.vertexIterator(), [&](const AcDb2dVertex& vertex) {
    if (vertex.vertexType() == AcDb::k2dSplineCtlVertex) return;
    shape.vertices.push_back({point_of(line.vertexPosition(vertex)), vertex.bulge(),
                              vertex.startWidth(), vertex.endWidth()});
  });
  return {std::move(shape), line.thickness()};
}

EntityGeometry read(const AcDb3dPolyline& line) {
  PolylineShape shape;
  shape.kind = PolylineKind::ThreeD;
  shape.closed = line.isClosed();
  for_each_part<AcDb3dPolylineVertex>(line.vertexIterator(),
                                      [&](const AcDb3dPolylineVertex& vertex) {
                                        if (vertex.vertexType() == AcDb::k3dControlVertex) return;
                                        shape.vertices.push_back({point_of(vertex.position())});
                                      });
  return {std::move(shape)};
}

template <class Values, class Convert>
auto copies_of(const Values& values, Convert convert) {
  std::vector<decltype(convert(values[0]))> copies;
  copies.reserve(static_cast<std::size_t>(values.length()));
  for (int i = 0; i < values.length(); ++i)
    copies.push_back(convert(values[i]));
  return copies;
}

EntityGeometry read(const AcDbSpline& spline) {
  SplineShape shape;
  AcGePoint3dArray points;
  AcGeDoubleArray knots;
  AcGeDoubleArray weights;
  Adesk::Boolean rational{};
  Adesk::Boolean closed{};
  Adesk::Boolean periodic{};
  double tolerance = 0;
  const auto same = [](double number) { return number; };
  if (spline.getNurbsData(shape.degree, rational, closed, periodic, points, knots, weights,
                          tolerance, tolerance) == Acad::eOk) {
    shape.closed = closed;
    shape.knots = copies_of(knots, same);
    shape.weights = copies_of(weights, same);
    shape.control_points = copies_of(points, point_of);
  }
  AcGePoint3d point;
  for (int i = 0; i < spline.numFitPoints(); ++i) {
    if (spline.getFitPointAt(i, point) == Acad::eOk) shape.fit_points.push_back(point_of(point));
  }
  return {std::move(shape)};
}

EntityGeometry read(const AcDbMline& line) {
  MlineShape shape;
  shape.closed = line.closedMline();
  for (int i = 0; i < line.numVertices(); ++i)
    shape.vertices.push_back(point_of(line.vertexAt(i)));
  return {std::move(shape)};
}

// Attribute definitions are texts, too.
EntityGeometry read(const AcDbText& text) {
  TextShape shape{point_of(text.position()),
                  vector_of(text.normal()),
                  text_of(text.textStringConst()),
                  text.height(),
                  text.rotation(),
                  text.widthFactor()};
  if (!text.isDefaultAlignment()) shape.alignment = point_of(text.alignmentPoint());
  return {std::move(shape), text.thickness()};
}

EntityGeometry read(const AcDbMText& text) {
  return {MtextShape{point_of(text.location()), vector_of(text.normal()),
                     vector_of(text.direction()), taken_text(text.contents()), text.actualWidth(),
                     text.actualHeight(), static_cast<int>(text.attachment())}};
}

EntityGeometry read(const AcDbBlockReference& reference) {
  if (!is_block_reference(reference)) return {};
  const AcGeScale3d scale = reference.scaleFactors();
  BlockReferenceShape shape{.position = point_of(reference.position()),
                            .normal = vector_of(reference.normal()),
                            .block = name_of(reference.blockTableRecord()),
                            .scale = {scale.sx, scale.sy, scale.sz},
                            .rotation = reference.rotation()};
  if (const auto* const array = AcDbMInsertBlock::cast(&reference)) {
    shape.columns = array->columns();
    shape.rows = array->rows();
    shape.column_spacing = array->columnSpacing();
    shape.row_spacing = array->rowSpacing();
  }
  return {std::move(shape)};
}

// A plate from its corners by number, the order in which they lie round about it; a triangle has
// its third corner twice.
template <class CornerAt>
EntityGeometry plate(CornerAt corner_at, const std::array<Adesk::UInt16, 4>& order,
                     double thickness) {
  std::array<AcGePoint3d, 4> corners;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    if (corner_at(static_cast<Adesk::UInt16>(i), corners[i]) != Acad::eOk) return {};
  }
  const bool is_triangle = point_of(corners[2]) == point_of(corners[3]);
  FaceShape shape;
  for (const Adesk::UInt16 i : order) {
    if (i < 3 || !is_triangle) shape.corners.push_back(point_of(corners[i]));
  }
  return {std::move(shape), thickness};
}

template <class SolidOrTrace>
EntityGeometry plate_across(const SolidOrTrace& solid) {
  return plate([&](Adesk::UInt16 i, AcGePoint3d& point) { return solid.getPointAt(i, point); },
               {0, 1, 3, 2}, solid.thickness());
}

EntityGeometry read(const AcDbSolid& solid) { return plate_across(solid); }

EntityGeometry read(const AcDbTrace& trace) { return plate_across(trace); }

EntityGeometry read(const AcDbFace& face) {
  return plate([&](Adesk::UInt16 i, AcGePoint3d& point) { return face.getVertexAt(i, point); },
               {0, 1, 2, 3}, 0);
}

EntityGeometry read(const AcDbHatch& hatch) {
  std::optional<HatchShape> outlines = outlines_of(hatch);
  return outlines ? EntityGeometry{*std::move(outlines)} : EntityGeometry{};
}

template <class Class>
bool read_as(const AcDbEntity& entity, EntityGeometry& geometry) {
  const auto* const object = Class::cast(&entity);
  if (object != nullptr) geometry = read(*object);
  return object != nullptr;
}

// By the first of the classes that the entity is of.
template <class... Classes>
EntityGeometry read_as_one_of(const AcDbEntity& entity) {
  EntityGeometry geometry;
  (void)(read_as<Classes>(entity, geometry) || ...);
  return geometry;
}

}  // namespace

std::optional<EntityGeometry> geometry_of(EntityId entity) {
  const Opened<AcDbEntity> opened = open_entity(object_id(entity), AcDb::kForRead);
  return opened ? std::optional(geometry_of(*opened)) : std::nullopt;
}

// The usual ones first.
EntityGeometry geometry_of(const AcDbEntity& entity) {
  return read_as_one_of<AcDbPolyline, AcDbLine, AcDbBlockReference, AcDbText, AcDb2dPolyline,
                        AcDb3dPolyline, AcDbPoint, AcDbArc, AcDbCircle, AcDbMText, AcDbHatch,
                        AcDbSpline, AcDbEllipse, AcDbSolid, AcDbTrace, AcDbFace, AcDbMline>(entity);
}

}  // namespace korvel::arx
