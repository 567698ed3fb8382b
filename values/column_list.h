// Drop-downs from which the column is chosen that a command sets.
#pragma once

#include <string_view>

#include "frame/dialog.h"
#include "frame/od_store.h"

namespace korvel {

// An empty item, which is selected and means that no column is set, and the columns of the table,
// of every type and in their order. A table that is not there has none.
void fill_with_columns(DropDown& list, const ODStore& store, std::wstring_view table);

}  // namespace korvel
