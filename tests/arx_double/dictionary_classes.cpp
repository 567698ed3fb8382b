#include "tests/arx_double/dictionary_classes.h"

#include "frame/case_mapping.h"
#include "frame/utf.h"
#include "host/standalone/od_format.h"

namespace {

korvel::EntityId erased_of;  // whose dictionary is erased
int iterators = 0;

korvel::StandaloneHost& host() { return korvel::arx_double::working_drawing(); }

korvel::EntityId entity_of(const AcDbObjectId& id) {
  return {static_cast<std::uint64_t>(id.asOldId())};
}

// The identifier of an extension dictionary is the negative of its entity's.
AcDbObjectId opposite(const AcDbObjectId& id) {
  AcDbObjectId other;
  other.setFromOldId(-id.asOldId());
  return other;
}

bool holds_object_data(std::wstring_view key) {
  return korvel::equal_ignoring_case(key, korvel::from_utf8(korvel::od_format::records_key));
}

}  // namespace

AcDbObjectId AcDbObject::extensionDictionary() const {
  const korvel::EntityId entity = entity_of(id_);
  const bool exists =
      has_new_dictionary_ || erased_of == entity || !host().extension_entries(entity).empty();
  return exists ? opposite(id_) : AcDbObjectId();
}

Acad::ErrorStatus AcDbObject::createExtensionDictionary() {
  if (!extensionDictionary().isNull()) return Acad::eAlreadyInDb;
  has_new_dictionary_ = true;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::releaseExtensionDictionary() {
  if (!host().extension_entries(entity_of(id_)).empty()) return Acad::eContainerNotEmpty;
  has_new_dictionary_ = false;
  return Acad::eOk;
}

AcDbDictionaryIterator::AcDbDictionaryIterator(korvel::EntityId entity, std::wstring key,
                                               std::vector<korvel::ExtensionEntry> entries)
    : entity_(entity), key_(std::move(key)), entries_(std::move(entries)) {
  ++iterators;
}

AcDbDictionaryIterator::~AcDbDictionaryIterator() { --iterators; }

Acad::ErrorStatus AcDbDictionaryIterator::getObject(AcDbObject*& object, AcDb::OpenMode /*mode*/) {
  const korvel::ExtensionEntry& entry = entries_.at(next_);
  if (key_.empty() && holds_object_data(entry.name)) {
    object = new AcDbDictionary(entity_, entry.name);
  } else {
    object = new AcDbXrecord(entry.object);
  }
  return Acad::eOk;
}

AcDbDictionary* AcDbDictionary::cast(const AcDbObject* object) {
  return const_cast<AcDbDictionary*>(dynamic_cast<const AcDbDictionary*>(object));
}

AcDbDictionaryIterator* AcDbDictionary::newIterator() const {
  std::vector<korvel::ExtensionEntry> entries;
  for (korvel::ExtensionEntry& entry : host().extension_entries(entity_)) {
    if (key_.empty()) {
      entries.push_back(std::move(entry));
    } else if (entry.name == key_) {
      entries.push_back({L"RECORDS", std::move(entry.object)});
    }
  }
  return new AcDbDictionaryIterator(entity_, key_, std::move(entries));
}

Acad::ErrorStatus AcDbDictionary::setAt(const ACHAR* key, AcDbObject* object,
                                        AcDbObjectId& /*id*/) {
  if (entity_.is_null()) return Acad::eError;
  if (auto* const nested = dynamic_cast<AcDbDictionary*>(object)) {
    if (!key_.empty() || !holds_object_data(key)) return Acad::eError;
    nested->entity_ = entity_;
    nested->key_ = key;
    return Acad::eOk;
  }
  const auto* const record = dynamic_cast<const AcDbXrecord*>(object);
  if (record == nullptr || (key_.empty() && holds_object_data(key))) return Acad::eError;
  const std::wstring name = key_.empty() ? key : key_;
  return host().store_extension_entry(entity_, {name, record->data()}) ? Acad::eOk : Acad::eError;
}

Acad::ErrorStatus acdbOpenObject(AcDbDictionary*& dictionary, AcDbObjectId id,
                                 AcDb::OpenMode /*mode*/, bool open_erased) {
  const korvel::EntityId entity = entity_of(opposite(id));
  if (id.isNull() || !host().opens(entity, korvel::OpenMode::Read)) return Acad::eNullObjectId;
  if (entity == erased_of && !open_erased) return Acad::eWasErased;
  dictionary = new AcDbDictionary(entity, {});
  return Acad::eOk;
}

namespace korvel::arx_double {

ErasedDictionary::ErasedDictionary(EntityId entity) { erased_of = entity; }

ErasedDictionary::~ErasedDictionary() { erased_of = {}; }

int undeleted_dictionary_iterators() { return iterators; }

}  // namespace korvel::arx_double
