// The dialog in which is chosen where the texts found in entities go.
#include "values/text_dialog.h"

#include <utility>

#include "frame/value_text.h"
#include "values/column_list.h"

namespace korvel {

ODSelectText::ODSelectText(const ODStore& store, std::vector<std::wstring> table_names,
                           std::wstring_view last_table, std::wstring_view last_tolerance)
    : Dialog(L"Set OD from text"), store_(store) {
  tables_.items = std::move(table_names);
  tables_.select(last_table);
  fill_with_columns(field_, store_, tables_.text());
  tolerance_.text = last_tolerance;
  add(&tables_);
  add(&field_);
  add(&tolerance_);
  add(Button{L"OK", ButtonRole::Accept});
  add(Button{L"Cancel", ButtonRole::Cancel});
}

void ODSelectText::changed(const Control& control) {
  if (&control == &tables_) fill_with_columns(field_, store_, tables_.text());
}

std::optional<TextColumn> ODSelectText::column() const {
  const std::optional<double> tolerance = whole_real(tolerance_.text);
  TextColumn chosen{tables_.text(), field_.text(), tolerance.value_or(-1)};
  if (chosen.table.empty() || chosen.column.empty() || chosen.tolerance < 0) return std::nullopt;
  return chosen;
}

}  // namespace korvel
