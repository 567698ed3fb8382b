// The records of the host's symbol tables (layers, linetypes, blocks) by their names.
#pragma once

#include <string>

#include "host/arx/sdk.h"

namespace korvel::arx {

// The drawing in work; null only when there is none.
[[nodiscard]] AcDbDatabase* working_database();

// Empty when there is no such record.
[[nodiscard]] std::wstring name_of(const AcDbSymbolTableRecord& record);
[[nodiscard]] std::wstring name_of(AcDbObjectId record);

// Null when the drawing has none of this name, letter case aside.
[[nodiscard]] AcDbObjectId block_named(const std::wstring& name);
[[nodiscard]] AcDbObjectId layer_named(const std::wstring& name);
[[nodiscard]] AcDbObjectId linetype_named(const std::wstring& name);

}  // namespace korvel::arx
