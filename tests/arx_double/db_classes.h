// A double of the CAD host's database classes: as much of their shape as the binding uses, in our
// own words, over a drawing of the stand-alone host. It shows that the binding fits this shape and
// behaves on it; it proves nothing about the real host.
//
// What the real ones are known to do, these do: an entity on a locked layer does not open for
// writing, an erased one does not open at all, what is open for reading is not changed, and what
// was opened has to be closed; what was not is counted.
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

#include "host/standalone/standalone_host.h"
#include "tests/arx_double/ge_classes.h"

using ACHAR = wchar_t;

namespace Adesk {
using Boolean = bool;
using Int32 = std::int32_t;
using UInt16 = std::uint16_t;
using UInt8 = std::uint8_t;
using IntDbId = std::int64_t;
}  // namespace Adesk

namespace Acad {
enum ErrorStatus {
  eOk = 0,
  eNullObjectId,
  eWasErased,
  eOnLockedLayer,
  eNotOpenForWrite,
  eNotThatKindOfClass,
  eAlreadyInDb,
  eContainerNotEmpty,
  eLockViolation,
  eWasOpenForWrite,
  eError
};
}

namespace AcDb {
enum OpenMode { kForRead = 0, kForWrite = 1 };
enum LineWeight : int { kLnWtByLwDefault = -3, kLnWtByBlock = -2, kLnWtByLayer = -1 };
}  // namespace AcDb

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

class AcRxClass {};

class AcRxObject {
 public:
  AcRxObject() = default;
  AcRxObject(const AcRxObject&) = delete;
  AcRxObject& operator=(const AcRxObject&) = delete;
  virtual ~AcRxObject() = default;

  [[nodiscard]] virtual AcRxClass* isA() const = 0;
};

// What each class of the host has of itself; derived classes pass the cast, too.
template <class Class, class Base>
class Described : public Base {
 public:
  using Base::Base;
  static AcRxClass* desc() {
    static AcRxClass described;
    return &described;
  }
  static Class* cast(const AcRxObject* object) {
    return const_cast<Class*>(dynamic_cast<const Class*>(object));
  }
  [[nodiscard]] AcRxClass* isA() const override { return desc(); }
};

// Every object that was opened, or made and added to the drawing, is closed by its user.
class AcDbObject : public Described<AcDbObject, AcRxObject> {
 public:
  AcDbObject();
  ~AcDbObject() override;

  [[nodiscard]] AcDbObjectId objectId() const { return id_; }
  void getAcDbHandle(AcDbHandle& handle) const;
  Acad::ErrorStatus erase();
  Acad::ErrorStatus close();
  Acad::ErrorStatus cancel();

  // Of no drawing; null for what cannot be cloned.
  [[nodiscard]] virtual AcDbObject* clone() const { return nullptr; }

  // See dictionary_classes.h.
  [[nodiscard]] AcDbObjectId extensionDictionary() const;
  Acad::ErrorStatus createExtensionDictionary();
  Acad::ErrorStatus releaseExtensionDictionary();

  void give_id(AcDbObjectId id) { id_ = id; }
  // A copy of no drawing, which may be kept and is not closed but deleted.
  void stand_free();
  void open_for(AcDb::OpenMode mode) { mode_ = mode; }
  [[nodiscard]] bool writes() const { return mode_ == AcDb::kForWrite; }

 protected:
  static AcDbObject* free(AcDbObject* object) {
    object->stand_free();
    return object;
  }
  // What was changed goes into the drawing.
  virtual void save() {}

 private:
  AcDbObjectId id_;
  bool has_new_dictionary_ = false;
  bool stands_free_ = false;
  AcDb::OpenMode mode_ = AcDb::kForWrite;  // a new object's
};

class AcCmEntityColor {
 public:
  enum ColorMethod { kByLayer = 0xC0, kByBlock = 0xC1, kByColor = 0xC2, kByACI = 0xC3 };
};

class AcCmColor {
 public:
  [[nodiscard]] AcCmEntityColor::ColorMethod colorMethod() const;
  [[nodiscard]] Adesk::UInt16 colorIndex() const { return index_; }
  [[nodiscard]] Adesk::UInt8 red() const { return part(16); }
  [[nodiscard]] Adesk::UInt8 green() const { return part(8); }
  [[nodiscard]] Adesk::UInt8 blue() const { return part(0); }
  Acad::ErrorStatus setColorIndex(Adesk::UInt16 index);
  // The index becomes that of the host's nearest colour, which is not sought here.
  Acad::ErrorStatus setRGB(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue);

  [[nodiscard]] bool hasColorName() const { return !name_.empty(); }
  [[nodiscard]] bool hasBookName() const { return !book_.empty(); }
  [[nodiscard]] const ACHAR* colorName() const { return name_.c_str(); }
  [[nodiscard]] const ACHAR* bookName() const { return book_.c_str(); }
  Acad::ErrorStatus setNames(const ACHAR* color, const ACHAR* book = nullptr);

  void set(int index, std::optional<std::int32_t> rgb);
  // Both names as in a drawing file.
  void set_book_color(const std::wstring& names);
  [[nodiscard]] std::wstring book_color() const {
    return book_.empty() ? name_ : book_ + L'$' + name_;
  }
  [[nodiscard]] std::optional<std::int32_t> rgb() const { return rgb_; }

 private:
  [[nodiscard]] Adesk::UInt8 part(int shift) const {
    return static_cast<Adesk::UInt8>(rgb_.value_or(0) >> shift & 0xFF);
  }

  Adesk::UInt16 index_ = 256;
  std::optional<std::int32_t> rgb_;
  std::wstring name_;
  std::wstring book_;
};

// What is changed, of an entity of the drawing, goes into the drawing when it is closed.
class AcDbEntity : public Described<AcDbEntity, AcDbObject> {
 public:
  [[nodiscard]] AcDbObjectId layerId() const;
  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const;

  [[nodiscard]] AcCmColor color() const;
  [[nodiscard]] AcDbObjectId linetypeId() const;
  [[nodiscard]] double linetypeScale() const { return properties().linetype_scale; }
  [[nodiscard]] AcDb::LineWeight lineWeight() const;
  Acad::ErrorStatus setColor(const AcCmColor& color);
  Acad::ErrorStatus setLayer(AcDbObjectId layer);
  Acad::ErrorStatus setLinetype(AcDbObjectId linetype);
  Acad::ErrorStatus setLinetypeScale(double scale);
  Acad::ErrorStatus setLineWeight(AcDb::LineWeight weight);
  Acad::ErrorStatus setPropertiesFrom(const AcDbEntity* entity);

  // The other one, which is new, takes the place of this one, which is the caller's afterwards.
  // Data and dictionary can only be kept here.
  Acad::ErrorStatus handOverTo(AcDbEntity* entity, bool keep_xdata = true,
                               bool keep_dictionary = true);

  // None of what has no shape here.
  [[nodiscard]] virtual std::optional<korvel::EntityGeometry> geometry() const {
    return std::nullopt;
  }
  [[nodiscard]] const korvel::EntityProperties& properties() const;

 protected:
  void save() override;
  // Whether the shape may be changed; it is then saved.
  Acad::ErrorStatus change_shape();

 private:
  template <class Value>
  Acad::ErrorStatus change(Value korvel::EntityProperties::*property, Value value);

  mutable std::optional<korvel::EntityProperties> properties_;  // once asked for
  bool properties_changed_ = false;
  bool shape_changed_ = false;
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

class AcDbSymbolTableRecord : public Described<AcDbSymbolTableRecord, AcDbObject> {
 public:
  explicit AcDbSymbolTableRecord(std::wstring name = {}) : name_(std::move(name)) {}
  Acad::ErrorStatus getName(const ACHAR*& name) const;

 private:
  std::wstring name_;
};

class AcDbBlockTableRecord : public Described<AcDbBlockTableRecord, AcDbSymbolTableRecord> {
 public:
  using Described::Described;
  Acad::ErrorStatus newIterator(AcDbBlockTableRecordIterator*& iterator, bool at_beginning = true,
                                bool skip_erased = true) const;
  Acad::ErrorStatus appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity);
};

#define ACDB_MODEL_SPACE L"*Model_Space"

class AcDbSymbolTable : public Described<AcDbSymbolTable, AcDbObject> {
 public:
  // The linetypes and blocks of the drawing are not known here: there is one of every name.
  virtual Acad::ErrorStatus getAt(const ACHAR* name, AcDbObjectId& id) const;
};

class AcDbLinetypeTable : public Described<AcDbLinetypeTable, AcDbSymbolTable> {};

class AcDbBlockTable : public Described<AcDbBlockTable, AcDbSymbolTable> {
 public:
  using AcDbSymbolTable::getAt;
  Acad::ErrorStatus getAt(const ACHAR* name, AcDbBlockTableRecord*& record,
                          AcDb::OpenMode mode) const;
};

class AcDbLayerTableRecord : public Described<AcDbLayerTableRecord, AcDbSymbolTableRecord> {
 public:
  explicit AcDbLayerTableRecord(const korvel::Layer& layer);
  [[nodiscard]] bool isFrozen() const { return layer_.frozen; }
  [[nodiscard]] bool isOff() const { return layer_.off; }
  [[nodiscard]] bool isLocked() const { return layer_.locked; }
  [[nodiscard]] bool isHidden() const { return layer_.hidden; }

 private:
  korvel::Layer layer_;
};

class AcDbLayerTableIterator {
 public:
  explicit AcDbLayerTableIterator(std::vector<korvel::Layer> layers) : layers_(std::move(layers)) {
    start();
  }
  void setSkipHidden(bool skip) { skips_hidden_ = skip; }
  void start() { next_ = first_shown(0); }
  [[nodiscard]] bool done() const { return next_ == layers_.size(); }
  void step() { next_ = first_shown(next_ + 1); }
  Acad::ErrorStatus getRecord(AcDbLayerTableRecord*& record, AcDb::OpenMode mode) const;

 private:
  [[nodiscard]] std::size_t first_shown(std::size_t index) const {
    while (skips_hidden_ && index < layers_.size() && layers_[index].hidden)
      ++index;
    return index;
  }
  std::vector<korvel::Layer> layers_;
  std::size_t next_ = 0;
  bool skips_hidden_ = true;
};

class AcDbLayerTable : public Described<AcDbLayerTable, AcDbSymbolTable> {
 public:
  Acad::ErrorStatus getAt(const ACHAR* name, AcDbObjectId& id) const override;
  Acad::ErrorStatus newIterator(AcDbLayerTableIterator*& iterator) const;
};

class AcDbDatabase {
 public:
  template <class Table>
  Acad::ErrorStatus getSymbolTable(Table*& table, AcDb::OpenMode mode) {
    table = new Table;
    table->open_for(mode);
    return Acad::eOk;
  }
  Acad::ErrorStatus getBlockTable(AcDbBlockTable*& table, AcDb::OpenMode mode);
  Acad::ErrorStatus getLayerTable(AcDbLayerTable*& table, AcDb::OpenMode mode);
  Acad::ErrorStatus getAcDbObjectId(AcDbObjectId& id, bool create, const AcDbHandle& handle);
};

class AcDbHostApplicationServices {
 public:
  AcDbDatabase* workingDatabase();
  const ACHAR* getUserRegistryProductRootKey() { return L"Software\\Double"; }
};
AcDbHostApplicationServices* acdbHostApplicationServices();

Acad::ErrorStatus acdbOpenObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool open_erased = false);

template <class Class>
Acad::ErrorStatus acdbOpenObject(Class*& opened, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool open_erased = false) {
  AcDbObject* object = nullptr;
  const Acad::ErrorStatus status = acdbOpenObject(object, id, mode, open_erased);
  if (status != Acad::eOk || object == nullptr) return status;
  opened = Class::cast(object);
  if (opened != nullptr) return Acad::eOk;
  object->close();
  return Acad::eNotThatKindOfClass;
}

// Deletes a text that an object handed out, and makes the pointer null.
int acutDelString(ACHAR*& text);

namespace korvel::arx_double {

// A text for the caller to delete.
[[nodiscard]] ACHAR* hand_out(const std::wstring& text);
// Those not yet deleted.
[[nodiscard]] int texts_kept();

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

// Whether an iterator stands on the entity's records for writing.
[[nodiscard]] bool records_are_written(EntityId entity);

// Whether a command runs or the document is locked: otherwise nothing in it opens for writing.
[[nodiscard]] bool is_writable();

[[nodiscard]] EntityId entity_of(const AcDbObjectId& id);
[[nodiscard]] AcDbObjectId id_of(EntityId entity);

// Parts (vertices, attributes) are known by their owner and their place in it.
[[nodiscard]] AcDbObjectId part_of(const AcDbObjectId& owner, std::size_t index);
[[nodiscard]] bool is_part(const AcDbObjectId& id);
[[nodiscard]] AcDbObjectId owner_of(const AcDbObjectId& part);
[[nodiscard]] std::size_t index_of(const AcDbObjectId& part);

// Blocks and linetypes by nothing but their name, whose letter case counts.
[[nodiscard]] AcDbObjectId id_of_name(const std::wstring& name);
[[nodiscard]] std::wstring name_of(const AcDbObjectId& id);

// Objects opened and not yet closed.
[[nodiscard]] int open_objects();
// Copies of no drawing that were not deleted.
[[nodiscard]] int free_objects();

}  // namespace korvel::arx_double
