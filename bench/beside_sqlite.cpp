// The commands' work on a large drawing beside SQLite's on the same data in memory, in one run.
//
// Every case is answered by both sides by turns, five times; the best time of each counts, and for
// SQLite the best of several statements. Both must give the same number, or the program fails.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <limits>
#include <sqlite3.h>
#include <string>
#include <string_view>
#include <vector>

#include "attach/attach_data.h"
#include "attach/duplicate_removal.h"
#include "bench/csv_beside_sqlite.h"
#include "bench/drawing_maker.h"
#include "bench/silent_host.h"
#include "exchange/explication.h"
#include "exchange/translation.h"
#include "frame/file_bytes.h"
#include "frame/utf.h"
#include "host/standalone/drawing.h"
#include "host/standalone/standalone_store.h"
#include "search/presence_search.h"
#include "search/table_search.h"
#include "search/value_search.h"
#include "values/coordinates.h"
#include "values/identifiers.h"
#include "values/replace_values.h"

namespace korvel::bench {
namespace {

constexpr int rounds = 5;

[[noreturn]] void fail(const std::string& why) {
  (void)std::fprintf(stderr, "beside_sqlite: %s\n", why.c_str());
  std::exit(1);
}

double seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

class Database {
 public:
  Database() {
    if (sqlite3_open(":memory:", &handle_) != SQLITE_OK) fail("no database");
  }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database() { sqlite3_close(handle_); }

  // The rows a statement gives, or else those it changes.
  std::int64_t run(const std::string& sql) {
    sqlite3_stmt* statement = prepare(sql);
    found_.clear();
    int status = sqlite3_step(statement);
    for (; status == SQLITE_ROW; status = sqlite3_step(statement))
      found_.push_back(sqlite3_column_int64(statement, 0));
    if (status != SQLITE_DONE) fail(sql + ": " + sqlite3_errmsg(handle_));
    const bool reads = sqlite3_stmt_readonly(statement) != 0;
    sqlite3_finalize(statement);
    return reads ? static_cast<std::int64_t>(found_.size()) : sqlite3_changes64(handle_);
  }

  sqlite3_stmt* prepare(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(handle_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      fail(sql + ": " + sqlite3_errmsg(handle_));
    }
    return statement;
  }

  // Appends the rows a statement gives to the file, texts between double quotes.
  void write_rows(const std::string& sql, std::ofstream& file) {
    sqlite3_stmt* statement = prepare(sql);
    std::string line;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      line.clear();
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        if (i > 0) line += ',';
        append_cell(statement, i, line);
      }
      line += '\n';
      file.write(line.data(), static_cast<std::streamsize>(line.size()));
    }
    sqlite3_finalize(statement);
  }

  // The one text that a statement gives.
  std::string text(const std::string& sql) {
    sqlite3_stmt* statement = prepare(sql);
    if (sqlite3_step(statement) != SQLITE_ROW) fail(sql + " gives nothing");
    std::string line;
    append_text(statement, 0, line);
    sqlite3_finalize(statement);
    return line;
  }

 private:
  static void append_text(sqlite3_stmt* statement, int column, std::string& line) {
    const unsigned char* const cell = sqlite3_column_text(statement, column);
    if (cell == nullptr) return;
    line.append(reinterpret_cast<const char*>(cell),
                static_cast<std::size_t>(sqlite3_column_bytes(statement, column)));
  }
  static void append_cell(sqlite3_stmt* statement, int column, std::string& line) {
    if (sqlite3_column_type(statement, column) != SQLITE_TEXT) {
      return append_text(statement, column, line);
    }
    line += '"';
    std::size_t at = line.size();
    append_text(statement, column, line);
    for (; (at = line.find('"', at)) != std::string::npos; at += 2)
      line.insert(at, 1, '"');
    line += '"';
  }

  sqlite3* handle_ = nullptr;
  std::vector<std::int64_t> found_;  // what a program would go on with
};

// One SQL table an object-data table, a row a record, in the order of the entities; and the
// entities themselves.
class Copy {
 public:
  Copy(Database& database, ODStore& store, const EntityList& entities) {
    database.run("BEGIN");
    database.run("CREATE TABLE entities(entity INTEGER PRIMARY KEY)");
    database.run("CREATE TABLE roads(entity INTEGER, lanes INTEGER, width REAL, name TEXT)");
    database.run("CREATE TABLE surveys(entity INTEGER, year INTEGER, note TEXT)");
    sqlite3_stmt* entity_row = database.prepare("INSERT INTO entities VALUES(?)");
    sqlite3_stmt* road_row = database.prepare("INSERT INTO roads VALUES(?,?,?,?)");
    sqlite3_stmt* survey_row = database.prepare("INSERT INTO surveys VALUES(?,?,?)");
    const std::unique_ptr<RecordIterator> records = store.records();
    for (const EntityId entity : entities) {
      insert(entity_row, entity, nullptr);
      for (records->open(entity, OpenMode::Read); !records->done(); records->next()) {
        insert(records->table_name() == L"Roads" ? road_row : survey_row, entity, records.get());
      }
    }
    for (sqlite3_stmt* statement : {entity_row, road_row, survey_row})
      sqlite3_finalize(statement);
    database.run("CREATE INDEX roads_entity ON roads(entity)");
    database.run("CREATE INDEX surveys_entity ON surveys(entity)");
    database.run("COMMIT");
    database.run("ANALYZE");
  }

 private:
  static void insert(sqlite3_stmt* row, EntityId entity, const RecordIterator* record) {
    sqlite3_bind_int64(row, 1, static_cast<std::int64_t>(entity.value));
    for (int i = 0; record != nullptr && i < record->value_count(); ++i) {
      const ODValueView value = record->value(i);
      if (const auto* const number = std::get_if<std::int32_t>(&value)) {
        sqlite3_bind_int(row, i + 2, *number);
      } else if (const auto* const real = std::get_if<double>(&value)) {
        sqlite3_bind_double(row, i + 2, *real);
      } else {
        const std::string text = to_utf8(std::get<std::wstring_view>(value));
        sqlite3_bind_text(row, i + 2, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
      }
    }
    if (sqlite3_step(row) != SQLITE_DONE) fail("a row was not inserted");
    sqlite3_reset(row);
  }
};

class Comparison {
 public:
  // Of the cases, those whose names contain `wanted`.
  Comparison(std::uint64_t size, std::string_view wanted)
      : host_(make(size)), drawing_(host_.drawing()), store_(drawing_), wanted_(wanted) {
    entities_ = drawing_.entities(Space::Model);
    add_duplicates();
    const Copy copied(database_, store_, entities_);
    std::printf("%zu entities, %d records\n", entities_.size(), records());
    std::printf("%-44s %10s %10s %8s %9s %12s\n", "", "korvel ms", "SQLite ms", "ratio", "undo ms",
                "found");
  }

  using Work = std::function<std::size_t()>;

  // What changes nothing.
  void search(const char* name, const Work& work, const std::vector<std::string>& statements) {
    if (!is_wanted(name)) return;
    double ours = best;
    double theirs = best;
    std::size_t found = 0;
    for (int round = 0; round < rounds; ++round) {
      ours = std::min(ours, seconds([&] { found = work(); }));
      for (const std::string& sql : statements)
        theirs = std::min(theirs, seconds([&] { check(found, database_.run(sql), sql); }));
    }
    std::printf("%-44s %10.2f %10.2f %8.1f %9s %12zu\n", name, ours * 1e3, theirs * 1e3,
                theirs / ours, "", found);
  }

  // What changes the drawing: undone, and rolled back, after every time.
  void change(const char* name, const Work& work, const std::vector<std::string>& statements) {
    if (!is_wanted(name)) return;
    double ours = best;
    double undoing = best;
    double theirs = best;
    std::size_t changed = 0;
    for (int round = 0; round < rounds; ++round) {
      ours = std::min(ours, timed_change(work, changed));
      undoing = std::min(undoing, seconds([&] { (void)drawing_.undo(); }));
      for (const std::string& sql : statements) {
        database_.run("BEGIN");
        theirs = std::min(theirs, seconds([&] { check(changed, database_.run(sql), sql); }));
        database_.run("ROLLBACK");
      }
    }
    std::printf("%-44s %10.2f %10.2f %8.1f %9.2f %12zu\n", name, ours * 1e3, theirs * 1e3,
                theirs / ours, undoing * 1e3, changed);
  }

  // The explication of both tables in a file, beside queries that give the same rows and figures
  // and of which the result is written as UTF-8; and beside writing the bytes of the explication.
  void explication() {
    const char* const name = "explication in a file";
    if (!is_wanted(name)) return;
    const ExplicationRequest request{{L"Roads", L"Surveys"}, {}, L","};
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / "korvel-beside-sqlite.csv";
    double ours = best;
    double theirs = best;
    double writing = best;
    for (int round = 0; round < rounds; ++round) {
      ours = std::min(ours, seconds([&] {
                        FileInProgress written(file);
                        explicate(store_, host_, entities_, request,
                                  [&](std::string_view bytes) { written.write(bytes); });
                        if (written.finish()) fail("the explication was not saved");
                      }));
      theirs = std::min(theirs, seconds([&] { write_csv(file); }));
      std::string bytes;
      explicate(store_, host_, entities_, request, [&](std::string_view piece) { bytes += piece; });
      check_explication(bytes);
      writing = std::min(writing, seconds([&] {
                           std::ofstream out(file, std::ios::binary);
                           out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
                         }));
    }
    std::filesystem::remove(file);
    std::printf("%-44s %10.2f %10.2f %8.1f %9s %12d\n", name, ours * 1e3, theirs * 1e3,
                theirs / ours, "", records());
    std::printf("%-44s %10.2f %10s %8.1f\n", "  writing its bytes alone, and times that",
                writing * 1e3, "", ours / writing);
  }

  // What works on the shapes of entities, which SQLite has not: beside a pass that reads them.
  void beside_shapes(const char* name, const Work& work) {
    if (!is_wanted(name)) return;
    double ours = best;
    double undoing = best;
    double reading = best;
    std::size_t changed = 0;
    for (int round = 0; round < rounds; ++round) {
      ours = std::min(ours, timed_change(work, changed));
      undoing = std::min(undoing, seconds([&] { (void)drawing_.undo(); }));
      reading = std::min(reading, seconds([&] {
                           std::size_t shapes = 0;
                           for (const EntityId entity : entities_)
                             shapes += drawing_.geometry_of(entity).shape.index() != 0 ? 1 : 0;
                           if (shapes != entities_.size()) fail("an entity without a shape");
                         }));
    }
    std::printf("%-44s %10.2f %10s %8s %9.2f %12zu\n", name, ours * 1e3, "", "", undoing * 1e3,
                changed);
    std::printf("%-44s %10.2f\n", "  reading the shapes alone", reading * 1e3);
  }

  [[nodiscard]] DrawingHost& host() { return host_; }
  [[nodiscard]] ODStore& store() { return store_; }
  [[nodiscard]] int records() {
    int all = 0;
    for (const int count : store_.count_records(entities_, store_.table_names()))
      all += count;
    return all;
  }
  [[nodiscard]] Database& database() { return database_; }
  [[nodiscard]] const EntityList& entities() const { return entities_; }

 private:
  // Rows of a table lie in the order of their entities.
  void write_csv(const std::filesystem::path& file) {
    std::ofstream out(file, std::ios::binary);
    for (const char* sql :
         {"SELECT printf('%X', entity), 'Roads', NULL, lanes, name, NULL, width, NULL FROM roads",
          "SELECT 'Sum', 'Roads', count(DISTINCT entity), sum(lanes), count(name), NULL, "
          "sum(width), NULL FROM roads",
          "SELECT printf('%X', entity), 'Surveys', NULL, NULL, NULL, note, NULL, year FROM surveys",
          "SELECT 'Sum', 'Surveys', count(DISTINCT entity), NULL, NULL, count(note), NULL, "
          "sum(year) FROM surveys",
          "SELECT count(lanes), count(name), count(width), sum(lanes), sum(width), min(lanes), "
          "min(width), max(lanes), max(width), avg(lanes), avg(width), count(DISTINCT lanes), "
          "count(DISTINCT name), count(DISTINCT width) FROM roads",
          "SELECT count(note), count(year), sum(year), min(year), max(year), avg(year), "
          "count(DISTINCT note), count(DISTINCT year) FROM surveys"}) {
      database_.write_rows(sql, out);
    }
  }
  // That the last lines hold what SQLite counts.
  void check_explication(const std::string& bytes) {
    std::string end = bytes.substr(bytes.size() - std::min<std::size_t>(bytes.size(), 2000));
    std::erase(end, '\0');
    for (const char* sql :
         {"SELECT 'Unique,,,' || count(DISTINCT lanes) || ',' || count(DISTINCT name) || ',' || "
          "(SELECT count(DISTINCT note) FROM surveys) || ',' || count(DISTINCT width) || ',' || "
          "(SELECT count(DISTINCT year) FROM surveys) FROM roads",
          "SELECT 'SumCount,,,' || count(lanes) || ',' || count(name) || ',' || "
          "(SELECT count(note) FROM surveys) || ',' || count(width) || ',' || "
          "(SELECT count(year) FROM surveys) FROM roads",
          "SELECT 'Max,,,' || max(lanes) || '.0,,,' || max(width) || ',' || "
          "(SELECT max(year) FROM surveys) || '.0' FROM roads"}) {
      const std::string line = database_.text(sql);
      if (end.find(line + "\r\n") == std::string::npos) fail("the explication lacks " + line);
    }
  }

  [[nodiscard]] bool is_wanted(std::string_view name) const {
    return name.find(wanted_) != std::string_view::npos;
  }

  static constexpr double best = std::numeric_limits<double>::infinity();

  static std::unique_ptr<Drawing> make(std::uint64_t size) {
    DrawingSize drawing_size;
    drawing_size.entities = size;
    std::string bytes;
    make_drawing(drawing_size, [&bytes](std::string_view piece) { bytes += piece; });
    return std::move(*Drawing::read(std::move(bytes), "made"));
  }
  double timed_change(const Work& work, std::size_t& changed) {
    return seconds([&] {
      drawing_.journal().open();
      changed = work();
      drawing_.journal().close();
    });
  }
  static void check(std::size_t ours, std::int64_t theirs, const std::string& sql) {
    if (static_cast<std::int64_t>(ours) != theirs) {
      fail(sql + " gives " + std::to_string(theirs) + ", korvel " + std::to_string(ours));
    }
  }
  // The drawing as made has none.
  void add_duplicates() {
    const std::optional<ODTableDef> surveys = store_.table(L"Surveys");
    if (!surveys) fail("the drawing has no table Surveys");
    for (std::size_t i = 0; i < entities_.size(); i += 10) {
      for (int time = 0; time < 2; ++time)
        (void)store_.attach(entities_[i], default_record(*surveys));
    }
  }

  SilentHost host_;
  Drawing& drawing_;
  StandaloneStore store_;
  std::string_view wanted_;
  Database database_;
  EntityList entities_;
};

void compare(std::uint64_t size, std::string_view wanted) {
  Comparison run(size, wanted);
  ODStore& store = run.store();
  const EntityList& all = run.entities();

  const auto values = [&](const wchar_t* table, const wchar_t* field, const wchar_t* pattern,
                          bool extended) {
    return [&, search = ValueSearch{{table}, {{field, pattern}}, extended}] {
      return find_by_values(search, store, all).size();
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
                                     store, all)
                   .size();
             },
             {"SELECT entity FROM roads UNION SELECT entity FROM surveys",
              "SELECT entity FROM entities e WHERE EXISTS(SELECT 1 FROM roads r WHERE r.entity = "
              "e.entity) OR EXISTS(SELECT 1 FROM surveys s WHERE s.entity = e.entity)"});
  run.search(
      "without a table",
      [&] {
        return find_by_tables({TableCriterion::Lacks, {L"Surveys"}, false}, store, all).size();
      },
      {"SELECT entity FROM entities EXCEPT SELECT entity FROM surveys",
       "SELECT entity FROM entities WHERE entity NOT IN (SELECT entity FROM surveys)",
       "SELECT entity FROM entities e WHERE NOT EXISTS(SELECT 1 FROM surveys s WHERE "
       "s.entity = e.entity)"});
  run.search("duplicates",
             [&] { return find_by_presence(Presence::Duplicated, store, all).size(); },
             {"SELECT entity FROM surveys GROUP BY entity HAVING count(*) > 1 UNION "
              "SELECT entity FROM roads GROUP BY entity HAVING count(*) > 1"});

  run.explication();

  run.database().run("CREATE TABLE extra(entity INTEGER, lanes INTEGER, name TEXT)");
  const ODTableDef extra_table{L"Extra",
                               {{L"LANES", ODType::Integer, std::int32_t{2}},
                                {L"NAME", ODType::Character, std::wstring(L"new")}}};
  if (store.define_table(extra_table) != TableChange::Done) fail("no table Extra");
  const ODRecord extra = default_record(extra_table);
  run.change("attach one record to every entity",
             [&] {
               Progress progress(run.host(), static_cast<std::int64_t>(all.size()));
               return static_cast<std::size_t>(attach_records(store, all, extra, progress));
             },
             {"INSERT INTO extra SELECT entity, 2, 'new' FROM entities"});
  // An entity has one record of roads at most, so rows are numbered like records.
  run.change("number records, integers",
             [&] {
               return static_cast<std::size_t>(
                   number_records(store, all, {L"Roads", L"LANES", L"", L"", 1}));
             },
             {"UPDATE roads SET lanes = (SELECT max(rowid) FROM roads) + 1 - rowid"});
  run.change("number records, texts",
             [&] {
               return static_cast<std::size_t>(
                   number_records(store, all, {L"Roads", L"NAME", L"R-", L"", 1}));
             },
             {"UPDATE roads SET name = 'R-' || ((SELECT max(rowid) FROM roads) + 1 - rowid)"});
  run.change(
      "replace a piece of text",
      [&] {
        return replace_in_records({{L"Roads"}, {L"NAME"}, L"reet 1", L"r. 1"}, store, all);
      },
      {"UPDATE roads SET name = replace(name, 'reet 1', 'r. 1') WHERE name LIKE '%reet 1%'",
       "UPDATE roads SET name = replace(name, 'reet 1', 'r. 1') WHERE instr(name, 'reet 1')"});
  run.change("replace numbers below 3",
             [&] {
               return replace_in_records({{L"Roads"}, {L"LANES"}, L">3", L"9"}, store, all);
             },
             {"UPDATE roads SET lanes = 9 WHERE lanes < 3"});
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
  run.change("remove all duplicates",
             [&] {
               const int before = run.records();
               (void)remove_duplicates(store, all, DuplicateMode::Last);
               return static_cast<std::size_t>(before - run.records());
             },
             {"DELETE FROM surveys WHERE rowid NOT IN (SELECT min(rowid) FROM surveys GROUP BY "
              "entity)"});

  run.beside_shapes("set two coordinates", [&] {
    const CoordinateRequest request{L"Roads", {L"WIDTH", L"NAME", L""}, {}, 4, 4};
    return set_coordinates(run.host(), store, all, request).completed;
  });
}

}  // namespace
}  // namespace korvel::bench

int main(int count, char** arguments) {
  const std::uint64_t size = count > 1 ? std::strtoull(arguments[1], nullptr, 10) : 1'000'000;
  if (size == 0) korvel::bench::fail("usage: beside_sqlite [ENTITIES [CASES]]");
  const std::string_view wanted = count > 2 ? arguments[2] : "";
  korvel::bench::compare(size, wanted);
  korvel::bench::compare_csv(size, wanted);
}
