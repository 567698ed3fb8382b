// Attaching, numbering, replacing, translating, removing, and setting coordinates.
#include "attach/attach_data.h"
#include "attach/duplicate_removal.h"
#include "bench/beside_sqlite/cases.h"
#include "bench/measuring.h"
#include "exchange/translation.h"
#include "values/coordinates.h"
#include "values/identifiers.h"
#include "values/replace_values.h"

namespace korvel::bench {
namespace {

void compare_attach(Comparison& run) {
  ODStore& store = run.store();
  const EntityList& all = run.entities();
  run.database().run("CREATE TABLE extra(entity INTEGER, lanes INTEGER, name TEXT)");
  const ODTableDef extra_table{L"Extra",
                               {{L"LANES", ODType::Integer, std::int32_t{2}},
                                {L"NAME", ODType::Character, std::wstring(L"new")}}};
  if (store.define_table(extra_table) != TableChange::Done) fail("no table Extra");
  const ODRecord extra = default_record(extra_table);
  run.change(
      "attach one record to every entity",
      [&] { return static_cast<std::size_t>(attach_records(store, all, extra, run.host())); },
      {"INSERT INTO extra SELECT entity, 2, 'new' FROM entities"});
}

void compare_number(Comparison& run) {
  ODStore& store = run.store();
  const EntityList& all = run.entities();
  // An entity has one record of roads at most, so rows are numbered like records.
  run.change("number records, integers",
             [&] {
               return static_cast<std::size_t>(
                   number_records(store, all, {L"Roads", L"LANES", L"", L"", 1}, run.host()));
             },
             {"UPDATE roads SET lanes = (SELECT max(rowid) FROM roads) + 1 - rowid"});
  run.change("number records, texts",
             [&] {
               return static_cast<std::size_t>(
                   number_records(store, all, {L"Roads", L"NAME", L"R-", L"", 1}, run.host()));
             },
             {"UPDATE roads SET name = 'R-' || ((SELECT max(rowid) FROM roads) + 1 - rowid)"});
}

void compare_replace(Comparison& run) {
  ODStore& store = run.store();
  const EntityList& all = run.entities();
  run.change(
      "replace a piece of text",
      [&] {
        return replace_in_records({{L"Roads"}, {L"NAME"}, L"reet 1", L"r. 1"}, store, all,
                                  run.host());
      },
      {"UPDATE roads SET name = replace(name, 'reet 1', 'r. 1') WHERE name LIKE '%reet 1%'",
       "UPDATE roads SET name = replace(name, 'reet 1', 'r. 1') WHERE instr(name, 'reet 1')"});
  run.change(
      "replace numbers below 3",
      [&] {
        return replace_in_records({{L"Roads"}, {L"LANES"}, L">3", L"9"}, store, all, run.host());
      },
      {"UPDATE roads SET lanes = 9 WHERE lanes < 3"});
}

void compare_translate(Comparison& run) {
  ODStore& store = run.store();
  const EntityList& all = run.entities();
  AliasMaps aliases;
  run.database().run("CREATE TABLE names(value TEXT PRIMARY KEY, alias TEXT) WITHOUT ROWID");
  run.database().run("CREATE TABLE numbers(value INTEGER PRIMARY KEY, alias INTEGER)");
  for (int street = 0; street < 5000; ++street) {
    const std::string number = std::to_string(street);
    aliases.table_field_values[L"Roads"][L"NAME"].emplace(L"Street " + std::to_wstring(street),
                                                          L"Road " + std::to_wstring(street));
    run.database().run("INSERT INTO names VALUES('Street " + number + "', 'Road " + number + "')");
  }
  for (int lanes = 1; lanes <= 6; ++lanes) {
    aliases.table_field_values[L"Roads"][L"LANES"].emplace(std::to_wstring(lanes),
                                                           std::to_wstring(lanes + 10));
    run.database().run("INSERT INTO numbers VALUES(" + std::to_string(lanes) + ", " +
                       std::to_string(lanes + 10) + ")");
  }
  run.change("translate two columns",
             [&] { return translate_values(store, run.host(), all, aliases); },
             {"UPDATE roads SET name = n.alias, lanes = l.alias FROM names n, numbers l WHERE "
              "n.value = roads.name AND l.value = roads.lanes",
              "UPDATE roads SET name = (SELECT alias FROM names WHERE value = name), lanes = "
              "(SELECT alias FROM numbers WHERE value = lanes)"});
}

void compare_remove(Comparison& run) {
  ODStore& store = run.store();
  const EntityList& all = run.entities();
  run.change("remove all duplicates",
             [&] {
               const std::size_t before = run.records();
               (void)remove_duplicates(store, all, DuplicateMode::Last, run.host());
               return before - run.records();
             },
             {"DELETE FROM surveys WHERE rowid NOT IN (SELECT min(rowid) FROM surveys GROUP BY "
              "entity)"});
}

void compare_coordinates(Comparison& run) {
  ODStore& store = run.store();
  const EntityList& all = run.entities();
  run.beside_shapes("set two coordinates", [&] {
    const CoordinateRequest request{L"Roads", {L"WIDTH", L"NAME", L""}, {}, 4, 4};
    return set_coordinates(run.host(), store, all, request).completed;
  });
}

}  // namespace

void compare_changes(Comparison& run) {
  compare_attach(run);
  compare_number(run);
  compare_replace(run);
  compare_translate(run);
  compare_remove(run);
  compare_coordinates(run);
}

}  // namespace korvel::bench
