#include "values/xyz_dialog.h"

#include <algorithm>

#include "frame/value_text.h"
#include "values/column_list.h"

namespace korvel {
namespace {

// The lists show the rules in the order of their enumerations.
constexpr std::array plan_rules = {Message::OptionFirst, Message::OptionLast,
                                   Message::OptionCenter};
constexpr std::array elevation_rules = {Message::OptionMin, Message::OptionMax,
                                        Message::OptionAverage};

void fill(DropDown& list, const std::array<Message, 3>& rules, std::size_t selected) {
  for (const Message rule : rules)
    list.items.emplace_back(text(rule));
  list.selected = selected;
}

int decimals_of(const Spin& spin) { return std::max(read_integer(spin.text), 0); }

}  // namespace

ODSelectXYZ::ODSelectXYZ(const ODStore& store, const std::vector<std::wstring>& table_names,
                         const CoordinateChoices& last, int decimals)
    : Dialog(L"Set OD from object coordinates"), store_(store) {
  tables.items = table_names;
  tables.select(last.table);
  fill_columns();
  fill(planimetric, plan_rules, last.plan_rule);
  fill(elevation, elevation_rules, last.elevation_rule);
  plan_decimals.text = elevation_decimals.text = std::to_wstring(decimals);
  add(&tables);
  add(&x);
  add(&y);
  add(&z);
  add(&planimetric);
  add(&elevation);
  add(&plan_decimals);
  add(&elevation_decimals);
  add({L"OK", ButtonRole::Accept});
  add({L"Cancel", ButtonRole::Cancel});
}

void ODSelectXYZ::changed(const Control& control) {
  if (&control == &tables) fill_columns();
}

void ODSelectXYZ::fill_columns() {
  for (DropDown* list : {&x, &y, &z})
    fill_with_columns(*list, store_, tables.text());
}

bool ODSelectXYZ::has_column_twice() const {
  const auto same = [](const DropDown& a, const DropDown& b) {
    return !a.text().empty() && a.text() == b.text();
  };
  return same(x, y) || same(x, z) || same(y, z);
}

bool ODSelectXYZ::is_complete() const {
  const bool any_column = !x.text().empty() || !y.text().empty() || !z.text().empty();
  return !tables.text().empty() && any_column && !has_column_twice();
}

CoordinateRequest ODSelectXYZ::request() const {
  return {
      tables.text(),
      {x.text(), y.text(), z.text()},
      {static_cast<PlanRule>(planimetric.selected.value_or(CoordinateChoices{}.plan_rule)),
       static_cast<ElevationRule>(elevation.selected.value_or(CoordinateChoices{}.elevation_rule))},
      decimals_of(plan_decimals),
      decimals_of(elevation_decimals)};
}

void ODSelectXYZ::remember(CoordinateChoices& choices, bool accepted) const {
  if (tables.selected) choices.table = tables.text();
  if (!accepted || has_column_twice()) return;
  const CoordinateRequest asked = request();
  choices.plan_rule = static_cast<std::size_t>(asked.rules.plan);
  choices.elevation_rule = static_cast<std::size_t>(asked.rules.elevation);
}

}  // namespace korvel
