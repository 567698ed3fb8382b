#include "host/arx/extension_dictionary.h"

#include <utility>

#include "host/arx/guards.h"
#include "host/arx/object_ids.h"

namespace korvel::arx {
namespace {

// A plain clone. What the object owns otherwise than a dictionary does, by references in its data
// or in an extension dictionary of its own, is not copied with it: for that the host would have to
// be told, while it copies, where the copy goes.
struct CopiedObject final : ObjectCopy {
  std::unique_ptr<AcDbObject> object;
};

// A plain clone would lay claim to the original's entries.
struct CopiedDictionary final : ObjectCopy {
  std::vector<ExtensionEntry> entries;
  bool owns_entries_hard = false;
};

// Unconfirmed: the form of the call. Null: the object cannot be copied.
std::unique_ptr<AcDbObject> clone_of(const AcDbObject& object) {
  return std::unique_ptr<AcDbObject>(AcDbObject::cast(object.clone()));
}

// Unconfirmed: the form of the call. Null for anything but a dictionary.
AcDbDictionary* as_dictionary(const AcDbObject& object) { return AcDbDictionary::cast(&object); }

// Unconfirmed: the names of both calls.
bool owns_entries_hard(const AcDbDictionary& dictionary) {
  return dictionary.isTreatElementsAsHard();
}
void own_entries_hard(AcDbDictionary& dictionary, bool hard) {
  dictionary.setTreatElementsAsHard(hard);
}

// Unconfirmed: that an entry of the same key is replaced. Null: the dictionary does not take it.
Opened<AcDbObject> set_at(AcDbDictionary& dictionary, const std::wstring& key,
                          std::unique_ptr<AcDbObject> object) {
  AcDbObjectId id;
  if (dictionary.setAt(key.c_str(), object.get(), id) != Acad::eOk) return {};
  return Opened<AcDbObject>(object.release());  // the drawing owns it from now on
}

// Null when there is none. An erased one that the entity still names does not open, and the host
// makes no other in its place: such an entity has no entries and takes none.
Opened<AcDbDictionary> open_dictionary_of(const AcDbEntity& entity, AcDb::OpenMode mode) {
  const AcDbObjectId id = entity.extensionDictionary();
  AcDbDictionary* dictionary = nullptr;
  const bool opened = !id.isNull() && acdbOpenObject(dictionary, id, mode) == Acad::eOk;
  return Opened<AcDbDictionary>(opened ? dictionary : nullptr);
}

std::shared_ptr<const ObjectCopy> copy_of(const AcDbObject& object);

std::vector<ExtensionEntry> entries_of(const AcDbDictionary& dictionary) {
  std::vector<ExtensionEntry> entries;
  const std::unique_ptr<AcDbDictionaryIterator> walk(dictionary.newIterator());
  if (!walk) return entries;
  for (; !walk->done(); walk->next()) {
    AcDbObject* object = nullptr;
    if (walk->getObject(object, AcDb::kForRead) != Acad::eOk) continue;
    const Opened<AcDbObject> opened(object);
    if (auto copy = copy_of(*opened)) entries.push_back({walk->name(), std::move(copy)});
  }
  return entries;
}

// Null: the object cannot be copied.
std::shared_ptr<const ObjectCopy> copy_of(const AcDbObject& object) {
  if (const AcDbDictionary* const dictionary = as_dictionary(object)) {
    auto copy = std::make_shared<CopiedDictionary>();
    copy->entries = entries_of(*dictionary);
    copy->owns_entries_hard = owns_entries_hard(*dictionary);
    return copy;
  }
  auto copy = std::make_shared<CopiedObject>();
  copy->object = clone_of(object);
  return copy->object ? copy : nullptr;
}

// A dictionary takes entries only when it is in the drawing; those that it refuses are left out.
bool put(AcDbDictionary& dictionary, const ExtensionEntry& entry) {
  if (const auto* nested = dynamic_cast<const CopiedDictionary*>(entry.object.get())) {
    auto made = std::make_unique<AcDbDictionary>();
    AcDbDictionary& fresh = *made;
    own_entries_hard(fresh, nested->owns_entries_hard);
    const Opened<AcDbObject> placed = set_at(dictionary, entry.name, std::move(made));
    if (!placed) return false;
    for (const ExtensionEntry& inner : nested->entries)
      (void)put(fresh, inner);
    return true;
  }
  const auto* const copy = dynamic_cast<const CopiedObject*>(entry.object.get());
  std::unique_ptr<AcDbObject> fresh = copy == nullptr ? nullptr : clone_of(*copy->object);
  return fresh && set_at(dictionary, entry.name, std::move(fresh));
}

}  // namespace

std::vector<ExtensionEntry> extension_entries(EntityId entity) {
  const Opened<AcDbEntity> opened = open_entity(object_id(entity), AcDb::kForRead);
  if (!opened) return {};
  const Opened<AcDbDictionary> dictionary = open_dictionary_of(*opened, AcDb::kForRead);
  return dictionary ? entries_of(*dictionary) : std::vector<ExtensionEntry>();
}

bool store_extension_entry(EntityId entity, const ExtensionEntry& entry) {
  const Opened<AcDbEntity> opened = open_entity(object_id(entity), AcDb::kForWrite);
  if (!opened) return false;
  const bool made = opened->createExtensionDictionary() == Acad::eOk;  // otherwise there is one
  bool stored = false;
  if (const auto dictionary = open_dictionary_of(*opened, AcDb::kForWrite)) {
    stored = put(*dictionary, entry);
  }
  if (made && !stored) opened->releaseExtensionDictionary();
  return stored;
}

}  // namespace korvel::arx
