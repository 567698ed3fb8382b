#include "tests/arx_double/db_classes.h"

namespace {

korvel::StandaloneHost* working = nullptr;
int open_count = 0;

korvel::EntityId entity_of(const AcDbObjectId& id) {
  return {static_cast<std::uint64_t>(id.asOldId())};
}

AcDbObjectId id_of(korvel::EntityId entity) {
  AcDbObjectId id;
  id.setFromOldId(static_cast<Adesk::IntDbId>(entity.value));
  return id;
}

AcGePoint3d point_of(const korvel::Point3& point) { return {point.x, point.y, point.z}; }

}  // namespace

bool AcDbHandle::getIntoAsciiBuffer(ACHAR* buffer, std::size_t length) const {
  if (text_.size() >= length) return false;
  text_.copy(buffer, text_.size());
  buffer[text_.size()] = L'\0';
  return true;
}

AcDbObject::AcDbObject() { ++open_count; }

AcDbObject::~AcDbObject() { --open_count; }

void AcDbObject::getAcDbHandle(AcDbHandle& handle) const {
  handle = AcDbHandle(working->handle_of(entity_of(id_)).c_str());
}

Acad::ErrorStatus AcDbObject::erase() {
  return working->drawing().erase(entity_of(id_)) ? Acad::eOk : Acad::eError;
}

Acad::ErrorStatus AcDbObject::close() {
  delete this;
  return Acad::eOk;
}

AcDbObjectId AcDbEntity::layerId() const { return id_of(working->layer_of(entity_of(objectId()))); }

Acad::ErrorStatus AcDbEntity::getGeomExtents(AcDbExtents& extents) const {
  const auto box = working->extents_of(entity_of(objectId()));
  if (!box) return Acad::eError;
  extents.set(point_of(box->min), point_of(box->max));
  return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntityId(AcDbObjectId& id) const {
  id = id_of(entities_.at(next_));
  return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::newIterator(AcDbBlockTableRecordIterator*& iterator,
                                                    bool /*at_beginning*/,
                                                    bool /*skip_erased*/) const {
  iterator = new AcDbBlockTableRecordIterator(working->model_space());
  return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity) {
  const auto* const point = dynamic_cast<AcDbPoint*>(entity);
  if (point == nullptr) return Acad::eError;
  const auto& [x, y, z] = point->position();
  korvel::EntityProperties properties;
  for (const korvel::Layer& layer : working->layers()) {
    if (id_of(layer.id) == point->wanted_layer()) properties.layer = layer.name;
  }
  const auto added = working->drawing().add_entity({korvel::PointShape{{x, y, z}}}, properties);
  if (!added) return Acad::eError;
  id = id_of(*added);
  entity->give_id(id);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTable::getAt(const ACHAR* name, AcDbBlockTableRecord*& record,
                                        AcDb::OpenMode /*mode*/) const {
  if (std::wstring_view(name) != ACDB_MODEL_SPACE) return Acad::eError;
  record = new AcDbBlockTableRecord;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbLayerTableRecord::getName(const ACHAR*& name) const {
  name = layer_.name.c_str();
  return Acad::eOk;
}

Acad::ErrorStatus AcDbLayerTableIterator::getRecord(AcDbLayerTableRecord*& record,
                                                    AcDb::OpenMode /*mode*/) const {
  record = new AcDbLayerTableRecord(layers_.at(next_));
  record->give_id(id_of(layers_[next_].id));
  return Acad::eOk;
}

Acad::ErrorStatus AcDbLayerTable::newIterator(AcDbLayerTableIterator*& iterator) const {
  iterator = new AcDbLayerTableIterator(working->layers());
  return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::getBlockTable(AcDbBlockTable*& table, AcDb::OpenMode /*mode*/) {
  table = new AcDbBlockTable;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::getLayerTable(AcDbLayerTable*& table, AcDb::OpenMode /*mode*/) {
  table = new AcDbLayerTable;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::getAcDbObjectId(AcDbObjectId& id, bool /*create*/,
                                                const AcDbHandle& handle) {
  id = id_of(working->entity_with_handle(handle.text()));
  return id.isNull() ? Acad::eNullObjectId : Acad::eOk;
}

AcDbDatabase* AcDbHostApplicationServices::workingDatabase() {
  static AcDbDatabase database;
  return working == nullptr ? nullptr : &database;
}

AcDbHostApplicationServices* acdbHostApplicationServices() {
  static AcDbHostApplicationServices services;
  return &services;
}

Acad::ErrorStatus acdbOpenObject(AcDbEntity*& entity, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool /*open_erased*/) {
  if (id.isNull()) return Acad::eNullObjectId;
  const bool writes = mode == AcDb::kForWrite;
  if (!working->opens(entity_of(id), korvel::OpenMode::Read)) return Acad::eWasErased;
  if (writes && !working->opens(entity_of(id), korvel::OpenMode::Write)) {
    return Acad::eOnLockedLayer;
  }
  entity = new AcDbEntity;
  entity->give_id(id);
  return Acad::eOk;
}

namespace korvel::arx_double {

DatabaseOver::DatabaseOver(StandaloneHost& host) : former_(working) { working = &host; }

DatabaseOver::~DatabaseOver() { working = former_; }

StandaloneHost& working_drawing() { return *working; }

int open_objects() { return open_count; }

}  // namespace korvel::arx_double
