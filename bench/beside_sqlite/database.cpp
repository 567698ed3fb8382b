#include "bench/beside_sqlite/database.h"

#include <cstddef>
#include <memory>
#include <variant>

#include "bench/measuring.h"
#include "frame/utf.h"

namespace korvel::bench {
namespace {

void append_cell(sqlite3_stmt* statement, int column, std::string& line) {
  if (sqlite3_column_type(statement, column) != SQLITE_TEXT) {
    line += text_of(statement, column);
    return;
  }
  line += '"';
  std::size_t at = line.size();
  line += text_of(statement, column);
  for (; (at = line.find('"', at)) != std::string::npos; at += 2)
    line.insert(at, 1, '"');
  line += '"';
}

void insert(sqlite3_stmt* row, EntityId entity, const RecordIterator* record) {
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

}  // namespace

std::string_view text_of(sqlite3_stmt* statement, int column) {
  const unsigned char* const cell = sqlite3_column_text(statement, column);
  if (cell == nullptr) return {};
  return {reinterpret_cast<const char*>(cell),  // NOLINT: what SQLite gives
          static_cast<std::size_t>(sqlite3_column_bytes(statement, column))};
}

Database::Database() {
  if (sqlite3_open(":memory:", &handle_) != SQLITE_OK) fail("no database");
}

Database::~Database() { sqlite3_close(handle_); }

std::int64_t Database::run(const std::string& sql) {
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

sqlite3_stmt* Database::prepare(const std::string& sql) {
  sqlite3_stmt* statement = nullptr;
  if (sqlite3_prepare_v2(handle_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
    fail(sql + ": " + sqlite3_errmsg(handle_));
  }
  return statement;
}

void Database::write_rows(const std::string& sql, std::ofstream& file) {
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

std::string Database::text(const std::string& sql) {
  sqlite3_stmt* statement = prepare(sql);
  if (sqlite3_step(statement) != SQLITE_ROW) fail(sql + " gives nothing");
  std::string line(text_of(statement, 0));
  sqlite3_finalize(statement);
  return line;
}

void copy_object_data(ODStore& store, const EntityList& entities, Database& database) {
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

}  // namespace korvel::bench
