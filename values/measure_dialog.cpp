// The dialog in which the columns for length, area and volume are chosen.
#include "values/measure_dialog.h"

#include <algorithm>
#include <utility>

#include "frame/value_text.h"
#include "values/column_list.h"

namespace korvel {
namespace {

bool any_twice(const MeasureColumns& columns) {
  const auto same = [](const std::wstring& a, const std::wstring& b) {
    return !a.empty() && a == b;
  };
  return same(columns.length, columns.area) || same(columns.length, columns.volume) ||
         same(columns.area, columns.volume);
}

}  // namespace

ODSelectProp::ODSelectProp(const ODStore& store, std::vector<std::wstring> table_names,
                           std::wstring_view last_table, int decimals)
    : Dialog(L"Set OD from object properties"), store_(store) {
  tables_.items = std::move(table_names);
  tables_.select(last_table);
  precision_.text = std::to_wstring(decimals);
  fill_columns();
  add(&tables_);
  add(&length_);
  add(&area_);
  add(&volume_);
  add(&precision_);
  add(Button{L"OK", ButtonRole::Accept});
  add(Button{L"Cancel", ButtonRole::Cancel});
}

void ODSelectProp::changed(const Control& control) {
  if (&control == &tables_) fill_columns();
}

void ODSelectProp::fill_columns() {
  for (DropDown* const list : {&length_, &area_, &volume_})
    fill_with_columns(*list, store_, tables_.text());
}

std::optional<MeasureColumns> ODSelectProp::columns() const {
  const MeasureColumns chosen{tables_.text(), length_.text(), area_.text(), volume_.text(),
                              std::max(read_integer(precision_.text), 0)};
  const bool nothing = chosen.length.empty() && chosen.area.empty() && chosen.volume.empty();
  if (chosen.table.empty() || nothing || any_twice(chosen)) return std::nullopt;
  return chosen;
}

}  // namespace korvel
