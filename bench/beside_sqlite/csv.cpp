// Export and import of tables as text, beside SQLite doing the same.
//
// SQLite keeps a row for each record under its handle and number, so that ORDER BY needs no
// sorting. Both sides read and write text with the same functions and save the same way; SQLite
// imports into a temporary table and updates by a join, by the better of two statements.
#include <algorithm>
#include <filesystem>
#include <sqlite3.h>
#include <string>
#include <vector>

#include "bench/beside_sqlite/cases.h"
#include "bench/beside_sqlite/lines.h"
#include "bench/measuring.h"
#include "bench/silent_host.h"
#include "exchange/csv_export.h"
#include "exchange/csv_plan.h"
#include "exchange/csv_text.h"
#include "frame/text_file.h"
#include "frame/utf.h"
#include "host/standalone/drawing.h"
#include "host/standalone/standalone_store.h"

namespace korvel::bench {
namespace {

constexpr int csv_rounds = 3;

// The records of one table, one row each; columns a, b, ...
class SqlTable {
 public:
  explicit SqlTable(const ODTableDef& table) : columns_(table.columns.size()) {
    std::string columns = "handle TEXT, record INTEGER";
    for (std::size_t i = 0; i < columns_; ++i)
      columns += ", " + column(i) + type(table.columns[i].type);
    run("CREATE TABLE records(" + columns + ", PRIMARY KEY(handle, record)) WITHOUT ROWID");
    run("CREATE TEMP TABLE loaded(" + columns + ")");
  }

  std::int64_t run(const std::string& sql) { return database_.run(sql); }

  // Inserts the rows of the text, whose first line names the columns, into the table.
  void load(std::string& utf8, const std::string& table) {
    std::string sql = "INSERT INTO " + table + " VALUES(?,?";
    for (std::size_t i = 0; i < columns_; ++i)
      sql += ",?";
    sqlite3_stmt* const row = database_.prepare(sql + ")");
    CsvReader reader(utf8, ',');
    std::vector<std::string_view> cells;
    (void)reader.next(cells);
    while (reader.next(cells)) {
      for (std::size_t i = 0; i < cells.size(); ++i) {
        sqlite3_bind_text(row, static_cast<int>(i + 1), cells[i].data(),
                          static_cast<int>(cells[i].size()), SQLITE_STATIC);
      }
      if (sqlite3_step(row) != SQLITE_DONE) fail("a row was not inserted");
      sqlite3_reset(row);
    }
    sqlite3_finalize(row);
  }

  std::string written() {
    std::string sql = "SELECT handle, record";
    for (std::size_t i = 0; i < columns_; ++i)
      sql += ", " + column(i);
    sqlite3_stmt* const rows = database_.prepare(sql + " FROM records ORDER BY handle, record");
    std::string text;
    CsvWriter writer(',', text);
    const int count = sqlite3_column_count(rows);
    while (sqlite3_step(rows) == SQLITE_ROW) {
      for (int i = 0; i < count; ++i)
        writer.cell(text_of(rows, i));
      writer.end_row();
    }
    sqlite3_finalize(rows);
    return text;
  }

  // Takes over what was loaded; the number of rows that changed.
  std::size_t update(bool only_different) {
    std::string sql = "UPDATE records SET ";
    std::string differs;
    for (std::size_t i = 0; i < columns_; ++i) {
      sql += (i == 0 ? "" : ", ") + column(i) + " = l." + column(i);
      differs += (i == 0 ? "" : " OR ") + ("records." + column(i)) + " IS NOT l." + column(i);
    }
    sql += " FROM loaded l WHERE records.handle = l.handle AND records.record = l.record";
    return static_cast<std::size_t>(run(sql + (only_different ? " AND (" + differs + ")" : "")));
  }

 private:
  static std::string column(std::size_t index) { return {static_cast<char>('a' + index)}; }
  static std::string type(ODType type) {
    return type == ODType::Integer ? " INTEGER" : type == ODType::Real ? " REAL" : " TEXT";
  }

  Database database_;
  std::size_t columns_;
};

class TableComparison {
 public:
  TableComparison(SilentHost& host, StandaloneStore& store, const ODTableDef& table)
      : host_(host), drawing_(host.drawing()), store_(store), table_(table), sql_(table) {
    rows_.table = table.name;
    for (std::size_t i = 0; i < table.columns.size(); ++i)
      rows_.columns.push_back(i);
    const auto records = store.records_of(table.name);
    for (const EntityId entity : drawing_.entities(Space::Model)) {
      records->open(entity, OpenMode::Read);
      for (std::int32_t number = 1; number <= records->count(); ++number)
        rows_.rows.push_back({entity, number});
    }
    std::string text = written();
    sql_.run("BEGIN");
    sql_.load(text, "records");
    sql_.run("COMMIT");
    sql_.run("ANALYZE");
  }
  ~TableComparison() { std::filesystem::remove(file_); }
  TableComparison(const TableComparison&) = delete;
  TableComparison& operator=(const TableComparison&) = delete;

  void compare_export() {
    double ours = no_time;
    double theirs = no_time;
    for (int round = 0; round < csv_rounds; ++round) {
      ours = std::min(ours, seconds([&] { save(written()); }));
      theirs = std::min(theirs, seconds([&] { save(sql_.written()); }));
    }
    print_line("export " + to_utf8(table_.name) + " as CSV", ours, theirs, {}, rows_.rows.size());
  }

  // A text in which the first value of every record is another one.
  void compare_import() {
    drawing_.journal().open();
    const auto records = store_.records_of(table_.name);
    EntityId entity;
    for (const RecordKey& key : rows_.rows) {
      if (key.entity == entity) continue;
      entity = key.entity;
      for (records->open(entity, OpenMode::Write); !records->done(); records->next())
        (void)records->set_value(0, std::get<std::int32_t>(records->value(0)) + 1);
    }
    drawing_.journal().close();
    const std::string changed = written();
    save(changed);
    (void)drawing_.undo();

    double ours = no_time;
    double undoing = no_time;
    double theirs = no_time;
    std::size_t count = 0;
    for (int round = 0; round < csv_rounds; ++round) {
      ours = std::min(ours, seconds([&] { count = import(); }));
      if (round == 0 && written() != changed) fail("the import gives other records");
      undoing = std::min(undoing, seconds([&] { (void)drawing_.undo(); }));
      for (const bool only_different : {false, true}) {
        sql_.run("BEGIN");
        theirs = std::min(theirs, seconds([&] {
                            std::string text = read();
                            sql_.load(text, "loaded");
                            if (sql_.update(only_different) != count) fail("not as many changed");
                          }));
        sql_.run("ROLLBACK");
      }
    }
    print_line("import " + to_utf8(table_.name) + " from CSV", ours, theirs, undoing, count);
  }

 private:
  std::string written() { return write_csv(store_, host_, table_, rows_, {}).bytes; }
  void save(std::string_view bytes) {
    const NewFile target = new_file(file_, bytes);
    if (host_.replace_files({&target, 1})) fail("the file is not written");
  }
  [[nodiscard]] std::string read() const {
    std::string text;
    if (read_utf8_file(file_, std::size_t{1} << 31, TextEncoding::Ansi, text)) {
      fail("the file is not read");
    }
    return text;
  }
  std::size_t import() {
    std::string text = read();
    const CsvPlan plan = plan_csv(store_, host_, table_, text, {});
    drawing_.journal().open();
    const std::size_t count = apply_csv(store_, host_, table_, plan);
    drawing_.journal().close();
    return count;
  }

  SilentHost& host_;
  Drawing& drawing_;
  StandaloneStore& store_;
  const ODTableDef& table_;
  SqlTable sql_;
  RecordRows rows_;
  const std::filesystem::path file_ =
      std::filesystem::temp_directory_path() / "korvel_csv_beside_sqlite.csv";
};

}  // namespace

void compare_csv(std::uint64_t entities, std::string_view wanted) {
  if (std::string_view("CSV").find(wanted) == std::string_view::npos) return;
  SilentHost host(drawing_of_size(entities));
  StandaloneStore store(host.drawing());
  for (const std::wstring& name : store.table_names()) {
    const ODTableDef table = store.table(name).value_or(ODTableDef{});
    TableComparison comparison(host, store, table);
    comparison.compare_export();
    comparison.compare_import();
  }
}

}  // namespace korvel::bench
