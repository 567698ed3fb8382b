// Drop-downs from which the column is chosen that a command sets.
#include "values/column_list.h"

namespace korvel {

void fill_with_columns(DropDown& list, const ODStore& store, std::wstring_view table) {
  list.items.assign(1, L"");
  list.selected = 0;
  const std::optional<ODTableDef> definition = store.table(table);
  if (!definition) return;
  for (const ODColumnDef& column : definition->columns)
    list.items.push_back(column.name);
}

}  // namespace korvel
