#include "tests/arx_double/map_classes.h"

#include <algorithm>
#include <stdexcept>

#include "frame/forwarding_host.h"
#include "frame/utf.h"

namespace {

AcMapProject* current_project = nullptr;
AcMapAliases the_aliases;
int undeleted = 0;
std::vector<const AcMapODRecordIterator*> living;

bool another_lives_on(korvel::EntityId entity, const AcMapODRecordIterator* but) {
  return std::ranges::any_of(living, [&](const AcMapODRecordIterator* iterator) {
    return iterator != but && iterator->entity() == entity;
  });
}

korvel::EntityId entity_of(const AcDbObjectId& id) {
  return {static_cast<std::uint64_t>(id.asOldId())};
}

AcMap::EErrCode code_of(bool done) { return done ? AcMap::kOk : AcMap::kErr; }

template <class Change>
AcMap::EErrCode if_writable(Change change) {
  return code_of(korvel::arx_double::is_writable() && change() == korvel::TableChange::Done);
}

korvel::ODRecord copy_of(const AcMapODTableRecord& record) {
  korvel::ODRecord copy{record.table_, {}};
  for (const AcMapValue& value : record.values_)
    copy.values.push_back(value.value());
  return copy;
}

}  // namespace

template <class Value>
AcMapValue& AcMapValue::assign(Value value) {
  // The type stays what the first value made it.
  const korvel::ODValue given(std::move(value));
  if (korvel::type_of(value_) != korvel::ODType::Unknown &&
      korvel::type_of(value_) != korvel::type_of(given)) {
    throw std::logic_error("a value of another type was assigned to a Map value");
  }
  value_ = given;
  return *this;
}

AcMapValue& AcMapValue::operator=(int number) { return assign(std::int32_t{number}); }
AcMapValue& AcMapValue::operator=(double number) { return assign(number); }
AcMapValue& AcMapValue::operator=(const ACHAR* text) { return assign(std::wstring(text)); }
AcMapValue& AcMapValue::operator=(const AcGePoint3d& point) {
  return assign(korvel::Point3{point.x, point.y, point.z});
}

AcMap::EErrCode AcMapODTableDefinition::GetColumn(AcMapODColumnDefinition& column,
                                                  int index) const {
  if (index < 0 || index >= ColumnCnt()) return AcMap::kErr;
  column.column_ = columns_[static_cast<std::size_t>(index)];
  return AcMap::kOk;
}

AcMap::EErrCode AcMapODTableDefinition::AddColumn(const AcMapODColumnDefinition& column,
                                                  int index) {
  if (index < 0 || index > ColumnCnt()) return AcMap::kErr;
  columns_.insert(columns_.begin() + index, column.column_);
  return AcMap::kOk;
}

AcMap::EErrCode AcMapODTableDefinition::RemoveColumn(int index) {
  if (index < 0 || index >= ColumnCnt()) return AcMap::kErr;
  columns_.erase(columns_.begin() + index);
  return AcMap::kOk;
}

AcMap::EErrCode AcMapODTableDefinition::SetColumn(const AcMapODColumnDefinition& column,
                                                  int index) {
  if (index < 0 || index >= ColumnCnt()) return AcMap::kErr;
  columns_[static_cast<std::size_t>(index)] = column.column_;
  return AcMap::kOk;
}

AcMapODRecordIterator::AcMapODRecordIterator(std::unique_ptr<korvel::RecordIterator> records)
    : records_(std::move(records)) {
  ++undeleted;
  living.push_back(this);
}

AcMapODRecordIterator::~AcMapODRecordIterator() {
  --undeleted;
  std::erase(living, this);
}

AcMap::EErrCode AcMapODRecordIterator::Init(const AcDbObjectId& object, AcMap::EOpenMode mode,
                                            bool /*skip_nested*/) {
  const bool writes = mode == AcMap::kOpenForWrite;
  if (writes && !korvel::arx_double::is_writable()) return AcMap::kErr;
  if (!records_->open(entity_of(object), writes ? korvel::OpenMode::Write : korvel::OpenMode::Read))
    return AcMap::kErr;
  entity_ = entity_of(object);
  writes_ = writes;
  return AcMap::kOk;
}

AcMap::EErrCode AcMapODRecordIterator::Next() {
  if (records_->done()) return AcMap::kErr;
  records_->next();
  return AcMap::kOk;
}

AcMap::EErrCode AcMapODRecordIterator::GetRecord(AcMapODTableRecord& record) const {
  if (records_->done()) return AcMap::kErr;
  record.table_ = records_->table_name();
  record.values_.clear();
  for (int i = 0; i < records_->value_count(); ++i)
    record.values_.emplace_back(korvel::copy_of(records_->value(i)));
  return AcMap::kOk;
}

AcMap::EErrCode AcMapODRecordIterator::UpdateRecord(const AcMapODTableRecord& record) {
  return code_of(!records_->done() && records_->update(copy_of(record)));
}

AcMap::EErrCode AcMapODRecordIterator::RemoveRecord() {
  return code_of(!another_lives_on(entity_, this) && records_->remove());
}

AcMapODTable::AcMapODTable(korvel::ODStore& store, korvel::ODTableDef definition)
    : store_(store), name_(std::move(definition.name)) {
  definition_.columns_ = std::move(definition.columns);
  ++undeleted;
}

AcMapODTable::~AcMapODTable() { --undeleted; }

AcMap::EErrCode AcMapODTable::InitRecord(AcMapODTableRecord& record) const {
  record.table_ = name_;
  record.values_.clear();
  for (const korvel::ODColumnDef& column : definition_.columns_)
    record.values_.emplace_back(column.default_value);
  return AcMap::kOk;
}

AcMap::EErrCode AcMapODTable::AddRecord(const AcMapODTableRecord& record,
                                        const AcDbObjectId& object) {
  if (!korvel::arx_double::is_writable()) return AcMap::kErr;
  if (another_lives_on(entity_of(object), nullptr)) return AcMap::kErr;
  // A table of a source drawing becomes one of the drawing with its first record.
  if (!store_.table(name_)) {
    const auto change = store_.define_table({name_, definition_.columns_});
    if (change != korvel::TableChange::Done) return AcMap::kErr;
  }
  return code_of(store_.attach(entity_of(object), copy_of(record)));
}

AcMap::EErrCode AcMapODTable::GetObjectODRecordIterator(AcMapODRecordIterator*& iterator) {
  iterator = new AcMapODRecordIterator(store_.records_of(name_));
  return AcMap::kOk;
}

AcMap::EErrCode AcMapODContainer::GetODTableNames(AcMapStringArray& names) const {
  for (std::wstring& name : store_.table_names())
    names.Append(std::move(name));
  return AcMap::kOk;
}

AcMap::EErrCode AcMapODContainer::GetODTable(AcMapODTable*& table, const ACHAR* name) {
  std::optional<korvel::ODTableDef> definition = store_.table(name);
  if (!definition && source_ != nullptr) definition = source_->table(name);
  if (!definition) return AcMap::kErr;
  table = new AcMapODTable(store_, std::move(*definition));
  return AcMap::kOk;
}

AcMap::EErrCode AcMapODContainer::CreateODTable(const ACHAR* name,
                                                const AcMapODTableDefinition& definition,
                                                const ACHAR* /*description*/, bool /*as_xdata*/) {
  return if_writable([&] { return store_.define_table({name, definition.columns_}); });
}

// Only one column can differ in a call, as the binding changes them one at a time.
AcMap::EErrCode AcMapODContainer::UpdateODTable(const ACHAR* name,
                                                const AcMapODTableDefinition& definition) {
  const std::optional<korvel::ODTableDef> before = store_.table(name);
  if (!before || !korvel::arx_double::is_writable()) return AcMap::kErr;
  const auto& now = definition.columns_;
  const auto& then = before->columns;
  const auto [changed, was] = std::mismatch(now.begin(), now.end(), then.begin(), then.end());
  const auto index = static_cast<int>(changed - now.begin());
  korvel::ColumnChange result = korvel::ColumnChange::Done;
  if (now.size() > then.size()) {
    result = store_.add_column(name, *changed, index);
  } else if (now.size() < then.size()) {
    result = store_.remove_column(name, index);
  } else if (changed != now.end()) {
    result = store_.rename_column(name, was->name, changed->name);
  }
  return code_of(result == korvel::ColumnChange::Done);
}

AcMap::EErrCode AcMapODContainer::RenameODTable(const ACHAR* from, const ACHAR* to) {
  return if_writable([&] { return store_.rename_table(from, to); });
}

AcMap::EErrCode AcMapODContainer::RemoveODTable(const ACHAR* name) {
  if (!living.empty()) return AcMap::kErr;
  return if_writable([&] { return store_.delete_table(name); });
}

AcMap::EErrCode AcMapODContainer::GetObjectODRecordIterator(AcMapODRecordIterator*& iterator) {
  iterator = new AcMapODRecordIterator(store_.records());
  return AcMap::kOk;
}

// The tables of an attached drawing, as those of a store.
class AcMapAttachedDrawing::Source final : public korvel::ForwardingStore {
 public:
  Source(korvel::ODStore& any, const korvel::AttachedDrawing& drawing)
      : ForwardingStore(any), drawing_(drawing) {}
  [[nodiscard]] std::optional<korvel::ODTableDef> table(std::wstring_view name) const override {
    return drawing_.table(name);
  }

 private:
  const korvel::AttachedDrawing& drawing_;
};

AcMapAttachedDrawing::AcMapAttachedDrawing(AcMapODContainer& container,
                                           std::unique_ptr<korvel::AttachedDrawing> drawing)
    : container_(container),
      drawing_(std::move(drawing)),
      source_(std::make_unique<Source>(container.store(), *drawing_)) {}

AcMapAttachedDrawing::~AcMapAttachedDrawing() { container_.show_source(nullptr); }

AcMap::EErrCode AcMapAttachedDrawing::Activate() {
  container_.show_source(source_.get());
  return code_of(drawing_->activate());
}

AcMap::EErrCode AcMapAttachedDrawing::Deactivate() {
  container_.show_source(nullptr);
  drawing_->deactivate();
  return AcMap::kOk;
}

AcMap::EErrCode AcMapAttachedDrawing::GetODTableNames(AcMapStringArray& names) const {
  for (std::wstring& name : drawing_->table_names())
    names.Append(std::move(name));
  return AcMap::kOk;
}

AcMapDriveAlias::AcMapDriveAlias() { ++undeleted; }

AcMapDriveAlias::~AcMapDriveAlias() { --undeleted; }

AcMap::EErrCode AcMapAliases::AddAlias(AcMapDriveAlias*& alias, const ACHAR* name,
                                       const ACHAR* path) {
  if (!paths_.try_emplace(name, path).second) return AcMap::kErr;
  alias = new AcMapDriveAlias;
  return AcMap::kOk;
}

AcMap::EErrCode AcMapAliases::RemoveAlias(const ACHAR* name) {
  return code_of(paths_.erase(name) > 0);
}

std::wstring AcMapAliases::resolved(std::wstring_view path) const {
  const std::size_t colon = path.find(L':');
  const auto alias = paths_.find(path.substr(0, colon));
  if (colon == std::wstring_view::npos || alias == paths_.end()) return std::wstring(path);
  return alias->second + std::wstring(path.substr(colon + 1));
}

AcMap::EErrCode AcMapDrawingSet::AttachDrawing(AcMapAttachedDrawing*& drawing,
                                               const ACHAR* aliased_path) {
  if (attached_.contains(aliased_path)) return AcMap::kErr;
  std::wstring path = the_aliases.resolved(aliased_path);
  std::ranges::replace(path, L'\\', L'/');
  auto source = store_.attach_drawing(korvel::to_utf8(path));
  if (!source) return AcMap::kErr;
  auto& held = attached_[aliased_path];
  held = std::make_unique<AcMapAttachedDrawing>(container_, std::move(source));
  drawing = held.get();
  return AcMap::kOk;
}

AcMap::EErrCode AcMapDrawingSet::DetachDrawing(const ACHAR* aliased_path) {
  return code_of(attached_.erase(aliased_path) > 0);
}

AcMap::EErrCode AcMapProject::GetDrawingSet(AcMapDrawingSet*& set) {
  set = &set_;
  return AcMap::kOk;
}

AcMap::EErrCode AcMapSession::GetAliases(AcMapAliases*& aliases) {
  aliases = &the_aliases;
  return AcMap::kOk;
}

AcMap::EErrCode AcMapProject::GetODContainer(AcMapODContainer*& container) {
  container = &container_;
  return AcMap::kOk;
}

AcMap::EErrCode AcMapSession::GetProject(AcMapProject*& project) {
  project = current_project;
  return code_of(project != nullptr);
}

AcMapClassificationManager::AcMapClassificationManager(AcDbDatabase* drawing) {
  if (drawing == nullptr || current_project == nullptr) {
    throw std::logic_error("classification without a drawing or without Map");
  }
}

AcMap::EErrCode AcMapClassificationManager::GetAllTags(AcMapStringArray& names) const {
  for (std::wstring& name : current_project->store().feature_classes())
    names.Append(std::move(name));
  return AcMap::kOk;
}

AcMap::EErrCode AcMapClassificationManager::Classify(const AcDbObjectId& object,
                                                     const ACHAR* feature_class) {
  return code_of(current_project->store().classify(entity_of(object), feature_class));
}

AcMapSession* AcMapGetSession() {
  static AcMapSession session;
  return current_project == nullptr ? nullptr : &session;
}

namespace korvel::arx_double {

bool records_are_written(EntityId entity) {
  return std::ranges::any_of(living, [entity](const AcMapODRecordIterator* iterator) {
    return iterator->entity() == entity && iterator->writes();
  });
}

MapOverStore::MapOverStore(ODStore& store) : project_(store), former_(current_project) {
  current_project = &project_;
}

MapOverStore::~MapOverStore() { current_project = former_; }

int undeleted_map_objects() { return undeleted; }

}  // namespace korvel::arx_double
