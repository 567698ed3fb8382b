// Searches by values, tables and presence.
#include "bench/beside_sqlite/cases.h"
#include "search/presence_search.h"
#include "search/table_search.h"
#include "search/value_search.h"

namespace korvel::bench {

void compare_searches(Comparison& run) {
  ODStore& store = run.store();
  const EntityList& all = run.entities();
  const auto values = [&](const wchar_t* table, const wchar_t* field, const wchar_t* pattern,
                          bool extended) {
    return [&, search = ValueSearch{{table}, {{field, pattern}}, extended}] {
      return find_by_values(search, store, all, run.host()).size();
    };
  };
  // An entity has one record of roads at most, so that table needs no DISTINCT.
  run.search("substring, names that repeat", values(L"Roads", L"NAME", L"street 12", false),
             {"SELECT entity FROM roads WHERE name LIKE '%street 12%'",
              "SELECT entity FROM roads WHERE instr(lower(name), 'street 12') > 0"});
  run.search("substring, notes of their own", values(L"Surveys", L"NOTE", L"ER 12", false),
             {"SELECT DISTINCT entity FROM surveys WHERE note LIKE '%er 12%'",
              "SELECT DISTINCT entity FROM surveys WHERE instr(lower(note), 'er 12') > 0",
              "SELECT entity FROM surveys WHERE note LIKE '%er 12%' GROUP BY entity"});
  run.search("number greater", values(L"Roads", L"WIDTH", L">9.5", true),
             {"SELECT entity FROM roads WHERE width > 9.5"});
  run.search("number equal", values(L"Roads", L"LANES", L"3", true),
             {"SELECT entity FROM roads WHERE lanes = 3"});
  run.search("wildcards", values(L"Surveys", L"NOTE", L"*77*5", true),
             {"SELECT DISTINCT entity FROM surveys WHERE note LIKE '%77%5'",
              "SELECT entity FROM surveys WHERE note LIKE '%77%5' GROUP BY entity"});

  run.search("any of two tables",
             [&] {
               return find_by_tables({TableCriterion::Carries, {L"Roads", L"Surveys"}, false},
                                     store, all, run.host())
                   .size();
             },
             {"SELECT entity FROM roads UNION SELECT entity FROM surveys",
              "SELECT entity FROM entities e WHERE EXISTS(SELECT 1 FROM roads r WHERE r.entity = "
              "e.entity) OR EXISTS(SELECT 1 FROM surveys s WHERE s.entity = e.entity)"});
  run.search("without a table",
             [&] {
               return find_by_tables({TableCriterion::Lacks, {L"Surveys"}, false}, store, all,
                                     run.host())
                   .size();
             },
             {"SELECT entity FROM entities EXCEPT SELECT entity FROM surveys",
              "SELECT entity FROM entities WHERE entity NOT IN (SELECT entity FROM surveys)",
              "SELECT entity FROM entities e WHERE NOT EXISTS(SELECT 1 FROM surveys s WHERE "
              "s.entity = e.entity)"});
  run.search("duplicates",
             [&] { return find_by_presence(Presence::Duplicated, store, all, run.host()).size(); },
             {"SELECT entity FROM surveys GROUP BY entity HAVING count(*) > 1 UNION "
              "SELECT entity FROM roads GROUP BY entity HAVING count(*) > 1"});
}

}  // namespace korvel::bench
