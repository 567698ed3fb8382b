// A double of the CAD host's classes of entities that have vertices or attributes, see
// db_classes.h. What the old-style polylines and the block references own is opened by itself.
#pragma once

#include <memory>
#include <vector>

#include "tests/arx_double/entity_classes.h"

namespace AcDb {
enum Vertex2dType { k2dVertex = 0, k2dSplineCtlVertex = 1 };
enum Vertex3dType { k3dSimpleVertex = 0, k3dControlVertex = 1 };
}  // namespace AcDb

class AcDbObjectIterator {
 public:
  AcDbObjectIterator(AcDbObjectId owner, std::size_t count) : owner_(owner), count_(count) {}
  [[nodiscard]] bool done() const { return next_ == count_; }
  void step() { ++next_; }
  [[nodiscard]] AcDbObjectId objectId() const { return korvel::arx_double::part_of(owner_, next_); }

 private:
  AcDbObjectId owner_;
  std::size_t count_;
  std::size_t next_ = 0;
};

// Its vertices lie in its own plane.
class AcDbPolyline : public Described<AcDbPolyline, AcDbCurve> {
 public:
  AcDbPolyline() = default;
  explicit AcDbPolyline(const korvel::EntityGeometry& geometry);
  [[nodiscard]] std::optional<korvel::EntityGeometry> geometry() const override;

  [[nodiscard]] unsigned int numVerts() const {
    return static_cast<unsigned int>(shape_.vertices.size());
  }
  Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint3d& point) const;
  Acad::ErrorStatus getBulgeAt(unsigned int index, double& bulge) const;
  Acad::ErrorStatus getWidthsAt(unsigned int index, double& start, double& end) const;
  [[nodiscard]] AcGeVector3d normal() const;
  [[nodiscard]] double thickness() const { return thickness_; }
  [[nodiscard]] bool isClosed() const { return shape_.closed; }
  [[nodiscard]] bool hasPlinegen() const { return shape_.linetype_runs_on; }

  Acad::ErrorStatus reset(bool reuse, unsigned int count);
  Acad::ErrorStatus addVertexAt(unsigned int index, const AcGePoint2d& point, double bulge,
                                double start_width, double end_width);
  Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
  Acad::ErrorStatus setElevation(double elevation);
  Acad::ErrorStatus setThickness(double thickness);
  Acad::ErrorStatus setClosed(bool closed);
  Acad::ErrorStatus setPlinegen(bool runs_on);

 private:
  korvel::PolylineShape shape_;  // vertices in the plane
  double elevation_ = 0;
  double thickness_ = 0;
};

// A vertex of an old-style polyline, outside of one or in it.
class AcDbVertex : public Described<AcDbVertex, AcDbEntity> {
 public:
  AcDbVertex() = default;
  explicit AcDbVertex(const korvel::Vertex& vertex) : vertex_(vertex) {}
  [[nodiscard]] const korvel::Vertex& vertex() const { return vertex_; }

 private:
  korvel::Vertex vertex_;  // in the plane of a 2D polyline, in the world of a 3D one
};

class AcDb2dVertex : public Described<AcDb2dVertex, AcDbVertex> {
 public:
  using Described::Described;
  AcDb2dVertex(const AcGePoint3d& position, double bulge, double start_width, double end_width);
  [[nodiscard]] AcDb::Vertex2dType vertexType() const { return AcDb::k2dVertex; }
  [[nodiscard]] double bulge() const { return vertex().bulge; }
  [[nodiscard]] double startWidth() const { return vertex().start_width; }
  [[nodiscard]] double endWidth() const { return vertex().end_width; }
};

class AcDb3dPolylineVertex : public Described<AcDb3dPolylineVertex, AcDbVertex> {
 public:
  using Described::Described;
  explicit AcDb3dPolylineVertex(const AcGePoint3d& position);
  [[nodiscard]] AcDb::Vertex3dType vertexType() const { return AcDb::k3dSimpleVertex; }
  [[nodiscard]] AcGePoint3d position() const;
};

// What 2D and 3D polylines share. A new one, outside of the drawing, owns its vertices.
template <class Class, class Vertex>
class OldPolyline : public Described<Class, AcDbCurve> {
 public:
  OldPolyline() = default;
  explicit OldPolyline(const korvel::EntityGeometry& geometry)
      : shape_(std::get<korvel::PolylineShape>(geometry.shape)), thickness_(geometry.thickness) {}
  [[nodiscard]] std::optional<korvel::EntityGeometry> geometry() const override {
    return korvel::EntityGeometry{shape_, thickness_};
  }

  [[nodiscard]] AcDbObjectIterator* vertexIterator() const {
    return new AcDbObjectIterator(this->objectId(), shape_.vertices.size());
  }
  Acad::ErrorStatus appendVertex(Vertex* vertex) {
    if (!this->objectId().isNull()) return Acad::eError;
    shape_.vertices.push_back(in_world(vertex->vertex()));
    owned_.emplace_back(vertex);
    return Acad::eOk;
  }
  [[nodiscard]] bool isClosed() const { return shape_.closed; }
  Acad::ErrorStatus makeClosed() {
    shape_.closed = true;
    return this->change_shape();
  }

 protected:
  [[nodiscard]] virtual korvel::Vertex in_world(const korvel::Vertex& vertex) const = 0;

  korvel::PolylineShape shape_;
  double thickness_ = 0;

 private:
  std::vector<std::unique_ptr<Vertex>> owned_;
};

class AcDb2dPolyline : public OldPolyline<AcDb2dPolyline, AcDb2dVertex> {
 public:
  AcDb2dPolyline() { shape_.kind = korvel::PolylineKind::Old2d; }
  using OldPolyline::OldPolyline;
  [[nodiscard]] AcGePoint3d vertexPosition(const AcDb2dVertex& vertex) const;
  [[nodiscard]] AcGeVector3d normal() const;
  [[nodiscard]] double thickness() const { return thickness_; }
  [[nodiscard]] bool isLinetypeGenerationOn() const { return shape_.linetype_runs_on; }
  Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
  Acad::ErrorStatus setElevation(double elevation);
  Acad::ErrorStatus setThickness(double thickness);
  Acad::ErrorStatus setLinetypeGenerationOn();

 private:
  [[nodiscard]] korvel::Vertex in_world(const korvel::Vertex& vertex) const override;
  double elevation_ = 0;
};

class AcDb3dPolyline : public OldPolyline<AcDb3dPolyline, AcDb3dPolylineVertex> {
 public:
  AcDb3dPolyline() { shape_.kind = korvel::PolylineKind::ThreeD; }
  using OldPolyline::OldPolyline;

 private:
  [[nodiscard]] korvel::Vertex in_world(const korvel::Vertex& vertex) const override {
    return vertex;
  }
};

class AcDbBlockReference
    : public Shaped<AcDbBlockReference, AcDbEntity, korvel::BlockReferenceShape> {
 public:
  using Shaped::Shaped;
  [[nodiscard]] AcGePoint3d position() const;
  [[nodiscard]] AcGeVector3d normal() const;
  [[nodiscard]] AcGeScale3d scaleFactors() const;
  [[nodiscard]] double rotation() const { return shape_.rotation; }
  [[nodiscard]] AcDbObjectId blockTableRecord() const;
  [[nodiscard]] AcDbObjectIterator* attributeIterator() const;
  Acad::ErrorStatus setPosition(const AcGePoint3d& position);
  Acad::ErrorStatus setNormal(const AcGeVector3d& normal);
  Acad::ErrorStatus setScaleFactors(const AcGeScale3d& scale);
  Acad::ErrorStatus setRotation(double rotation) { return set(shape_.rotation, rotation); }
  Acad::ErrorStatus setBlockTableRecord(AcDbObjectId block);
};

class AcDbMInsertBlock : public Described<AcDbMInsertBlock, AcDbBlockReference> {
 public:
  using Described::Described;
  [[nodiscard]] Adesk::UInt16 columns() const { return static_cast<Adesk::UInt16>(shape_.columns); }
  [[nodiscard]] Adesk::UInt16 rows() const { return static_cast<Adesk::UInt16>(shape_.rows); }
  [[nodiscard]] double columnSpacing() const { return shape_.column_spacing; }
  [[nodiscard]] double rowSpacing() const { return shape_.row_spacing; }
  Acad::ErrorStatus setColumns(Adesk::UInt16 columns) { return set(shape_.columns, columns); }
  Acad::ErrorStatus setRows(Adesk::UInt16 rows) { return set(shape_.rows, rows); }
  Acad::ErrorStatus setColumnSpacing(double spacing) { return set(shape_.column_spacing, spacing); }
  Acad::ErrorStatus setRowSpacing(double spacing) { return set(shape_.row_spacing, spacing); }
};

// What it is told goes into the drawing at once.
class AcDbAttribute : public Described<AcDbAttribute, AcDbText> {
 public:
  explicit AcDbAttribute(const korvel::BlockAttribute& attribute);
  [[nodiscard]] const ACHAR* tagConst() const { return tag_.c_str(); }
  Acad::ErrorStatus setTextString(const ACHAR* text) override;
  // The drawing keeps the texts of multi-line ones right by itself.
  [[nodiscard]] bool isMTextAttribute() const { return false; }
  Acad::ErrorStatus updateMTextAttribute() { return Acad::eOk; }

 private:
  std::wstring tag_;
};

class AcDbDynBlockReference {
 public:
  explicit AcDbDynBlockReference(AcDbObjectId reference);
  [[nodiscard]] bool isDynamicBlock() const { return !definition_.isNull(); }
  [[nodiscard]] AcDbObjectId dynamicBlockTableRecord() const { return definition_; }

 private:
  AcDbObjectId definition_;
};
