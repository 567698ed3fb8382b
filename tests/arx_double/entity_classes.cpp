#include "tests/arx_double/entity_classes.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "geometry/bulge.h"
#include "geometry/elliptic_arc.h"
#include "geometry/hatch_loops.h"
#include "geometry/vector.h"
#include "tests/arx_double/compound_classes.h"

using namespace korvel::arx_double;

namespace {

// Of a plate: its corners by number, the third one twice where there are three.
Acad::ErrorStatus corner(const korvel::FaceShape& plate, std::size_t index, AcGePoint3d& point) {
  if (index > 3 || plate.corners.size() < 3) return Acad::eError;
  point = host_point(plate.corners[std::min(index, plate.corners.size() - 1)]);
  return Acad::eOk;
}

Acad::ErrorStatus corner_across(const korvel::FaceShape& plate, Adesk::UInt16 index,
                                AcGePoint3d& point) {
  constexpr std::array<std::size_t, 4> round_about{0, 1, 3, 2};
  const bool is_triangle = plate.corners.size() == 3;
  if (index > 3) return Acad::eError;
  return corner(plate, is_triangle ? index : round_about[index], point);
}

}  // namespace

AcDbPoint::AcDbPoint(const AcGePoint3d& position) { shape_.position = point_from(position); }

AcGePoint3d AcDbPoint::position() const { return host_point(shape_.position); }

Acad::ErrorStatus AcDbPoint::setPosition(const AcGePoint3d& position) {
  return set(shape_.position, point_from(position));
}

AcGePoint3d AcDbLine::startPoint() const { return host_point(shape_.start); }

AcGePoint3d AcDbLine::endPoint() const { return host_point(shape_.end); }

Acad::ErrorStatus AcDbLine::setStartPoint(const AcGePoint3d& start) {
  return set(shape_.start, point_from(start));
}

Acad::ErrorStatus AcDbLine::setEndPoint(const AcGePoint3d& end) {
  return set(shape_.end, point_from(end));
}

AcDbCircle::AcDbCircle() {
  shape_.start = {1, 0, 0};
  shape_.sweep = korvel::whole_turn;
}

AcGePoint3d AcDbCircle::center() const { return host_point(shape_.center); }

Acad::ErrorStatus AcDbCircle::setCenter(const AcGePoint3d& center) {
  return set(shape_.center, point_from(center));
}

Acad::ErrorStatus AcDbCircle::setRadius(double radius) {
  return radius > 0 ? set(shape_.radius, radius) : Acad::eError;
}

AcDbArc::AcDbArc(const korvel::EntityGeometry& geometry) : Thick(geometry) {
  const korvel::PlaneFrame frame = korvel::plane_frame(shape_.normal);
  start_ = std::atan2(dot(shape_.start, frame.y), dot(shape_.start, frame.x));
  if (start_ < 0) start_ += korvel::whole_turn;
  end_ = std::fmod(start_ + shape_.sweep, korvel::whole_turn);
}

std::optional<korvel::EntityGeometry> AcDbArc::geometry() const {
  const korvel::PlaneFrame frame = korvel::plane_frame(shape_.normal);
  korvel::ArcShape arc = shape_;
  arc.start = std::cos(start_) * frame.x + std::sin(start_) * frame.y;
  arc.sweep = end_ > start_ ? end_ - start_ : end_ - start_ + korvel::whole_turn;
  return korvel::EntityGeometry{arc, thickness_};
}

AcGePoint3d AcDbArc::center() const { return host_point(shape_.center); }

Acad::ErrorStatus AcDbArc::setCenter(const AcGePoint3d& center) {
  return Thick::set(shape_.center, point_from(center));
}

Acad::ErrorStatus AcDbArc::setRadius(double radius) {
  return radius > 0 ? Thick::set(shape_.radius, radius) : Acad::eError;
}

AcGePoint3d AcDbEllipse::center() const { return host_point(shape_.center); }

AcGeVector3d AcDbEllipse::normal() const { return host_vector(shape_.normal); }

AcGeVector3d AcDbEllipse::majorAxis() const { return host_vector(shape_.major); }

Acad::ErrorStatus AcDbEllipse::getStartParam(double& parameter) const {
  parameter = shape_.start;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbEllipse::getEndParam(double& parameter) const {
  parameter = shape_.end;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbEllipse::set(const AcGePoint3d& center, const AcGeVector3d& normal,
                                   const AcGeVector3d& major, double ratio) {
  if (!(ratio > 0 && ratio <= 1)) return Acad::eError;
  return Shaped::set(
      shape_, korvel::EllipseShape{point_from(center), vector_from(normal), vector_from(major),
                                   ratio, 0, korvel::whole_turn});
}

Acad::ErrorStatus AcDbEllipse::setStartParam(double parameter) {
  return Shaped::set(shape_.start, parameter);
}

Acad::ErrorStatus AcDbEllipse::setEndParam(double parameter) {
  return Shaped::set(shape_.end, parameter);
}

Acad::ErrorStatus AcDbSpline::getNurbsData(int& degree, Adesk::Boolean& rational,
                                           Adesk::Boolean& closed, Adesk::Boolean& periodic,
                                           AcGePoint3dArray& control_points, AcGeDoubleArray& knots,
                                           AcGeDoubleArray& weights, double& point_tolerance,
                                           double& knot_tolerance) const {
  degree = shape_.degree;
  rational = !shape_.weights.empty();
  closed = shape_.closed;
  periodic = false;
  for (const korvel::Point3& point : shape_.control_points)
    control_points.append(host_point(point));
  for (const double knot : shape_.knots)
    knots.append(knot);
  for (const double weight : shape_.weights)
    weights.append(weight);
  point_tolerance = knot_tolerance = 1e-9;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbSpline::getFitPointAt(int index, AcGePoint3d& point) const {
  point = host_point(shape_.fit_points.at(static_cast<std::size_t>(index)));
  return Acad::eOk;
}

AcGePoint3d AcDbMline::vertexAt(int index) const {
  return host_point(shape_.vertices.at(static_cast<std::size_t>(index)));
}

AcGePoint3d AcDbText::position() const { return host_point(shape_.position); }

Acad::ErrorStatus AcDbText::setPosition(const AcGePoint3d& position) {
  return set(shape_.position, point_from(position));
}

AcGePoint3d AcDbText::alignmentPoint() const {
  return host_point(shape_.alignment.value_or(korvel::Point3{}));
}

AcGePoint3d AcDbMText::location() const { return host_point(shape_.position); }

AcGeVector3d AcDbMText::normal() const { return host_vector(shape_.normal); }

AcGeVector3d AcDbMText::direction() const { return host_vector(shape_.direction); }

Acad::ErrorStatus AcDbSolid::getPointAt(Adesk::UInt16 index, AcGePoint3d& point) const {
  return corner_across(shape_, index, point);
}

Acad::ErrorStatus AcDbTrace::getPointAt(Adesk::UInt16 index, AcGePoint3d& point) const {
  return corner_across(shape_, index, point);
}

Acad::ErrorStatus AcDbFace::getVertexAt(Adesk::UInt16 index, AcGePoint3d& point) const {
  return corner(shape_, index, point);
}

AcGeVector3d AcDbHatch::normal() const {
  return shape_.loops.empty() ? AcGeVector3d{0, 0, 1} : host_vector(shape_.loops[0].normal);
}

double AcDbHatch::elevation() const {
  if (shape_.loops.empty()) return 0;
  const korvel::PolylineShape& first = shape_.loops[0];
  return from_world(korvel::plane_frame(first.normal), first.vertices[0].point).z;
}

namespace {

// Puts the edges of an outline into the host's arrays.
class EdgeMaker {
 public:
  EdgeMaker(const korvel::HatchLoop& loop, std::vector<std::shared_ptr<void>>& keep,
            AcGeVoidPointerArray& edges, AcGeIntArray& types)
      : loop_(loop),
        frame_(korvel::plane_frame(loop.outline.normal)),
        keep_(keep),
        edges_(edges),
        types_(types) {}

  void make() {
    const std::vector<korvel::Vertex>& vertices = loop_.outline.vertices;
    for (std::size_t i = 0; i < vertices.size(); ++i) {
      const AcGePoint2d from = in_plane(vertices[i].point);
      const AcGePoint2d to = in_plane(vertices[(i + 1) % vertices.size()].point);
      if (const korvel::CurvedEdge* const edge = loop_.curve_of(i)) {
        std::visit(*this, edge->curve);
      } else if (const auto arc = segment_arc(loop_.outline, i)) {
        add<AcGeCircArc2d>(AcDbHatch::kCirArc, in_plane(arc->center), from, arc->radius, arc->sweep,
                           vertices[i].bulge < 0);
      } else {
        add<AcGeLineSeg2d>(AcDbHatch::kLine, from, to);
      }
    }
  }

  void operator()(korvel::EllipseShape ellipse) {
    ellipse.center = from_world(frame_, ellipse.center);
    ellipse.major = from_world(frame_, korvel::Point3{} + ellipse.major) - korvel::Point3{};
    ellipse.normal.z = dot(ellipse.normal, frame_.normal);
    add<AcGeEllipArc2d>(AcDbHatch::kEllArc, ellipse);
  }
  void operator()(korvel::SplineShape spline) {
    for (korvel::Point3& point : spline.control_points)
      point = from_world(frame_, point);
    add<AcGeNurbCurve2d>(AcDbHatch::kSpline, spline);
  }

 private:
  [[nodiscard]] AcGePoint2d in_plane(const korvel::Point3& point) const {
    const korvel::Point3 moved = from_world(frame_, point);
    return {moved.x, moved.y};
  }

  template <class Edge, class... Values>
  void add(AcDbHatch::HatchEdgeType type, const Values&... values) {
    keep_.push_back(std::make_shared<Edge>(values...));
    edges_.append(keep_.back().get());
    types_.append(type);
  }

  korvel::HatchLoop loop_;
  korvel::PlaneFrame frame_;
  std::vector<std::shared_ptr<void>>& keep_;
  AcGeVoidPointerArray& edges_;
  AcGeIntArray& types_;
};

}  // namespace

Adesk::Int32 AcDbHatch::loopTypeAt(int index) const {
  const bool has_curves = std::ranges::any_of(
      shape_.curved_edges,
      [loop = static_cast<std::size_t>(index)](const auto& edge) { return edge.loop == loop; });
  return has_curves ? kDefault : kPolyline;
}

Acad::ErrorStatus AcDbHatch::getLoopAt(int index, Adesk::Int32& type, AcGeVoidPointerArray& edges,
                                       AcGeIntArray& edge_types) const {
  type = kDefault;
  int loops = 0;
  korvel::for_each_loop(shape_, [&](const korvel::HatchLoop& loop) {
    if (loops++ == index) EdgeMaker(loop, edges_, edges, edge_types).make();
  });
  return Acad::eOk;
}

Acad::ErrorStatus AcDbHatch::getLoopAt(int index, Adesk::Int32& type, AcGePoint2dArray& vertices,
                                       AcGeDoubleArray& bulges) const {
  const korvel::PolylineShape& loop = shape_.loops.at(static_cast<std::size_t>(index));
  const korvel::PlaneFrame frame = korvel::plane_frame(loop.normal);
  type = kPolyline;
  for (const korvel::Vertex& vertex : loop.vertices) {
    const korvel::Point3 in_plane = from_world(frame, vertex.point);
    vertices.append({in_plane.x, in_plane.y});
    bulges.append(vertex.bulge);
  }
  return Acad::eOk;
}

namespace korvel::arx_double {
namespace {

using Object = std::unique_ptr<AcDbObject>;

// The entity's type says which class suits where several have the same shape.
class ClassOf {
 public:
  ClassOf(const EntityGeometry& geometry, std::string_view type)
      : geometry_(geometry), type_(type) {}

  Object operator()(const std::monostate&) const { return std::make_unique<AcDbEntity>(); }
  Object operator()(const PointShape&) const { return made<AcDbPoint>(); }
  Object operator()(const LineShape&) const { return made<AcDbLine>(); }
  Object operator()(const ArcShape&) const {
    return type_ == "CIRCLE" ? made<AcDbCircle>() : made<AcDbArc>();
  }
  Object operator()(const EllipseShape&) const { return made<AcDbEllipse>(); }
  Object operator()(const PolylineShape& line) const {
    switch (line.kind) {
      case PolylineKind::Light:
        return made<AcDbPolyline>();
      case PolylineKind::Old2d:
        return made<AcDb2dPolyline>();
      default:
        return made<AcDb3dPolyline>();
    }
  }
  Object operator()(const SplineShape&) const { return made<AcDbSpline>(); }
  Object operator()(const MlineShape&) const { return made<AcDbMline>(); }
  Object operator()(const TextShape&) const {
    return type_ == "ATTDEF" ? made<AcDbAttributeDefinition>() : made<AcDbText>();
  }
  Object operator()(const MtextShape&) const { return made<AcDbMText>(); }
  Object operator()(const BlockReferenceShape& reference) const {
    const bool is_array = reference.columns > 1 || reference.rows > 1;
    return is_array ? made<AcDbMInsertBlock>() : made<AcDbBlockReference>();
  }
  Object operator()(const HatchShape&) const { return made<AcDbHatch>(); }
  Object operator()(const FaceShape&) const {
    return type_ == "3DFACE"  ? made<AcDbFace>()
           : type_ == "TRACE" ? made<AcDbTrace>()
                              : made<AcDbSolid>();
  }

 private:
  template <class Class>
  [[nodiscard]] Object made() const {
    return std::make_unique<Class>(geometry_);
  }

  const EntityGeometry& geometry_;
  std::string_view type_;
};

// Whether the entity is of a class that the binding does not read, whatever it looks like.
bool is_unread(std::string_view type) {
  constexpr std::array<std::string_view, 3> parts{"DIMENSION", "LEADER", "MPOLYGON"};
  return std::ranges::any_of(
      parts, [type](std::string_view part) { return type.find(part) != std::string_view::npos; });
}

}  // namespace

std::unique_ptr<AcDbObject> entity_over(const AcDbObjectId& id) {
  const Drawing& drawing = working_drawing().drawing();
  const EntityId entity = entity_of(id);
  const std::string_view type = drawing.type_of(entity);
  if (is_unread(type)) return std::make_unique<AcDbEntity>();
  const EntityGeometry geometry = drawing.geometry_of(entity);
  return std::visit(ClassOf(geometry, type), geometry.shape);
}

}  // namespace korvel::arx_double
