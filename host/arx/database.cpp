#include "host/arx/database.h"

#include <algorithm>
#include <array>
#include <memory>

#include "host/arx/ge_values.h"
#include "host/arx/guards.h"
#include "host/arx/object_ids.h"
#include "host/arx/symbol_records.h"

namespace korvel::arx {
namespace {

Opened<AcDbBlockTableRecord> open_model_space(AcDb::OpenMode mode) {
  AcDbDatabase* const drawing = working_database();
  AcDbBlockTable* table = nullptr;
  if (drawing == nullptr || drawing->getBlockTable(table, AcDb::kForRead) != Acad::eOk) return {};
  const Opened<AcDbBlockTable> blocks(table);
  AcDbBlockTableRecord* record = nullptr;
  const bool found = blocks->getAt(ACDB_MODEL_SPACE, record, mode) == Acad::eOk;
  return Opened<AcDbBlockTableRecord>(found ? record : nullptr);
}

// Unconfirmed: the form of the call.
std::wstring text_of(const AcDbHandle& handle) {
  std::array<ACHAR, 17> digits{};  // of 64 bits, and the end
  return handle.getIntoAsciiBuffer(digits.data(), digits.size()) ? digits.data() : std::wstring();
}

// Unconfirmed: the form of both calls. The null identifier when nothing has the handle.
AcDbObjectId id_with_handle(AcDbDatabase& drawing, const std::wstring& handle) {
  AcDbObjectId id;
  return drawing.getAcDbObjectId(id, false, AcDbHandle(handle.c_str())) == Acad::eOk
             ? id
             : AcDbObjectId();
}

// Unconfirmed: the name of the call.
bool is_hidden(const AcDbLayerTableRecord& layer) { return layer.isHidden(); }

Layer layer_from(const AcDbLayerTableRecord& layer) {
  return {entity_id(layer.objectId()),
          name_of(layer),
          layer.isFrozen(),
          is_hidden(layer),
          layer.isLocked(),
          layer.isOff()};
}

// Unconfirmed: both calls. The host's walk passes over hidden layers unless it is told not to.
void include_hidden(AcDbLayerTableIterator& walk) {
  walk.setSkipHidden(false);
  walk.start();
}

// Unconfirmed: the calls. Null: the point cannot be on that layer.
std::unique_ptr<AcDbPoint> point_on(AcDbObjectId layer) {
  auto point = std::make_unique<AcDbPoint>(AcGePoint3d());
  return point->setLayer(layer) == Acad::eOk ? std::move(point) : nullptr;
}

// Unconfirmed: the order of the arguments. The drawing owns what was appended.
bool append(AcDbBlockTableRecord& space, AcDbEntity& entity, AcDbObjectId& id) {
  return space.appendAcDbEntity(id, &entity) == Acad::eOk;
}

}  // namespace

EntityList model_space() {
  EntityList entities;
  const Opened<AcDbBlockTableRecord> space = open_model_space(AcDb::kForRead);
  AcDbBlockTableRecordIterator* walk = nullptr;
  if (!space || space->newIterator(walk) != Acad::eOk) return entities;
  const std::unique_ptr<AcDbBlockTableRecordIterator> held(walk);
  AcDbObjectId id;
  for (; !walk->done(); walk->step()) {
    if (walk->getEntityId(id) == Acad::eOk) entities.push_back(entity_id(id));
  }
  return entities;
}

bool opens(EntityId entity, OpenMode mode) {
  const bool writes = mode == OpenMode::Write;
  return open_entity(object_id(entity), writes ? AcDb::kForWrite : AcDb::kForRead) != nullptr;
}

EntityId layer_of(EntityId entity) {
  const Opened<AcDbEntity> opened = open_entity(object_id(entity), AcDb::kForRead);
  return opened ? entity_id(opened->layerId()) : EntityId{};
}

std::wstring handle_of(EntityId entity) {
  const Opened<AcDbEntity> opened = open_entity(object_id(entity), AcDb::kForRead);
  if (!opened) return {};
  AcDbHandle handle;
  opened->getAcDbHandle(handle);
  return text_of(handle);
}

EntityId entity_with_handle(std::wstring_view handle) {
  AcDbDatabase* const drawing = working_database();
  const bool is_handle =
      !handle.empty() && handle.size() <= 16 &&
      handle.find_first_not_of(L"0123456789abcdefABCDEF") == std::wstring_view::npos;
  if (drawing == nullptr || !is_handle) return {};
  const AcDbObjectId id = id_with_handle(*drawing, std::wstring(handle));
  return open_entity(id, AcDb::kForRead) ? entity_id(id) : EntityId{};
}

std::optional<Extents> extents_of(EntityId entity) {
  const Opened<AcDbEntity> opened = open_entity(object_id(entity), AcDb::kForRead);
  AcDbExtents box;
  if (!opened || opened->getGeomExtents(box) != Acad::eOk) return std::nullopt;
  return Extents{point_of(box.minPoint()), point_of(box.maxPoint())};
}

std::vector<Layer> layers() {
  std::vector<Layer> found;
  AcDbDatabase* const drawing = working_database();
  AcDbLayerTable* table = nullptr;
  if (drawing == nullptr || drawing->getLayerTable(table, AcDb::kForRead) != Acad::eOk)
    return found;
  const Opened<AcDbLayerTable> layers(table);
  AcDbLayerTableIterator* walk = nullptr;
  if (layers->newIterator(walk) != Acad::eOk) return found;
  const std::unique_ptr<AcDbLayerTableIterator> held(walk);
  include_hidden(*walk);
  for (; !walk->done(); walk->step()) {
    AcDbLayerTableRecord* record = nullptr;
    if (walk->getRecord(record, AcDb::kForRead) != Acad::eOk) continue;
    const Opened<AcDbLayerTableRecord> layer(record);
    found.push_back(layer_from(*layer));
  }
  return found;
}

// The host's choice, the current layer, may be locked: there the point could be given no record,
// nor be erased again.
CarrierPoint::CarrierPoint() {
  const std::vector<Layer> all = layers();
  const auto layer = std::ranges::find(all, false, &Layer::locked);
  const Opened<AcDbBlockTableRecord> space = open_model_space(AcDb::kForWrite);
  if (!space || layer == all.end()) return;
  std::unique_ptr<AcDbPoint> point = point_on(object_id(layer->id));
  if (point && append(*space, *point, id_)) const Opened<AcDbEntity> added(point.release());
}

CarrierPoint::~CarrierPoint() {
  if (const Opened<AcDbEntity> point = open_entity(id_, AcDb::kForWrite)) point->erase();
}

}  // namespace korvel::arx
