#include "host/arx/map_calls.h"

namespace korvel::arx::map {
namespace {

bool is_ok(AcMap::EErrCode code) { return code == AcMap::kOk; }

AcMapValue host_value(const ODValue& value) {
  AcMapValue held;
  assign(held, korvel::view_of(value));
  return held;
}

// The host may give none.
std::wstring_view text_of(const ACHAR* text) {
  return text == nullptr ? std::wstring_view() : std::wstring_view(text);
}

ODType type_of(AcMap::EDataType type) {
  const auto known = static_cast<ODType>(type);
  return known >= ODType::Integer && known <= ODType::Point ? known : ODType::Unknown;
}

ODColumnDef column_of(const AcMapODColumnDefinition& column) {
  return {std::wstring(text_of(column.Name())), type_of(column.Type()),
          copy_of(view_of(column.DefaultValue()))};
}

AcMapODColumnDefinition host_column(const ODColumnDef& column) {
  AcMapODColumnDefinition made;
  made.SetName(column.name.c_str());
  made.SetType(static_cast<AcMap::EDataType>(column.type));
  made.SetDefaultValue(host_value(column.default_value));
  return made;
}

}  // namespace

std::vector<std::wstring> texts_of(const AcMapStringArray& array) {
  std::vector<std::wstring> texts;
  texts.reserve(static_cast<std::size_t>(array.Length()));
  for (int i = 0; i < array.Length(); ++i)
    texts.emplace_back(text_of(array[i]));
  return texts;
}

AcMapODContainer* container() {
  AcMapSession* const session = AcMapGetSession();
  AcMapProject* project = nullptr;
  if (session == nullptr || !is_ok(session->GetProject(project)) || project == nullptr) {
    return nullptr;
  }
  AcMapODContainer* container = nullptr;
  return is_ok(project->GetODContainer(container)) ? container : nullptr;
}

std::vector<std::wstring> table_names(const AcMapODContainer& container) {
  AcMapStringArray held;
  return is_ok(container.GetODTableNames(held)) ? texts_of(held) : std::vector<std::wstring>();
}

std::unique_ptr<AcMapODTable> open_table(AcMapODContainer& container, const std::wstring& name) {
  AcMapODTable* table = nullptr;
  if (!is_ok(container.GetODTable(table, name.c_str()))) return nullptr;
  return std::unique_ptr<AcMapODTable>(table);
}

std::unique_ptr<AcMapODRecordIterator> open_records(AcMapODContainer& container) {
  AcMapODRecordIterator* records = nullptr;
  if (!is_ok(container.GetObjectODRecordIterator(records))) return nullptr;
  return std::unique_ptr<AcMapODRecordIterator>(records);
}

std::unique_ptr<AcMapODRecordIterator> open_records(AcMapODTable& table) {
  AcMapODRecordIterator* records = nullptr;
  if (!is_ok(table.GetObjectODRecordIterator(records))) return nullptr;
  return std::unique_ptr<AcMapODRecordIterator>(records);
}

std::optional<ODTableDef> definition_of(const AcMapODTable& table, const std::wstring& name) {
  ODTableDef definition{name, {}};
  const AcMapODTableDefinition& held = table.TableDefinition();
  AcMapODColumnDefinition column;
  for (int i = 0; i < held.ColumnCnt(); ++i) {
    if (!is_ok(held.GetColumn(column, i))) return std::nullopt;
    definition.columns.push_back(column_of(column));
  }
  return definition;
}

AcMapODTableDefinition host_definition(const AcMapODTable& table) {
  return table.TableDefinition();
}

bool rename_column(AcMapODTableDefinition& definition, int index, const std::wstring& to) {
  AcMapODColumnDefinition column;
  if (!is_ok(definition.GetColumn(column, index))) return false;
  column.SetName(to.c_str());
  return is_ok(definition.SetColumn(column, index));
}

bool add_column(AcMapODTableDefinition& definition, const ODColumnDef& column, int index) {
  return is_ok(definition.AddColumn(host_column(column), index));
}

bool remove_column(AcMapODTableDefinition& definition, int index) {
  return is_ok(definition.RemoveColumn(index));
}

bool create_table(AcMapODContainer& container, const ODTableDef& definition) {
  constexpr bool as_extended_data = false;
  AcMapODTableDefinition made;
  for (const ODColumnDef& column : definition.columns) {
    if (!add_column(made, column, made.ColumnCnt())) return false;
  }
  return is_ok(container.CreateODTable(definition.name.c_str(), made, L"", as_extended_data));
}

bool rename_table(AcMapODContainer& container, const std::wstring& from, const std::wstring& to) {
  return is_ok(container.RenameODTable(from.c_str(), to.c_str()));
}

bool remove_table(AcMapODContainer& container, const std::wstring& name) {
  return is_ok(container.RemoveODTable(name.c_str()));
}

bool update_table(AcMapODContainer& container, const std::wstring& name,
                  const AcMapODTableDefinition& definition) {
  return is_ok(container.UpdateODTable(name.c_str(), definition));
}

bool begin_record(const AcMapODTable& table, AcMapODTableRecord& record) {
  return is_ok(table.InitRecord(record));
}

bool add_record(AcMapODTable& table, const AcMapODTableRecord& record, const AcDbObjectId& object) {
  return is_ok(table.AddRecord(record, object));
}

bool start_at(AcMapODRecordIterator& records, const AcDbObjectId& object, AcMap::EOpenMode mode) {
  constexpr bool skip_nested = true;  // records of attributes and vertices are not the object's
  return is_ok(records.Init(object, mode, skip_nested));
}

bool is_done(const AcMapODRecordIterator& records) { return records.IsDone(); }

void step(AcMapODRecordIterator& records) { records.Next(); }

int quantity(const AcMapODRecordIterator& records) { return records.RecordQuantity(); }

bool get_record(const AcMapODRecordIterator& records, AcMapODTableRecord& record) {
  return is_ok(records.GetRecord(record));
}

bool update_record(AcMapODRecordIterator& records, const AcMapODTableRecord& record) {
  return is_ok(records.UpdateRecord(record));
}

bool remove_record(AcMapODRecordIterator& records) { return is_ok(records.RemoveRecord()); }

std::wstring_view table_name(const AcMapODTableRecord& record) {
  return text_of(record.ODTableName());
}

int value_count(const AcMapODTableRecord& record) { return record.Count(); }

const AcMapValue& value(const AcMapODTableRecord& record, int index) { return record.Value(index); }

AcMapValue& value(AcMapODTableRecord& record, int index) { return record.Value(index); }

void clear(AcMapODTableRecord& record) { record = AcMapODTableRecord(); }

ODValueView view_of(const AcMapValue& value) {
  switch (static_cast<ODType>(value.Type())) {
    case ODType::Integer:
      return std::int32_t{static_cast<int>(value)};
    case ODType::Real:
      return static_cast<double>(value);
    case ODType::Character:
      return text_of(static_cast<const ACHAR*>(value));
    case ODType::Point: {
      const auto point = static_cast<AcGePoint3d>(value);
      return Point3{point.x, point.y, point.z};
    }
    default:
      return std::monostate{};
  }
}

void assign(AcMapValue& to, const ODValueView& value) {
  struct Assign {
    AcMapValue& to;
    void operator()(std::monostate) const {}
    void operator()(std::int32_t number) const { to = static_cast<int>(number); }
    void operator()(double number) const { to = number; }
    void operator()(std::wstring_view text) const { to = std::wstring(text).c_str(); }
    void operator()(const Point3& point) const { to = AcGePoint3d(point.x, point.y, point.z); }
  };
  std::visit(Assign{to}, value);
}

std::vector<std::wstring> feature_classes(AcDbDatabase& drawing) {
  AcMapClassificationManager manager(&drawing);
  AcMapStringArray held;
  return is_ok(manager.GetAllTags(held)) ? texts_of(held) : std::vector<std::wstring>();
}

bool classify(AcDbDatabase& drawing, const AcDbObjectId& object,
              const std::wstring& feature_class) {
  AcMapClassificationManager manager(&drawing);
  return is_ok(manager.Classify(object, feature_class.c_str()));
}

}  // namespace korvel::arx::map
