#include "values/replace_dialog.h"

#include <algorithm>
#include <optional>

namespace korvel {
namespace {

// In the order of tables and columns.
std::vector<std::wstring> distinct_fields(const ODStore& store,
                                          const std::vector<std::wstring>& tables) {
  std::vector<std::wstring> names;
  for (const std::wstring& name : tables) {
    const std::optional<ODTableDef> table = store.table(name);
    if (!table) continue;
    for (const ODColumnDef& column : table->columns) {
      if (std::ranges::find(names, column.name) == names.end()) names.push_back(column.name);
    }
  }
  return names;
}

}  // namespace

OptionsReplace::OptionsReplace(const ODStore& store, const std::vector<std::wstring>& table_names)
    : Dialog(L"Replace OD values"), store_(store) {
  tables_.fill(table_names);
  add(&search_);
  add(&replacement_);
  add(&tables_);
  add(&fields_);
  add(Button{L"OK", ButtonRole::Accept});
  add(Button{L"Cancel", ButtonRole::Cancel});
}

void OptionsReplace::changed(const Control& control) {
  if (&control != &tables_) return;
  const std::vector<std::wstring> kept = fields_.checked();
  fields_.fill(distinct_fields(store_, tables_.checked()));
  for (CheckList::Item& item : fields_.items)
    item.checked = std::ranges::find(kept, item.text) != kept.end();
}

ReplaceRequest OptionsReplace::request() const {
  return {tables_.checked(), fields_.checked(), search_.text, replacement_.text};
}

}  // namespace korvel
