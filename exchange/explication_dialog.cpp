#include "exchange/explication_dialog.h"

#include <optional>

namespace korvel {

SelectSharedCol::SelectSharedCol(const ODStore& store, const std::vector<std::wstring>& table_names)
    : Dialog(L"Explication"), store_(store) {
  tables_.fill(table_names);
  type_field_.enabled = false;
  separator_.text = L",";
  add(&tables_);
  add(&by_type_field_);
  add(&type_field_);
  add(&separator_);
  add(Button{L"OK", ButtonRole::Accept});
  add(Button{L"Cancel", ButtonRole::Cancel});
}

void SelectSharedCol::changed(const Control& control) {
  if (&control == &tables_) list_shared_fields();
  if (&control == &by_type_field_) type_field_.enabled = by_type_field_.on;
}

void SelectSharedCol::list_shared_fields() {
  const std::wstring selected = type_field_.text();
  type_field_.items.clear();
  bool is_first = true;
  for (const std::wstring& name : tables_.checked()) {
    const std::optional<ODTableDef> table = store_.table(name);
    if (!table) continue;
    if (is_first) {
      for (const ODColumnDef& column : table->columns)
        type_field_.items.push_back(column.name);
    } else {
      std::erase_if(type_field_.items,
                    [&table](const std::wstring& field) { return !table->column(field); });
    }
    is_first = false;
  }
  type_field_.select(selected);
}

ExplicationRequest SelectSharedCol::request() const {
  ExplicationRequest request{tables_.checked(), std::nullopt, separator_.text};
  if (by_type_field_.on) request.type_field = type_field_.text();
  return request;
}

}  // namespace korvel
