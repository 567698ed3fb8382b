#include "tests/arx_double/compound_classes.h"

#include "geometry/vector.h"

using namespace korvel::arx_double;

AcDbPolyline::AcDbPolyline(const korvel::EntityGeometry& geometry)
    : shape_(std::get<korvel::PolylineShape>(geometry.shape)), thickness_(geometry.thickness) {
  const korvel::PlaneFrame frame = korvel::plane_frame(shape_.normal);
  for (korvel::Vertex& vertex : shape_.vertices) {
    vertex.point = from_world(frame, vertex.point);
    elevation_ = vertex.point.z;
  }
}

std::optional<korvel::EntityGeometry> AcDbPolyline::geometry() const {
  const korvel::PlaneFrame frame = korvel::plane_frame(shape_.normal);
  korvel::PolylineShape in_world = shape_;
  for (korvel::Vertex& vertex : in_world.vertices)
    vertex.point = to_world(frame, {vertex.point.x, vertex.point.y, elevation_});
  return korvel::EntityGeometry{std::move(in_world), thickness_};
}

Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned int index, AcGePoint3d& point) const {
  const korvel::Point3& in_plane = shape_.vertices.at(index).point;
  point = host_point(
      to_world(korvel::plane_frame(shape_.normal), {in_plane.x, in_plane.y, elevation_}));
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getBulgeAt(unsigned int index, double& bulge) const {
  bulge = shape_.vertices.at(index).bulge;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getWidthsAt(unsigned int index, double& start, double& end) const {
  start = shape_.vertices.at(index).start_width;
  end = shape_.vertices.at(index).end_width;
  return Acad::eOk;
}

AcGeVector3d AcDbPolyline::normal() const { return host_vector(shape_.normal); }

Acad::ErrorStatus AcDbPolyline::reset(bool reuse, unsigned int /*count*/) {
  if (reuse) return Acad::eError;
  shape_.vertices.clear();
  return change_shape();
}

Acad::ErrorStatus AcDbPolyline::addVertexAt(unsigned int index, const AcGePoint2d& point,
                                            double bulge, double start_width, double end_width) {
  if (index > numVerts()) return Acad::eError;
  shape_.vertices.insert(shape_.vertices.begin() + index,
                         {{point.x, point.y, 0}, bulge, start_width, end_width});
  return change_shape();
}

Acad::ErrorStatus AcDbPolyline::setNormal(const AcGeVector3d& normal) {
  shape_.normal = vector_from(normal);
  return change_shape();
}

Acad::ErrorStatus AcDbPolyline::setElevation(double elevation) {
  elevation_ = elevation;
  return change_shape();
}

Acad::ErrorStatus AcDbPolyline::setThickness(double thickness) {
  thickness_ = thickness;
  return change_shape();
}

Acad::ErrorStatus AcDbPolyline::setClosed(bool closed) {
  shape_.closed = closed;
  return change_shape();
}

Acad::ErrorStatus AcDbPolyline::setPlinegen(bool runs_on) {
  shape_.linetype_runs_on = runs_on;
  return change_shape();
}

AcDb2dVertex::AcDb2dVertex(const AcGePoint3d& position, double bulge, double start_width,
                           double end_width)
    : Described(korvel::Vertex{point_from(position), bulge, start_width, end_width}) {}

AcDb3dPolylineVertex::AcDb3dPolylineVertex(const AcGePoint3d& position)
    : Described(korvel::Vertex{point_from(position)}) {}

AcGePoint3d AcDb3dPolylineVertex::position() const { return host_point(vertex().point); }

AcGePoint3d AcDb2dPolyline::vertexPosition(const AcDb2dVertex& vertex) const {
  return host_point(to_world(korvel::plane_frame(shape_.normal), vertex.vertex().point));
}

AcGeVector3d AcDb2dPolyline::normal() const { return host_vector(shape_.normal); }

Acad::ErrorStatus AcDb2dPolyline::setNormal(const AcGeVector3d& normal) {
  shape_.normal = vector_from(normal);
  return change_shape();
}

Acad::ErrorStatus AcDb2dPolyline::setElevation(double elevation) {
  elevation_ = elevation;
  return change_shape();
}

Acad::ErrorStatus AcDb2dPolyline::setThickness(double thickness) {
  thickness_ = thickness;
  return change_shape();
}

Acad::ErrorStatus AcDb2dPolyline::setLinetypeGenerationOn() {
  shape_.linetype_runs_on = true;
  return change_shape();
}

korvel::Vertex AcDb2dPolyline::in_world(const korvel::Vertex& vertex) const {
  korvel::Vertex placed = vertex;
  placed.point =
      to_world(korvel::plane_frame(shape_.normal), {vertex.point.x, vertex.point.y, elevation_});
  return placed;
}

AcGePoint3d AcDbBlockReference::position() const { return host_point(shape_.position); }

AcGeVector3d AcDbBlockReference::normal() const { return host_vector(shape_.normal); }

AcGeScale3d AcDbBlockReference::scaleFactors() const {
  return {shape_.scale.x, shape_.scale.y, shape_.scale.z};
}

AcDbObjectId AcDbBlockReference::blockTableRecord() const { return id_of_name(shape_.block); }

AcDbObjectIterator* AcDbBlockReference::attributeIterator() const {
  const std::size_t count = working_drawing().attributes_of(entity_of(objectId())).size();
  return new AcDbObjectIterator(objectId(), count);
}

Acad::ErrorStatus AcDbBlockReference::setPosition(const AcGePoint3d& position) {
  return set(shape_.position, point_from(position));
}

Acad::ErrorStatus AcDbBlockReference::setNormal(const AcGeVector3d& normal) {
  return set(shape_.normal, vector_from(normal));
}

Acad::ErrorStatus AcDbBlockReference::setScaleFactors(const AcGeScale3d& scale) {
  return set(shape_.scale, korvel::Point3{scale.sx, scale.sy, scale.sz});
}

Acad::ErrorStatus AcDbBlockReference::setBlockTableRecord(AcDbObjectId block) {
  return set(shape_.block, name_of(block));
}

AcDbAttribute::AcDbAttribute(const korvel::BlockAttribute& attribute) : tag_(attribute.tag) {
  shape_.text = attribute.text;
}

Acad::ErrorStatus AcDbAttribute::setTextString(const ACHAR* text) {
  if (!writes()) return Acad::eNotOpenForWrite;
  const std::size_t taken = working_drawing().set_attribute_texts(entity_of(owner_of(objectId())),
                                                                  {{index_of(objectId()), text}});
  return taken == 1 ? Acad::eOk : Acad::eError;
}

AcDbDynBlockReference::AcDbDynBlockReference(AcDbObjectId reference) {
  const korvel::StandaloneHost& drawing = working_drawing();
  const std::optional<std::wstring> name = drawing.block_name_of(entity_of(reference));
  const auto geometry = drawing.geometry_of(entity_of(reference));
  if (!name || !geometry) return;
  const auto* const shape = std::get_if<korvel::BlockReferenceShape>(&geometry->shape);
  if (shape != nullptr && shape->block != *name) definition_ = id_of_name(*name);
}

namespace korvel::arx_double {
namespace {

std::unique_ptr<AcDbObject> vertex_of(const PolylineShape& line, std::size_t index) {
  if (index >= line.vertices.size()) return nullptr;
  Vertex vertex = line.vertices[index];
  if (line.kind == PolylineKind::ThreeD) return std::make_unique<AcDb3dPolylineVertex>(vertex);
  vertex.point = from_world(plane_frame(line.normal), vertex.point);
  return std::make_unique<AcDb2dVertex>(vertex);
}

// The drawing takes for an attribute on a locked layer not even the text that it has.
bool may_write(EntityId reference, std::size_t index, const BlockAttribute& attribute) {
  return working_drawing().set_attribute_texts(reference, {{index, attribute.text}}) == 1;
}

}  // namespace

std::unique_ptr<AcDbObject> part_over(const AcDbObjectId& id, AcDb::OpenMode mode) {
  StandaloneHost& drawing = working_drawing();
  const EntityId owner = entity_of(owner_of(id));
  const std::size_t index = index_of(id);
  const auto geometry = drawing.geometry_of(owner);
  const auto* const line = geometry ? std::get_if<PolylineShape>(&geometry->shape) : nullptr;
  if (line != nullptr) return vertex_of(*line, index);
  const std::vector<BlockAttribute> attributes = drawing.attributes_of(owner);
  if (index >= attributes.size()) return nullptr;
  const bool writes = mode == AcDb::kForWrite;
  if (writes && !may_write(owner, index, attributes[index])) return nullptr;
  return std::make_unique<AcDbAttribute>(attributes[index]);
}

}  // namespace korvel::arx_double
