// The calls of the Map interface that the binding makes, each in a function of its own: where the
// real interface differs from what is known of it, one of these is to be changed and nothing else.
//
// Confirmed are the session (null without Map), its project, the project's container, the classes
// and what they are for; the names and forms of most members are not.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "frame/od_table.h"
#include "host/arx/sdk.h"

namespace korvel::arx::map {

// The object data of the current drawing; the host's own. Null without Map or without a project.
[[nodiscard]] AcMapODContainer* container();

// The host's own arrays of texts are used in no other way.
[[nodiscard]] std::vector<std::wstring> texts_of(const AcMapStringArray& array);

// In the host's order.
[[nodiscard]] std::vector<std::wstring> table_names(const AcMapODContainer& container);

// The caller deletes what is handed out; null when there is no such table, or no iterator.
[[nodiscard]] std::unique_ptr<AcMapODTable> open_table(AcMapODContainer& container,
                                                       const std::wstring& name);
[[nodiscard]] std::unique_ptr<AcMapODRecordIterator> open_records(AcMapODContainer& container);
[[nodiscard]] std::unique_ptr<AcMapODRecordIterator> open_records(AcMapODTable& table);

// None when a column cannot be read.
[[nodiscard]] std::optional<ODTableDef> definition_of(const AcMapODTable& table,
                                                      const std::wstring& name);
// A copy; what is changed in it has effect by update_table.
[[nodiscard]] AcMapODTableDefinition host_definition(const AcMapODTable& table);
bool rename_column(AcMapODTableDefinition& definition, int index, const std::wstring& to);
bool add_column(AcMapODTableDefinition& definition, const ODColumnDef& column, int index);
bool remove_column(AcMapODTableDefinition& definition, int index);

// Records as extension-dictionary entries, so that BREAK and copies of the dictionary carry them.
bool create_table(AcMapODContainer& container, const ODTableDef& definition);
bool rename_table(AcMapODContainer& container, const std::wstring& from, const std::wstring& to);
bool remove_table(AcMapODContainer& container, const std::wstring& name);
// Has effect on the records that there are.
bool update_table(AcMapODContainer& container, const std::wstring& name,
                  const AcMapODTableDefinition& definition);

// A record with a value for every column, of the right type, which is the column's default.
bool begin_record(const AcMapODTable& table, AcMapODTableRecord& record);
bool add_record(AcMapODTable& table, const AcMapODTableRecord& record, const AcDbObjectId& object);

bool start_at(AcMapODRecordIterator& records, const AcDbObjectId& object, AcMap::EOpenMode mode);
[[nodiscard]] bool is_done(const AcMapODRecordIterator& records);
void step(AcMapODRecordIterator& records);
[[nodiscard]] int quantity(const AcMapODRecordIterator& records);
bool get_record(const AcMapODRecordIterator& records, AcMapODTableRecord& record);
bool update_record(AcMapODRecordIterator& records, const AcMapODTableRecord& record);
bool remove_record(AcMapODRecordIterator& records);

// Empty of a record that was not read. A view into the record.
[[nodiscard]] std::wstring_view table_name(const AcMapODTableRecord& record);
[[nodiscard]] int value_count(const AcMapODTableRecord& record);
[[nodiscard]] const AcMapValue& value(const AcMapODTableRecord& record, int index);
[[nodiscard]] AcMapValue& value(AcMapODTableRecord& record, int index);
void clear(AcMapODTableRecord& record);
// Text is a view into the host's value and dies with it.
[[nodiscard]] ODValueView view_of(const AcMapValue& value);
// The value must be of the type of what it holds: the host's values never change their type.
void assign(AcMapValue& to, const ODValueView& value);

// The feature classes of a drawing, and giving an entity one of them.
[[nodiscard]] std::vector<std::wstring> feature_classes(AcDbDatabase& drawing);
bool classify(AcDbDatabase& drawing, const AcDbObjectId& object, const std::wstring& feature_class);

}  // namespace korvel::arx::map
