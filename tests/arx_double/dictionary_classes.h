// A double of the CAD host's dictionaries, see db_classes.h, over the extension dictionaries of the
// stand-alone drawing.
//
// What the real ones are known to do, these do: a second extension dictionary is refused, also in
// the place of one that was erased and is still named, which does not open; only an empty one is
// released; setAt takes the object and leaves it open; a clone of a dictionary has no entries of
// its own. The object data are in a dictionary within the extension dictionary.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/arx_double/db_classes.h"

// What the stand-alone drawing gives as one copy.
class AcDbXrecord : public AcDbObject {
 public:
  explicit AcDbXrecord(std::shared_ptr<const korvel::ObjectCopy> data) : data_(std::move(data)) {}
  [[nodiscard]] AcDbObject* clone() const override { return free(new AcDbXrecord(data_)); }
  [[nodiscard]] const std::shared_ptr<const korvel::ObjectCopy>& data() const { return data_; }

 private:
  std::shared_ptr<const korvel::ObjectCopy> data_;
};

class AcDbDictionaryIterator {
 public:
  // Entries of an extension dictionary, or (with `key`) of the dictionary that is its entry.
  AcDbDictionaryIterator(korvel::EntityId entity, std::wstring key,
                         std::vector<korvel::ExtensionEntry> entries);
  AcDbDictionaryIterator(const AcDbDictionaryIterator&) = delete;
  AcDbDictionaryIterator& operator=(const AcDbDictionaryIterator&) = delete;
  ~AcDbDictionaryIterator();

  [[nodiscard]] bool done() const { return next_ == entries_.size(); }
  bool next() { return ++next_ < entries_.size(); }
  [[nodiscard]] const ACHAR* name() const { return entries_.at(next_).name.c_str(); }
  Acad::ErrorStatus getObject(AcDbObject*& object, AcDb::OpenMode mode);

 private:
  korvel::EntityId entity_;
  std::wstring key_;
  std::vector<korvel::ExtensionEntry> entries_;
  std::size_t next_ = 0;
};

class AcDbDictionary : public AcDbObject {
 public:
  AcDbDictionary() = default;  // of no drawing
  AcDbDictionary(korvel::EntityId entity, std::wstring key)
      : entity_(entity), key_(std::move(key)) {}

  static AcDbDictionary* cast(const AcDbObject* object);
  [[nodiscard]] AcDbObject* clone() const override { return free(new AcDbDictionary); }
  [[nodiscard]] AcDbDictionaryIterator* newIterator() const;
  Acad::ErrorStatus setAt(const ACHAR* key, AcDbObject* object, AcDbObjectId& id);
  [[nodiscard]] bool isTreatElementsAsHard() const { return hard_; }
  void setTreatElementsAsHard(bool hard) { hard_ = hard; }

 private:
  korvel::EntityId entity_;  // null: of no drawing
  std::wstring key_;         // empty: the extension dictionary itself
  bool hard_ = false;
};

Acad::ErrorStatus acdbOpenObject(AcDbDictionary*& dictionary, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool open_erased = false);

namespace korvel::arx_double {

// While it lives, this entity's extension dictionary is erased, though the entity names it.
class ErasedDictionary {
 public:
  explicit ErasedDictionary(EntityId entity);
  ~ErasedDictionary();
  ErasedDictionary(const ErasedDictionary&) = delete;
  ErasedDictionary& operator=(const ErasedDictionary&) = delete;
};

// Iterators handed out and not yet deleted.
[[nodiscard]] int undeleted_dictionary_iterators();

}  // namespace korvel::arx_double
