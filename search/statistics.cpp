#include "search/statistics.h"

#include <algorithm>
#include <functional>
#include <map>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"

namespace korvel {
namespace {

struct Tally {
  std::size_t records = 0;
  std::size_t last_object = 0;  // that had a record of the table, counted from 1
};

// By table name, topology tables included.
using Tallies = std::map<std::wstring, Tally, std::less<>>;

Tally& tally_of(Tallies& tallies, std::wstring_view table) {
  const auto known = tallies.find(table);
  return known != tallies.end() ? known->second : tallies[std::wstring(table)];
}

std::wstring table_block(const Statistics& statistics) {
  if (statistics.with_data == 0) return {};
  std::wstring block(text(Message::StatTablesHeading));
  for (const auto& [name, records] : statistics.tables) {
    if (records > 0) block += format_text(L"\t%s: %lu\n", name, records);
  }
  return block;
}

constexpr int window_width = 350;
constexpr int window_height = 400;

}  // namespace

std::size_t Statistics::unused_tables() const {
  return static_cast<std::size_t>(std::ranges::count(tables, std::size_t{0}, &Table::records));
}

Statistics count_object_data(ODStore& store, const EntityList& entities, ProgressMeter& meter) {
  Statistics statistics;
  Tallies tallies;
  const std::unique_ptr<RecordIterator> records = store.records();
  ReadWalk walk(meter, entities.size());
  for (const EntityId entity : entities) {
    walk.step();
    ++statistics.objects;
    if (!records->open(entity, OpenMode::Read) || records->done()) continue;
    std::size_t count = 0;
    bool duplicated = false;
    for (; !records->done(); records->next()) {
      Tally& tally = tally_of(tallies, records->table_name());
      duplicated = duplicated || tally.last_object == statistics.objects;
      tally.last_object = statistics.objects;
      ++tally.records;
      ++count;
    }
    ++statistics.with_data;
    if (duplicated) ++statistics.with_duplicates;
    if (count >= 2) ++statistics.with_multiple;
  }
  for (std::wstring& name : user_tables(store)) {
    const std::size_t count = tally_of(tallies, name).records;
    statistics.tables.push_back({std::move(name), count});
  }
  return statistics;
}

std::wstring statistics_text(const Statistics& statistics) {
  return format<Message::StatObjects>(statistics.objects) +
         format<Message::StatObjectsWithoutData>(statistics.without_data()) +
         table_block(statistics) + format<Message::StatObjectsWithData>(statistics.with_data) +
         format<Message::StatObjectsWithDuplicates>(statistics.with_duplicates) +
         format<Message::StatObjectsWithMultiple>(statistics.with_multiple) +
         format<Message::StatDefinitions>(statistics.tables.size()) +
         format<Message::StatUnusedDefinitions>(statistics.unused_tables());
}

void stat(Session& session) {
  const Statistics statistics =
      count_object_data(session.store, session.host.model_space(), session.host);
  session.host.show_text(text(Message::StatisticsCaption), statistics_text(statistics),
                         window_width, window_height);
}

}  // namespace korvel
