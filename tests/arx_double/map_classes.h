// A double of the CAD host's object-data classes, see db_classes.h.
//
// What the real ones are known to do, these do: no record is added to an object, nor removed by
// other means, while an iterator of it lives; deleting a table deletes its records; a name that is
// taken is refused; a value takes its type from what is assigned first; iterators and tables that
// were handed out are the caller's to delete, and what was not deleted is counted. What they are
// not known to allow, these refuse: opening an object on whose records an iterator stands for
// writing.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "frame/od_store.h"
#include "tests/arx_double/db_classes.h"

namespace AcMap {
enum EErrCode { kOk = 0, kErr = 1 };
enum EOpenMode { kOpenForRead = 0, kOpenForWrite = 1 };
enum EDataType { kUnknown = 0, kInteger = 1, kReal = 2, kCharacter = 3, kPoint = 4 };
}  // namespace AcMap

class AcMapStringArray {
 public:
  [[nodiscard]] int Length() const { return static_cast<int>(texts_.size()); }
  [[nodiscard]] const ACHAR* operator[](int index) const {
    return texts_.at(static_cast<std::size_t>(index)).c_str();
  }
  void Append(std::wstring text) { texts_.push_back(std::move(text)); }

 private:
  std::vector<std::wstring> texts_;
};

class AcMapValue {
 public:
  AcMapValue() = default;
  explicit AcMapValue(korvel::ODValue value) : value_(std::move(value)) {}

  [[nodiscard]] int Type() const { return static_cast<int>(korvel::type_of(value_)); }
  explicit operator int() const { return std::get<std::int32_t>(value_); }
  explicit operator double() const { return std::get<double>(value_); }
  explicit operator const ACHAR*() const { return std::get<std::wstring>(value_).c_str(); }
  explicit operator AcGePoint3d() const {
    const auto& [x, y, z] = std::get<korvel::Point3>(value_);
    return {x, y, z};
  }
  AcMapValue& operator=(int number);
  AcMapValue& operator=(double number);
  AcMapValue& operator=(const ACHAR* text);
  AcMapValue& operator=(const AcGePoint3d& point);

  [[nodiscard]] const korvel::ODValue& value() const { return value_; }

 private:
  template <class Value>
  AcMapValue& assign(Value value);

  korvel::ODValue value_;
};

class AcMapODColumnDefinition {
 public:
  void SetName(const ACHAR* name) { column_.name = name; }
  [[nodiscard]] const ACHAR* Name() const { return column_.name.c_str(); }
  void SetType(AcMap::EDataType type) { column_.type = static_cast<korvel::ODType>(type); }
  [[nodiscard]] AcMap::EDataType Type() const {
    return static_cast<AcMap::EDataType>(column_.type);
  }
  void SetDefaultValue(const AcMapValue& value) { column_.default_value = value.value(); }
  [[nodiscard]] AcMapValue DefaultValue() const { return AcMapValue(column_.default_value); }

  korvel::ODColumnDef column_;
};

class AcMapODTableDefinition {
 public:
  [[nodiscard]] int ColumnCnt() const { return static_cast<int>(columns_.size()); }
  AcMap::EErrCode GetColumn(AcMapODColumnDefinition& column, int index) const;
  AcMap::EErrCode AddColumn(const AcMapODColumnDefinition& column, int index);
  AcMap::EErrCode RemoveColumn(int index);
  AcMap::EErrCode SetColumn(const AcMapODColumnDefinition& column, int index);

  std::vector<korvel::ODColumnDef> columns_;
};

class AcMapODTableRecord {
 public:
  [[nodiscard]] const ACHAR* ODTableName() const { return table_.c_str(); }
  [[nodiscard]] int Count() const { return static_cast<int>(values_.size()); }
  [[nodiscard]] AcMapValue& Value(int index) { return values_.at(static_cast<std::size_t>(index)); }
  [[nodiscard]] const AcMapValue& Value(int index) const {
    return values_.at(static_cast<std::size_t>(index));
  }

  std::wstring table_;
  std::vector<AcMapValue> values_;
};

class AcMapODRecordIterator {
 public:
  explicit AcMapODRecordIterator(std::unique_ptr<korvel::RecordIterator> records);
  AcMapODRecordIterator(const AcMapODRecordIterator&) = delete;
  AcMapODRecordIterator& operator=(const AcMapODRecordIterator&) = delete;
  ~AcMapODRecordIterator();

  AcMap::EErrCode Init(const AcDbObjectId& object, AcMap::EOpenMode mode, bool skip_nested);
  [[nodiscard]] bool IsDone() const { return records_->done(); }
  AcMap::EErrCode Next();
  AcMap::EErrCode GetRecord(AcMapODTableRecord& record) const;
  AcMap::EErrCode UpdateRecord(const AcMapODTableRecord& record);
  AcMap::EErrCode RemoveRecord();
  [[nodiscard]] int RecordQuantity() const { return records_->count(); }
  [[nodiscard]] korvel::EntityId entity() const { return entity_; }
  [[nodiscard]] bool writes() const { return writes_ && !records_->done(); }

 private:
  std::unique_ptr<korvel::RecordIterator> records_;
  korvel::EntityId entity_;
  bool writes_ = false;
};

class AcMapODTable {
 public:
  AcMapODTable(korvel::ODStore& store, korvel::ODTableDef definition);
  AcMapODTable(const AcMapODTable&) = delete;
  AcMapODTable& operator=(const AcMapODTable&) = delete;
  ~AcMapODTable();

  [[nodiscard]] const AcMapODTableDefinition& TableDefinition() const { return definition_; }
  AcMap::EErrCode InitRecord(AcMapODTableRecord& record) const;
  AcMap::EErrCode AddRecord(const AcMapODTableRecord& record, const AcDbObjectId& object);
  AcMap::EErrCode GetObjectODRecordIterator(AcMapODRecordIterator*& iterator);

 private:
  korvel::ODStore& store_;
  std::wstring name_;
  AcMapODTableDefinition definition_;
};

class AcMapODContainer {
 public:
  explicit AcMapODContainer(korvel::ODStore& store) : store_(store) {}

  // The tables of an active source drawing are found here too, those of the drawing itself first.
  void show_source(korvel::ODStore* source) { source_ = source; }
  [[nodiscard]] korvel::ODStore& store() { return store_; }

  AcMap::EErrCode GetODTableNames(AcMapStringArray& names) const;
  AcMap::EErrCode GetODTable(AcMapODTable*& table, const ACHAR* name);
  AcMap::EErrCode CreateODTable(const ACHAR* name, const AcMapODTableDefinition& definition,
                                const ACHAR* description, bool as_xdata);
  AcMap::EErrCode UpdateODTable(const ACHAR* name, const AcMapODTableDefinition& definition);
  AcMap::EErrCode RenameODTable(const ACHAR* from, const ACHAR* to);
  AcMap::EErrCode RemoveODTable(const ACHAR* name);
  AcMap::EErrCode GetObjectODRecordIterator(AcMapODRecordIterator*& iterator);

 private:
  korvel::ODStore& store_;
  korvel::ODStore* source_ = nullptr;
};

class AcMapAttachedDrawing {
 public:
  AcMapAttachedDrawing(AcMapODContainer& container,
                       std::unique_ptr<korvel::AttachedDrawing> drawing);
  AcMapAttachedDrawing(const AcMapAttachedDrawing&) = delete;
  AcMapAttachedDrawing& operator=(const AcMapAttachedDrawing&) = delete;
  ~AcMapAttachedDrawing();

  AcMap::EErrCode Activate();
  AcMap::EErrCode Deactivate();
  AcMap::EErrCode GetODTableNames(AcMapStringArray& names) const;

 private:
  class Source;
  AcMapODContainer& container_;
  std::unique_ptr<korvel::AttachedDrawing> drawing_;
  std::unique_ptr<Source> source_;
};

class AcMapDriveAlias {
 public:
  AcMapDriveAlias();
  AcMapDriveAlias(const AcMapDriveAlias&) = delete;
  AcMapDriveAlias& operator=(const AcMapDriveAlias&) = delete;
  ~AcMapDriveAlias();
};

class AcMapAliases {
 public:
  AcMap::EErrCode AddAlias(AcMapDriveAlias*& alias, const ACHAR* name, const ACHAR* path);
  AcMap::EErrCode RemoveAlias(const ACHAR* name);
  // The path that begins with an alias, as a path of the file system.
  [[nodiscard]] std::wstring resolved(std::wstring_view path) const;

 private:
  std::map<std::wstring, std::wstring, std::less<>> paths_;
};

// A drawing can be attached once.
class AcMapDrawingSet {
 public:
  AcMapDrawingSet(korvel::ODStore& store, AcMapODContainer& container)
      : store_(store), container_(container) {}
  AcMap::EErrCode AttachDrawing(AcMapAttachedDrawing*& drawing, const ACHAR* aliased_path);
  AcMap::EErrCode DetachDrawing(const ACHAR* aliased_path);

 private:
  korvel::ODStore& store_;
  AcMapODContainer& container_;
  std::map<std::wstring, std::unique_ptr<AcMapAttachedDrawing>> attached_;
};

class AcMapProject {
 public:
  explicit AcMapProject(korvel::ODStore& store) : container_(store), set_(store, container_) {}
  AcMap::EErrCode GetODContainer(AcMapODContainer*& container);
  AcMap::EErrCode GetDrawingSet(AcMapDrawingSet*& set);
  [[nodiscard]] korvel::ODStore& store() { return container_.store(); }

 private:
  AcMapODContainer container_;
  AcMapDrawingSet set_;
};

class AcMapSession {
 public:
  AcMap::EErrCode GetProject(AcMapProject*& project);
  AcMap::EErrCode GetAliases(AcMapAliases*& aliases);
};

// Of the one drawing there is.
class AcMapClassificationManager {
 public:
  explicit AcMapClassificationManager(AcDbDatabase* drawing);
  AcMap::EErrCode GetAllTags(AcMapStringArray& names) const;
  AcMap::EErrCode Classify(const AcDbObjectId& object, const ACHAR* feature_class);
};

// Null when there is no Map.
AcMapSession* AcMapGetSession();

namespace korvel::arx_double {

// While it lives, the Map session has a project over this store. Without one there is no Map.
class MapOverStore {
 public:
  explicit MapOverStore(ODStore& store);
  ~MapOverStore();
  MapOverStore(const MapOverStore&) = delete;
  MapOverStore& operator=(const MapOverStore&) = delete;

 private:
  AcMapProject project_;
  AcMapProject* former_;
};

// Iterators and tables handed out and not yet deleted.
[[nodiscard]] int undeleted_map_objects();

}  // namespace korvel::arx_double
