// An SQLite database in memory, and the object data of a drawing in it.
#pragma once

#include <cstdint>
#include <fstream>
#include <sqlite3.h>
#include <string>
#include <string_view>
#include <vector>

#include "frame/entity_id.h"
#include "frame/od_store.h"

namespace korvel::bench {

// A cell of the row that the statement stands on, empty for NULL; valid until it moves.
[[nodiscard]] std::string_view text_of(sqlite3_stmt* statement, int column);

// A statement that SQLite refuses ends the program.
class Database {
 public:
  Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database();

  // The rows a statement gives, or else those it changes.
  std::int64_t run(const std::string& sql);

  // The caller finalizes it.
  sqlite3_stmt* prepare(const std::string& sql);

  // Appends the rows a statement gives to the file, texts between double quotes.
  void write_rows(const std::string& sql, std::ofstream& file);

  // The one text that a statement gives.
  std::string text(const std::string& sql);

 private:
  sqlite3* handle_ = nullptr;
  std::vector<std::int64_t> found_;  // what a program would go on with
};

// One SQL table an object-data table, a row a record, in the order of the entities; and the
// entities themselves.
void copy_object_data(ODStore& store, const EntityList& entities, Database& database);

}  // namespace korvel::bench
