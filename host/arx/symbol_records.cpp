#include "host/arx/symbol_records.h"

#include "host/arx/guards.h"
#include "host/arx/texts.h"

namespace korvel::arx {
namespace {

// Unconfirmed: the form of the call that finds a record.
template <class Table>
AcDbObjectId record_named(const std::wstring& name) {
  AcDbDatabase* const drawing = working_database();
  Table* table = nullptr;
  if (drawing == nullptr || drawing->getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return {};
  const Opened<Table> opened(table);
  AcDbObjectId id;
  return opened->getAt(name.c_str(), id) == Acad::eOk ? id : AcDbObjectId();
}

}  // namespace

AcDbDatabase* working_database() { return acdbHostApplicationServices()->workingDatabase(); }

// Unconfirmed: the form of a record's name.
std::wstring name_of(const AcDbSymbolTableRecord& record) {
  const ACHAR* name = nullptr;
  return record.getName(name) == Acad::eOk ? text_of(name) : std::wstring();
}

std::wstring name_of(AcDbObjectId record) {
  const auto opened = open_as<AcDbSymbolTableRecord>(record, AcDb::kForRead);
  return opened ? name_of(*opened) : std::wstring();
}

AcDbObjectId block_named(const std::wstring& name) { return record_named<AcDbBlockTable>(name); }

AcDbObjectId layer_named(const std::wstring& name) { return record_named<AcDbLayerTable>(name); }

AcDbObjectId linetype_named(const std::wstring& name) {
  return record_named<AcDbLinetypeTable>(name);
}

}  // namespace korvel::arx
