// A double of the CAD host's classes of entities, see db_classes.h: those of one object. What they
// are asked for they answer in the host's terms, from the shape that the stand-alone host has.
#pragma once

#include <memory>

#include "tests/arx_double/db_classes.h"

namespace AcDb {
enum TextHorzMode { kTextLeft = 0 };
enum TextVertMode { kTextBase = 0 };
}  // namespace AcDb

class AcDbCurve : public Described<AcDbCurve, AcDbEntity> {};

// A class whose objects are one shape.
template <class Class, class Base, class OwnShape>
class Shaped : public Described<Class, Base> {
 public:
  Shaped() = default;
  explicit Shaped(const korvel::EntityGeometry& geometry)
      : shape_(std::get<OwnShape>(geometry.shape)), thickness_(geometry.thickness) {}
  [[nodiscard]] std::optional<korvel::EntityGeometry> geometry() const override {
    return korvel::EntityGeometry{shape_, thickness_};
  }

 protected:
  template <class Member, class Value>
  Acad::ErrorStatus set(Member& member, const Value& value) {
    const Acad::ErrorStatus status = this->change_shape();
    if (status == Acad::eOk) member = value;
    return status;
  }

  OwnShape shape_;
  double thickness_ = 0;
};

// One that has a normal and is drawn out along it.
template <class Class, class Base, class OwnShape>
class Thick : public Shaped<Class, Base, OwnShape> {
 public:
  using Shaped<Class, Base, OwnShape>::Shaped;
  [[nodiscard]] AcGeVector3d normal() const {
    return korvel::arx_double::host_vector(this->shape_.normal);
  }
  [[nodiscard]] double thickness() const { return this->thickness_; }
  Acad::ErrorStatus setNormal(const AcGeVector3d& normal) {
    return this->set(this->shape_.normal, korvel::arx_double::vector_from(normal));
  }
  Acad::ErrorStatus setThickness(double thickness) {
    return this->set(this->thickness_, thickness);
  }
};

class AcDbPoint : public Thick<AcDbPoint, AcDbEntity, korvel::PointShape> {
 public:
  using Thick::Thick;
  explicit AcDbPoint(const AcGePoint3d& position);
  [[nodiscard]] AcGePoint3d position() const;
  Acad::ErrorStatus setPosition(const AcGePoint3d& position);
};

class AcDbLine : public Thick<AcDbLine, AcDbCurve, korvel::LineShape> {
 public:
  using Thick::Thick;
  [[nodiscard]] AcGePoint3d startPoint() const;
  [[nodiscard]] AcGePoint3d endPoint() const;
  Acad::ErrorStatus setStartPoint(const AcGePoint3d& start);
  Acad::ErrorStatus setEndPoint(const AcGePoint3d& end);
};

// A radius is above 0.
class AcDbCircle : public Thick<AcDbCircle, AcDbCurve, korvel::ArcShape> {
 public:
  AcDbCircle();
  using Thick::Thick;
  [[nodiscard]] AcGePoint3d center() const;
  [[nodiscard]] double radius() const { return shape_.radius; }
  Acad::ErrorStatus setCenter(const AcGePoint3d& center);
  Acad::ErrorStatus setRadius(double radius);
};

// Angles are measured from the x axis that belongs to the normal.
class AcDbArc : public Thick<AcDbArc, AcDbCurve, korvel::ArcShape> {
 public:
  AcDbArc() = default;
  explicit AcDbArc(const korvel::EntityGeometry& geometry);
  [[nodiscard]] std::optional<korvel::EntityGeometry> geometry() const override;
  [[nodiscard]] AcGePoint3d center() const;
  [[nodiscard]] double radius() const { return shape_.radius; }
  [[nodiscard]] double startAngle() const { return start_; }
  [[nodiscard]] double endAngle() const { return end_; }
  Acad::ErrorStatus setCenter(const AcGePoint3d& center);
  Acad::ErrorStatus setRadius(double radius);
  Acad::ErrorStatus setStartAngle(double angle) { return set(start_, angle); }
  Acad::ErrorStatus setEndAngle(double angle) { return set(end_, angle); }

 private:
  double start_ = 0;
  double end_ = 0;
};

class AcDbEllipse : public Shaped<AcDbEllipse, AcDbCurve, korvel::EllipseShape> {
 public:
  using Shaped::Shaped;
  [[nodiscard]] AcGePoint3d center() const;
  [[nodiscard]] AcGeVector3d normal() const;
  [[nodiscard]] AcGeVector3d majorAxis() const;
  [[nodiscard]] double radiusRatio() const { return shape_.ratio; }
  Acad::ErrorStatus getStartParam(double& parameter) const;
  Acad::ErrorStatus getEndParam(double& parameter) const;
  Acad::ErrorStatus set(const AcGePoint3d& center, const AcGeVector3d& normal,
                        const AcGeVector3d& major, double ratio);
  Acad::ErrorStatus setStartParam(double parameter);
  Acad::ErrorStatus setEndParam(double parameter);
};

class AcDbSpline : public Shaped<AcDbSpline, AcDbCurve, korvel::SplineShape> {
 public:
  using Shaped::Shaped;
  Acad::ErrorStatus getNurbsData(int& degree, Adesk::Boolean& rational, Adesk::Boolean& closed,
                                 Adesk::Boolean& periodic, AcGePoint3dArray& control_points,
                                 AcGeDoubleArray& knots, AcGeDoubleArray& weights,
                                 double& point_tolerance, double& knot_tolerance) const;
  [[nodiscard]] int numFitPoints() const { return static_cast<int>(shape_.fit_points.size()); }
  Acad::ErrorStatus getFitPointAt(int index, AcGePoint3d& point) const;
};

class AcDbMline : public Shaped<AcDbMline, AcDbEntity, korvel::MlineShape> {
 public:
  using Shaped::Shaped;
  [[nodiscard]] int numVertices() const { return static_cast<int>(shape_.vertices.size()); }
  [[nodiscard]] AcGePoint3d vertexAt(int index) const;
  [[nodiscard]] bool closedMline() const { return shape_.closed; }
};

class AcDbText : public Thick<AcDbText, AcDbEntity, korvel::TextShape> {
 public:
  using Thick::Thick;
  [[nodiscard]] AcGePoint3d position() const;
  [[nodiscard]] const ACHAR* textStringConst() const { return shape_.text.c_str(); }
  [[nodiscard]] double height() const { return shape_.height; }
  [[nodiscard]] double rotation() const { return shape_.rotation; }
  [[nodiscard]] double widthFactor() const { return shape_.width_factor; }
  Acad::ErrorStatus setPosition(const AcGePoint3d& position);
  virtual Acad::ErrorStatus setTextString(const ACHAR* text) { return set(shape_.text, text); }
  Acad::ErrorStatus setHeight(double height) { return set(shape_.height, height); }
  Acad::ErrorStatus setRotation(double rotation) { return set(shape_.rotation, rotation); }
  Acad::ErrorStatus setWidthFactor(double factor) { return set(shape_.width_factor, factor); }
  [[nodiscard]] Adesk::Boolean isDefaultAlignment() const { return !shape_.alignment; }
  [[nodiscard]] AcGePoint3d alignmentPoint() const;
  // There are no others to set than those of the left end of the baseline.
  Acad::ErrorStatus setHorizontalMode(AcDb::TextHorzMode) {
    return set(shape_.alignment, std::nullopt);
  }
  Acad::ErrorStatus setVerticalMode(AcDb::TextVertMode) {
    return set(shape_.alignment, std::nullopt);
  }
};

class AcDbAttributeDefinition : public Described<AcDbAttributeDefinition, AcDbText> {
 public:
  using Described::Described;
};

class AcDbMText : public Shaped<AcDbMText, AcDbEntity, korvel::MtextShape> {
 public:
  using Shaped::Shaped;
  [[nodiscard]] AcGePoint3d location() const;
  [[nodiscard]] AcGeVector3d normal() const;
  [[nodiscard]] AcGeVector3d direction() const;
  [[nodiscard]] ACHAR* contents() const { return korvel::arx_double::hand_out(shape_.text); }
  [[nodiscard]] double actualWidth() const { return shape_.width; }
  [[nodiscard]] double actualHeight() const { return shape_.height; }
  [[nodiscard]] int attachment() const { return shape_.attachment; }
};

// Corners are numbered from one side to the other, not round about; a triangle has its third one
// twice.
class AcDbSolid : public Shaped<AcDbSolid, AcDbEntity, korvel::FaceShape> {
 public:
  using Shaped::Shaped;
  Acad::ErrorStatus getPointAt(Adesk::UInt16 index, AcGePoint3d& point) const;
  [[nodiscard]] double thickness() const { return thickness_; }
};
class AcDbTrace : public Shaped<AcDbTrace, AcDbEntity, korvel::FaceShape> {
 public:
  using Shaped::Shaped;
  Acad::ErrorStatus getPointAt(Adesk::UInt16 index, AcGePoint3d& point) const;
  [[nodiscard]] double thickness() const { return thickness_; }
};

// Its corners are numbered round about.
class AcDbFace : public Shaped<AcDbFace, AcDbEntity, korvel::FaceShape> {
 public:
  using Shaped::Shaped;
  Acad::ErrorStatus getVertexAt(Adesk::UInt16 index, AcGePoint3d& point) const;
};

// Outlines of straight edges and arcs alone are polylines here.
class AcDbHatch : public Shaped<AcDbHatch, AcDbEntity, korvel::HatchShape> {
 public:
  enum HatchLoopType { kDefault = 0, kPolyline = 2 };
  enum HatchEdgeType { kLine = 1, kCirArc = 2, kEllArc = 3, kSpline = 4 };
  using Shaped::Shaped;
  [[nodiscard]] AcGeVector3d normal() const;
  [[nodiscard]] double elevation() const;
  [[nodiscard]] int numLoops() const { return static_cast<int>(shape_.loops.size()); }
  [[nodiscard]] Adesk::Int32 loopTypeAt(int index) const;
  Acad::ErrorStatus getLoopAt(int index, Adesk::Int32& type, AcGePoint2dArray& vertices,
                              AcGeDoubleArray& bulges) const;
  // The edges remain the hatch's.
  Acad::ErrorStatus getLoopAt(int index, Adesk::Int32& type, AcGeVoidPointerArray& edges,
                              AcGeIntArray& edge_types) const;

 private:
  mutable std::vector<std::shared_ptr<void>> edges_;
};

namespace korvel::arx_double {

// What the drawing has under the identifier, as an object of the host.
[[nodiscard]] std::unique_ptr<AcDbObject> entity_over(const AcDbObjectId& id);

// A vertex or an attribute; null when there is none, or none that may be written.
[[nodiscard]] std::unique_ptr<AcDbObject> part_over(const AcDbObjectId& id, AcDb::OpenMode mode);

}  // namespace korvel::arx_double
