#include "values/identifiers_dialog.h"

#include <algorithm>

#include "frame/command_frame.h"
#include "frame/value_text.h"

namespace korvel {
namespace {

bool has_text(const ODValue& value) {
  const ODType type = type_of(value);
  return type == ODType::Integer || type == ODType::Real || type == ODType::Character;
}

}  // namespace

OptionsWild::OptionsWild(ODStore& store, DrawingHost& host,
                         const std::vector<std::wstring>& table_names, std::int32_t first_number)
    : Dialog(L"Generate IDs"), store_(store), host_(host) {
  tables.items = table_names;
  if (table_names.size() == 1) tables.selected = 0;
  fill_fields();
  first.text = std::to_wstring(std::max(first_number, 0));
  add(&tables);
  add(&field);
  add(&prefix);
  add(&suffix);
  add(&first);
  add({L"OK", ButtonRole::Accept});
  add({L"Cancel", ButtonRole::Cancel});
}

Numbering OptionsWild::numbering() const {
  return {tables.text(), field.text(), prefix.text, suffix.text, typed_first(first.text)};
}

void OptionsWild::changed(const Control& control) {
  if (&control == &tables) fill_fields();
  if (&control != &field || !field.selected) return;
  take_default();
  first.text = std::to_wstring(
      proposed_first(store_, host_.model_space(), tables.text(), field.text(), host_));
}

void OptionsWild::fill_fields() {
  field.items.clear();
  field.selected.reset();
  if (const std::optional<ODTableDef> table = store_.table(tables.text())) {
    for (const ODColumnDef& column : table->columns)
      field.items.push_back(column.name);
  }
}

void OptionsWild::take_default() {
  const std::optional<ODTableDef> table = store_.table(tables.text());
  const auto column = table ? table->column(field.text()) : std::nullopt;
  if (!column || !has_text(table->columns[*column].default_value))
    return report<Message::UnableToRetrieveDefault>(host_, field.text());
  prefix.text = value_text(view_of(table->columns[*column].default_value));
}

}  // namespace korvel
