#include "search/table_search.h"

#include <cstddef>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"
#include "search/object_data_list.h"

namespace korvel {
namespace {

std::wstring_view caption(TableCriterion criterion) {
  return text(criterion == TableCriterion::Carries ? Message::WithTablesCaption
                                                   : Message::WithoutTablesCaption);
}

void search(Session& session, TableCriterion criterion) {
  const EntityList selected = pick_first_entities(session.host);
  const std::vector<std::wstring> tables = selected.empty()
                                               ? user_tables(session.store)
                                               : session.store.tables_on(selected, session.host);
  if (!selected.empty() && tables.empty()) return leave_found(session.host, {});

  bool& simultaneous = session.choices.simultaneous;
  ObjectDataList dialog(caption(criterion), tables, simultaneous);
  if (!session.host.show(dialog)) return;
  simultaneous = dialog.simultaneous.on;

  leave_what_finds(session.host, [&] {
    const EntityList gathered = gather(session.host).entities;
    const TableSearch request{criterion, dialog.tables.checked(), simultaneous};
    return find_by_tables(request, session.store, gathered, session.host);
  });
}

}  // namespace

EntityList find_by_tables(const TableSearch& search, ODStore& store, const EntityList& entities,
                          ProgressMeter& meter) {
  const int least = search.simultaneous ? static_cast<int>(search.tables.size()) : 1;
  const std::vector<int> counts = store.count_records(entities, search.tables, meter);
  EntityList found;
  for (std::size_t i = 0; i < entities.size(); ++i) {
    const bool meets = search.criterion == TableCriterion::Carries
                           ? counts[i] > 0 && counts[i] >= least
                           : counts[i] < least;
    if (meets) found.push_back(entities[i]);
  }
  return found;
}

void has_specific_od(Session& session) { search(session, TableCriterion::Carries); }

void has_no_specific_od(Session& session) { search(session, TableCriterion::Lacks); }

}  // namespace korvel
