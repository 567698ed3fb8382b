#include "tests/arx_double/db_classes.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "tests/arx_double/entity_classes.h"

using namespace korvel::arx_double;

namespace {

korvel::StandaloneHost* working = nullptr;
int open_count = 0;
int free_count = 0;
int kept_texts = 0;
std::vector<std::wstring> names;

constexpr std::uint64_t name_mark = std::uint64_t{1} << 62;
constexpr int part_shift = 32;

}  // namespace

bool AcDbHandle::getIntoAsciiBuffer(ACHAR* buffer, std::size_t length) const {
  if (text_.size() >= length) return false;
  text_.copy(buffer, text_.size());
  buffer[text_.size()] = L'\0';
  return true;
}

AcDbObject::AcDbObject() { ++open_count; }

AcDbObject::~AcDbObject() { --(stands_free_ ? free_count : open_count); }

void AcDbObject::stand_free() {
  stands_free_ = true;
  --open_count;
  ++free_count;
}

void AcDbObject::getAcDbHandle(AcDbHandle& handle) const {
  handle = AcDbHandle(working->handle_of(entity_of(id_)).c_str());
}

Acad::ErrorStatus AcDbObject::erase() {
  if (is_part(id_)) return Acad::eOk;  // the owner has another shape by now
  return working->drawing().erase(entity_of(id_)) ? Acad::eOk : Acad::eError;
}

Acad::ErrorStatus AcDbObject::close() {
  save();
  delete this;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::cancel() {
  delete this;
  return Acad::eOk;
}

AcCmEntityColor::ColorMethod AcCmColor::colorMethod() const {
  if (rgb_) return AcCmEntityColor::kByColor;
  return index_ == 0     ? AcCmEntityColor::kByBlock
         : index_ == 256 ? AcCmEntityColor::kByLayer
                         : AcCmEntityColor::kByACI;
}

Acad::ErrorStatus AcCmColor::setColorIndex(Adesk::UInt16 index) {
  if (index > 256) return Acad::eError;
  set(index, std::nullopt);
  return Acad::eOk;
}

Acad::ErrorStatus AcCmColor::setRGB(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue) {
  constexpr int some_index = 7;
  set(some_index, red << 16 | green << 8 | blue);
  return Acad::eOk;
}

void AcCmColor::set(int index, std::optional<std::int32_t> rgb) {
  index_ = static_cast<Adesk::UInt16>(index);
  rgb_ = rgb;
}

Acad::ErrorStatus AcCmColor::setNames(const ACHAR* color, const ACHAR* book) {
  name_ = color;
  book_ = book != nullptr ? book : L"";
  return Acad::eOk;
}

void AcCmColor::set_book_color(const std::wstring& names) {
  const std::size_t end_of_book = names.find(L'$');
  book_ = names.substr(0, end_of_book == std::wstring::npos ? 0 : end_of_book);
  name_ = names.substr(end_of_book + 1);
}

AcDbObjectId AcDbEntity::layerId() const { return id_of(working->layer_of(entity_of(objectId()))); }

Acad::ErrorStatus AcDbEntity::getGeomExtents(AcDbExtents& extents) const {
  const auto box = working->extents_of(entity_of(objectId()));
  if (!box) return Acad::eError;
  extents.set(host_point(box->min), host_point(box->max));
  return Acad::eOk;
}

const korvel::EntityProperties& AcDbEntity::properties() const {
  if (!properties_) {
    properties_ = objectId().isNull() ? korvel::EntityProperties()
                                      : working->properties_of(entity_of(objectId())).value();
  }
  return *properties_;
}

template <class Value>
Acad::ErrorStatus AcDbEntity::change(Value korvel::EntityProperties::*property, Value value) {
  if (!writes()) return Acad::eNotOpenForWrite;
  (void)properties();
  (*properties_).*property = std::move(value);
  properties_changed_ = true;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::change_shape() {
  if (!writes()) return Acad::eNotOpenForWrite;
  shape_changed_ = true;
  return Acad::eOk;
}

AcCmColor AcDbEntity::color() const {
  AcCmColor color;
  color.set(properties().color, properties().true_color);
  color.set_book_color(properties().book_color);
  return color;
}

AcDbObjectId AcDbEntity::linetypeId() const { return id_of_name(properties().linetype); }

AcDb::LineWeight AcDbEntity::lineWeight() const {
  return static_cast<AcDb::LineWeight>(properties().lineweight);
}

Acad::ErrorStatus AcDbEntity::setColor(const AcCmColor& color) {
  const Acad::ErrorStatus status =
      change(&korvel::EntityProperties::color, int{color.colorIndex()});
  if (status != Acad::eOk) return status;
  (void)change(&korvel::EntityProperties::book_color, color.book_color());
  return change(&korvel::EntityProperties::true_color, color.rgb());
}

Acad::ErrorStatus AcDbEntity::setLayer(AcDbObjectId layer) {
  return change(&korvel::EntityProperties::layer, name_of(layer));
}

Acad::ErrorStatus AcDbEntity::setLinetype(AcDbObjectId linetype) {
  return change(&korvel::EntityProperties::linetype, name_of(linetype));
}

Acad::ErrorStatus AcDbEntity::setLinetypeScale(double scale) {
  return change(&korvel::EntityProperties::linetype_scale, scale);
}

Acad::ErrorStatus AcDbEntity::setLineWeight(AcDb::LineWeight weight) {
  return change(&korvel::EntityProperties::lineweight, int{weight});
}

Acad::ErrorStatus AcDbEntity::setPropertiesFrom(const AcDbEntity* entity) {
  if (!writes()) return Acad::eNotOpenForWrite;
  properties_ = entity->properties();
  properties_changed_ = true;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::handOverTo(AcDbEntity* entity, bool keep_xdata,
                                         bool keep_dictionary) {
  if (!writes()) return Acad::eNotOpenForWrite;
  const bool is_new = !objectId().isNull() && entity->objectId().isNull();
  if (!is_new || !keep_xdata || !keep_dictionary) return Acad::eError;
  (void)entity->properties();
  entity->give_id(objectId());
  entity->shape_changed_ = entity->properties_changed_ = true;
  give_id({});
  return Acad::eOk;
}

void AcDbEntity::save() {
  if (objectId().isNull()) return;
  const korvel::EntityId entity = entity_of(objectId());
  if (const auto shape = geometry(); shape && shape_changed_) working->set_geometry(entity, *shape);
  if (properties_changed_) working->set_properties(entity, *properties_);
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
  const auto shape = entity->geometry();
  if (!shape || !writes()) return Acad::eError;
  const auto added = working->drawing().add_entity(*shape, entity->properties());
  if (!added) return Acad::eError;
  id = id_of(*added);
  entity->give_id(id);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTable::getAt(const ACHAR* name, AcDbBlockTableRecord*& record,
                                        AcDb::OpenMode mode) const {
  if (std::wstring_view(name) != ACDB_MODEL_SPACE) return Acad::eError;
  if (mode == AcDb::kForWrite && !is_writable()) return Acad::eLockViolation;
  record = new AcDbBlockTableRecord(name);
  record->open_for(mode);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableRecord::getName(const ACHAR*& name) const {
  name = name_.c_str();
  return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTable::getAt(const ACHAR* name, AcDbObjectId& id) const {
  id = id_of_name(name);
  return Acad::eOk;
}

AcDbLayerTableRecord::AcDbLayerTableRecord(const korvel::Layer& layer)
    : Described(layer.name), layer_(layer) {}

Acad::ErrorStatus AcDbLayerTable::getAt(const ACHAR* name, AcDbObjectId& id) const {
  const auto layer = working->drawing().layer_named(name);
  if (!layer) return Acad::eError;
  id = id_of(*layer);
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

Acad::ErrorStatus AcDbDatabase::getBlockTable(AcDbBlockTable*& table, AcDb::OpenMode mode) {
  return getSymbolTable(table, mode);
}

Acad::ErrorStatus AcDbDatabase::getLayerTable(AcDbLayerTable*& table, AcDb::OpenMode mode) {
  return getSymbolTable(table, mode);
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

namespace {

// A table record or a part that cannot be opened is null.
std::unique_ptr<AcDbObject> open_layer(AcDbObjectId id) {
  const std::vector<korvel::Layer> layers = working->layers();
  const auto layer = std::ranges::find(layers, entity_of(id), &korvel::Layer::id);
  return layer == layers.end() ? nullptr : std::make_unique<AcDbLayerTableRecord>(*layer);
}

Acad::ErrorStatus why_not_opened(AcDbObjectId id, AcDb::OpenMode mode) {
  if (id.isNull()) return Acad::eNullObjectId;
  const korvel::EntityId entity = entity_of(id);
  if (!working->opens(entity, korvel::OpenMode::Read)) return Acad::eWasErased;
  if (records_are_written(entity)) return Acad::eWasOpenForWrite;
  const bool writes = mode == AcDb::kForWrite;
  if (writes && !working->opens(entity, korvel::OpenMode::Write)) return Acad::eOnLockedLayer;
  return Acad::eOk;
}

}  // namespace

Acad::ErrorStatus acdbOpenObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool /*open_erased*/) {
  if (mode == AcDb::kForWrite && !is_writable()) return Acad::eLockViolation;
  std::unique_ptr<AcDbObject> opened;
  if (is_part(id)) {
    opened = part_over(id, mode);
  } else if (const std::wstring name = name_of(id); !name.empty()) {
    opened = open_layer(id);
    if (!opened) opened = std::make_unique<AcDbBlockTableRecord>(name);
  } else if (const Acad::ErrorStatus status = why_not_opened(id, mode); status != Acad::eOk) {
    return status;
  } else {
    opened = entity_over(id);
  }
  if (!opened) return Acad::eOnLockedLayer;
  opened->give_id(id);
  opened->open_for(mode);
  object = opened.release();
  return Acad::eOk;
}

int acutDelString(ACHAR*& text) {
  delete[] std::exchange(text, nullptr);
  --kept_texts;
  return 5100;
}

namespace korvel::arx_double {

ACHAR* hand_out(const std::wstring& text) {
  ++kept_texts;
  auto* const handed = new ACHAR[text.size() + 1];
  text.copy(handed, text.size());
  handed[text.size()] = L'\0';
  return handed;
}

DatabaseOver::DatabaseOver(StandaloneHost& host) : former_(working) { working = &host; }

DatabaseOver::~DatabaseOver() { working = former_; }

StandaloneHost& working_drawing() { return *working; }

int open_objects() { return open_count; }

int free_objects() { return free_count; }
int texts_kept() { return kept_texts; }

EntityId entity_of(const AcDbObjectId& id) { return {static_cast<std::uint64_t>(id.asOldId())}; }

AcDbObjectId id_of(EntityId entity) {
  AcDbObjectId id;
  id.setFromOldId(static_cast<Adesk::IntDbId>(entity.value));
  return id;
}

AcDbObjectId part_of(const AcDbObjectId& owner, std::size_t index) {
  return id_of({entity_of(owner).value | std::uint64_t{index + 1} << part_shift});
}

bool is_part(const AcDbObjectId& id) {
  const std::uint64_t value = entity_of(id).value;
  return value < name_mark && value >> part_shift != 0;
}

AcDbObjectId owner_of(const AcDbObjectId& part) {
  return id_of({entity_of(part).value & 0xFFFFFFFF});
}

std::size_t index_of(const AcDbObjectId& part) { return (entity_of(part).value >> part_shift) - 1; }

AcDbObjectId id_of_name(const std::wstring& name) {
  auto known = std::ranges::find(names, name);
  if (known == names.end()) known = names.insert(names.end(), name);
  return id_of({name_mark | static_cast<std::uint64_t>(std::distance(names.begin(), known))});
}

std::wstring name_of(const AcDbObjectId& id) {
  const std::uint64_t value = entity_of(id).value;
  if (value < name_mark) return {};
  if ((value & ~name_mark) < names.size()) return names[value & ~name_mark];
  for (const Layer& layer : working->layers()) {
    if (layer.id == entity_of(id)) return layer.name;
  }
  return {};
}

}  // namespace korvel::arx_double
