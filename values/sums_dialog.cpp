#include "values/sums_dialog.h"

#include <optional>

namespace korvel {
namespace {

void offer_columns(const ODStore& store, const ListBox& tables, DropDown& columns) {
  const std::wstring kept = columns.text();
  columns.items.clear();
  if (const std::optional<ODTableDef> table = store.table(tables.text())) {
    for (const ODColumnDef& column : table->columns)
      columns.items.push_back(column.name);
  }
  columns.select(kept);
}

}  // namespace

OptionsAddVal::OptionsAddVal(SumScope scope, const ODStore& store,
                             const std::vector<std::wstring>& table_names)
    : Dialog(scope == SumScope::OneTable ? L"Add OD values" : L"Add OD values from table to table"),
      store_(store),
      scope_(scope),
      from_table_(scope == SumScope::OneTable ? L"Table" : L"From table"),
      from_(scope == SumScope::OneTable ? L"From" : L"From column"),
      to_(scope == SumScope::OneTable ? L"To" : L"To column") {
  from_table_.items = to_table_.items = table_names;
  add(&from_table_);
  add(&from_);
  if (scope == SumScope::TwoTables) add(&to_table_);
  add(&to_);
  add(Button{L"OK", ButtonRole::Accept});
  add(Button{L"Cancel", ButtonRole::Cancel});
}

void OptionsAddVal::changed(const Control& control) {
  if (&control == &from_table_) offer_columns(store_, from_table_, from_);
  if (&control == &to_table()) offer_columns(store_, to_table(), to_);
}

const ListBox& OptionsAddVal::to_table() const {
  return scope_ == SumScope::OneTable ? from_table_ : to_table_;
}

SumRequest OptionsAddVal::request() const {
  return {{from_table_.text(), from_.text()}, {to_table().text(), to_.text()}};
}

}  // namespace korvel
