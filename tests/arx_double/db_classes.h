// A double of the CAD host's database classes: as much of their shape as the binding uses, in our
// own words, over a drawing of the stand-alone host. It shows that the binding fits this shape and
// behaves on it; it proves nothing about the real host.
//
// What the real ones are known to do, these do: an entity on a locked layer does not open for
// writing, an erased one does not open at all, and what was opened has to be closed; what was not
// is counted.
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

#include "host/standalone/standalone_host.h"

using ACHAR = wchar_t;

namespace Adesk {
using Boolean = bool;
using Int32 = std::int32_t;
using IntDbId = std::int64_t;
}  // namespace Adesk

namespace Acad {
enum ErrorStatus {
  eOk = 0,
  eNullObjectId,
  eWasErased,
  eOnLockedLayer,
  eNotThatKindOfClass,
  eAlreadyInDb,
  eContainerNotEmpty,
  eError
};
}

namespace AcDb {
enum OpenMode { kForRead = 0, kForWrite = 1 };
}

class AcDbObjectId {
 public:
  [[nodiscard]] bool isNull() const { return id_ == 0; }
  [[nodiscard]] Adesk::IntDbId asOldId() const { return id_; }
  AcDbObjectId& setFromOldId(Adesk::IntDbId id) {
    id_ = id;
    return *this;
  }
  friend bool operator==(const AcDbObjectId&, const AcDbObjectId&) = default;
  friend auto operator<=>(const AcDbObjectId&, const AcDbObjectId&) = default;

 private:
  Adesk::IntDbId id_ = 0;
};

struct AcGePoint3d {
  AcGePoint3d() = default;
  AcGePoint3d(double x_value, double y_value, double z_value)
      : x(x_value), y(y_value), z(z_value) {}
  double x = 0;
  double y = 0;
  double z = 0;
};

class AcDbHandle {
 public:
  AcDbHandle() = default;
  explicit AcDbHandle(const ACHAR* text) : text_(text) {}
  bool getIntoAsciiBuffer(ACHAR* buffer, std::size_t length) const;
  [[nodiscard]] const std::wstring& text() const { return text_; }

 private:
  std::wstring text_;
};

class AcDbExtents {
 public:
  [[nodiscard]] AcGePoint3d minPoint() const { return min_; }
  [[nodiscard]] AcGePoint3d maxPoint() const { return max_; }
  void set(const AcGePoint3d& min, const AcGePoint3d& max) {
    min_ = min;
    max_ = max;
  }

 private:
  AcGePoint3d min_;
  AcGePoint3d max_;
};

// Every object that was opened, or made and added to the drawing, is closed by its user.
class AcDbObject {
 public:
  AcDbObject();
  AcDbObject(const AcDbObject&) = delete;
  AcDbObject& operator=(const AcDbObject&) = delete;
  virtual ~AcDbObject();

  [[nodiscard]] AcDbObjectId objectId() const { return id_; }
  void getAcDbHandle(AcDbHandle& handle) const;
  Acad::ErrorStatus erase();
  Acad::ErrorStatus close();

  static AcDbObject* cast(AcDbObject* object) { return object; }
  // Of no drawing; null for what cannot be cloned.
  [[nodiscard]] virtual AcDbObject* clone() const { return nullptr; }

  // See dictionary_classes.h.
  [[nodiscard]] AcDbObjectId extensionDictionary() const;
  Acad::ErrorStatus createExtensionDictionary();
  Acad::ErrorStatus releaseExtensionDictionary();

  void give_id(AcDbObjectId id) { id_ = id; }

 private:
  AcDbObjectId id_;
  bool has_new_dictionary_ = false;
};

class AcDbEntity : public AcDbObject {
 public:
  [[nodiscard]] AcDbObjectId layerId() const;
  // Of one that is not in the drawing yet.
  Acad::ErrorStatus setLayer(AcDbObjectId layer) {
    layer_ = layer;
    return Acad::eOk;
  }
  [[nodiscard]] AcDbObjectId wanted_layer() const { return layer_; }
  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const;

 private:
  AcDbObjectId layer_;
};

class AcDbPoint : public AcDbEntity {
 public:
  explicit AcDbPoint(const AcGePoint3d& position) : position_(position) {}
  [[nodiscard]] const AcGePoint3d& position() const { return position_; }

 private:
  AcGePoint3d position_;
};

class AcDbBlockTableRecordIterator {
 public:
  explicit AcDbBlockTableRecordIterator(korvel::EntityList entities)
      : entities_(std::move(entities)) {}
  [[nodiscard]] bool done() const { return next_ == entities_.size(); }
  void step() { ++next_; }
  Acad::ErrorStatus getEntityId(AcDbObjectId& id) const;

 private:
  korvel::EntityList entities_;
  std::size_t next_ = 0;
};

class AcDbBlockTableRecord : public AcDbObject {
 public:
  Acad::ErrorStatus newIterator(AcDbBlockTableRecordIterator*& iterator, bool at_beginning = true,
                                bool skip_erased = true) const;
  Acad::ErrorStatus appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity);
};

#define ACDB_MODEL_SPACE L"*Model_Space"

class AcDbBlockTable : public AcDbObject {
 public:
  Acad::ErrorStatus getAt(const ACHAR* name, AcDbBlockTableRecord*& record,
                          AcDb::OpenMode mode) const;
};

class AcDbLayerTableRecord : public AcDbObject {
 public:
  explicit AcDbLayerTableRecord(korvel::Layer layer) : layer_(std::move(layer)) {}
  Acad::ErrorStatus getName(const ACHAR*& name) const;
  [[nodiscard]] bool isFrozen() const { return layer_.frozen; }
  [[nodiscard]] bool isOff() const { return layer_.off; }
  [[nodiscard]] bool isLocked() const { return layer_.locked; }
  [[nodiscard]] bool isHidden() const { return layer_.hidden; }

 private:
  korvel::Layer layer_;
};

class AcDbLayerTableIterator {
 public:
  explicit AcDbLayerTableIterator(std::vector<korvel::Layer> layers) : layers_(std::move(layers)) {}
  [[nodiscard]] bool done() const { return next_ == layers_.size(); }
  void step() { ++next_; }
  Acad::ErrorStatus getRecord(AcDbLayerTableRecord*& record, AcDb::OpenMode mode) const;

 private:
  std::vector<korvel::Layer> layers_;
  std::size_t next_ = 0;
};

class AcDbLayerTable : public AcDbObject {
 public:
  Acad::ErrorStatus newIterator(AcDbLayerTableIterator*& iterator) const;
};

class AcDbDatabase {
 public:
  Acad::ErrorStatus getBlockTable(AcDbBlockTable*& table, AcDb::OpenMode mode);
  Acad::ErrorStatus getLayerTable(AcDbLayerTable*& table, AcDb::OpenMode mode);
  Acad::ErrorStatus getAcDbObjectId(AcDbObjectId& id, bool create, const AcDbHandle& handle);
};

class AcDbHostApplicationServices {
 public:
  AcDbDatabase* workingDatabase();
};
AcDbHostApplicationServices* acdbHostApplicationServices();

Acad::ErrorStatus acdbOpenObject(AcDbEntity*& entity, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool open_erased = false);

namespace korvel::arx_double {

// While it lives, the working database is this drawing.
class DatabaseOver {
 public:
  explicit DatabaseOver(StandaloneHost& host);
  ~DatabaseOver();
  DatabaseOver(const DatabaseOver&) = delete;
  DatabaseOver& operator=(const DatabaseOver&) = delete;

 private:
  StandaloneHost* former_;
};

[[nodiscard]] StandaloneHost& working_drawing();

// Objects opened and not yet closed.
[[nodiscard]] int open_objects();

}  // namespace korvel::arx_double
