#include "search/presence_search.h"

#include <algorithm>
#include <string>
#include <vector>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"

namespace korvel {
namespace {

// Names compare exactly.
bool has_duplicate_table(RecordIterator& records, EntityId entity) {
  if (!records.open(entity, OpenMode::Read) || records.count() < 2) return false;
  std::vector<std::wstring> names;
  names.reserve(static_cast<std::size_t>(records.count()));
  for (; !records.done(); records.next())
    names.emplace_back(records.table_name());
  std::ranges::sort(names);
  return std::ranges::adjacent_find(names) != names.end();
}

void search(Session& session, Presence criterion) {
  leave_what_finds(session.host, [&] {
    const EntityList gathered = gather(session.host).entities;
    return find_by_presence(criterion, session.store, gathered, session.host);
  });
}

}  // namespace

bool meets(Presence criterion, RecordIterator& records, EntityId entity) {
  switch (criterion) {
    case Presence::None:
      return !has_user_tables(records, entity, 1);
    case Presence::Any:
      return has_user_tables(records, entity, 1);
    case Presence::Multiple:
      return has_user_tables(records, entity, 2);
    case Presence::Duplicated:
      return has_duplicate_table(records, entity);
  }
  return false;
}

EntityList find_by_presence(Presence criterion, ODStore& store, const EntityList& entities,
                            ProgressMeter& meter) {
  const std::unique_ptr<RecordIterator> records = store.records();
  EntityList found;
  ReadWalk walk(meter, entities.size());
  for (const EntityId entity : entities) {
    walk.step();
    if (meets(criterion, *records, entity)) found.push_back(entity);
  }
  return found;
}

void has_no_od(Session& session) { search(session, Presence::None); }

void has_od(Session& session) { search(session, Presence::Any); }

void has_multiple_od(Session& session) { search(session, Presence::Multiple); }

void has_duplicate_od(Session& session) { search(session, Presence::Duplicated); }

}  // namespace korvel
