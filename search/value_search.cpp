#include "search/value_search.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/format.h"
#include "frame/session.h"
#include "search/find_values_dialog.h"
#include "search/value_pattern.h"

namespace korvel {
namespace {

std::vector<ODTableDef> definitions(const ODStore& store, const std::vector<std::wstring>& names) {
  std::vector<ODTableDef> tables;
  for (const std::wstring& name : names) {
    if (std::optional<ODTableDef> table = store.table(name)) tables.push_back(std::move(*table));
  }
  return tables;
}

// Marks the entities with a record in which the field's value passes.
std::vector<char> marks_of(const ValueCriterion& criterion, ValuePattern& pattern,
                           const std::vector<ODTableDef>& tables, ODStore& store,
                           const EntityList& entities, ProgressMeter& meter) {
  std::vector<char> marks(entities.size(), 0);
  for (const ODTableDef& table : tables) {
    if (const std::optional<std::size_t> column = table.column(criterion.field)) {
      store.mark_passing(entities, table.name, static_cast<int>(*column), pattern, marks, meter);
    }
  }
  return marks;
}

// Written without a branch on what nobody can guess; hence the one place too many.
EntityList marked(const EntityList& entities, const std::vector<char>& marks) {
  EntityList kept(static_cast<std::size_t>(std::ranges::count(marks, 1)) + 1);
  std::size_t count = 0;
  for (std::size_t i = 0; i < entities.size(); ++i) {
    kept[count] = entities[i];
    count += marks[i] != 0 ? 1 : 0;
  }
  kept.pop_back();
  return kept;
}

// Nothing can be found by a field that no table has, and the count alone does not show why. Any
// value will do without the field.
void note_unknown_fields(const ValueSearch& search, const ODStore& store, DrawingHost& host) {
  const std::vector<ODTableDef> tables = definitions(store, search.tables);
  for (const ValueCriterion& criterion : search.criteria) {
    const bool known = std::ranges::any_of(tables, [&criterion](const ODTableDef& table) {
      return table.column(criterion.field).has_value();
    });
    if (known || ValuePattern(criterion.pattern, search.extended).needs_no_value()) continue;
    host.note_refused_input(format_text(L"no chosen table has the field '%s'", criterion.field));
  }
}

}  // namespace

EntityList find_by_values(const ValueSearch& search, ODStore& store, const EntityList& entities,
                          ProgressMeter& meter) {
  const std::vector<ODTableDef> tables = definitions(store, search.tables);
  EntityList found;
  const EntityList* left = &entities;
  for (const ValueCriterion& criterion : search.criteria) {
    ValuePattern pattern(criterion.pattern, search.extended);
    const bool met_at_once = pattern.needs_no_value() && !search.tables.empty();
    if (met_at_once) continue;
    found = marked(*left, marks_of(criterion, pattern, tables, store, *left, meter));
    left = &found;
  }
  return left == &found ? found : entities;
}

void has_specific_values(Session& session) {
  FindValues dialog(user_tables(session.store), session.choices.extended);
  if (!session.host.show(dialog)) return;
  session.choices.extended = dialog.extended.on;
  const ValueSearch search = dialog.search();
  if (search.criteria.empty()) return session.host.note_refused_input(L"there is no criterion");
  note_unknown_fields(search, session.store, session.host);

  const EntityList gathered = gather(session.host).entities;
  if (gathered.empty()) return;
  leave_found(session.host, find_by_values(search, session.store, gathered, session.host));
}

}  // namespace korvel
