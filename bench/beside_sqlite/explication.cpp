// The explication of both tables in a file, beside queries that give the same rows and figures and
// of which the result is written as UTF-8; and beside writing the bytes of the explication.
#include "exchange/explication.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "bench/beside_sqlite/cases.h"
#include "bench/beside_sqlite/lines.h"
#include "bench/measuring.h"

namespace korvel::bench {
namespace {

// Rows of a table lie in the order of their entities.
void write_csv(Database& database, const std::filesystem::path& file) {
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
    database.write_rows(sql, out);
  }
}

// That the last lines hold what SQLite counts.
void check_last_lines(Database& database, const std::string& bytes) {
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
    const std::string line = database.text(sql);
    if (end.find(line + "\r\n") == std::string::npos) fail("the explication lacks " + line);
  }
}

}  // namespace

void compare_explication(Comparison& run) {
  const char* const name = "explication in a file";
  if (!run.is_wanted(name)) return;
  const ExplicationRequest request{{L"Roads", L"Surveys"}, {}, L","};
  const std::filesystem::path file =
      std::filesystem::temp_directory_path() / "korvel-beside-sqlite.csv";
  const auto write = [&](const auto& sink) {
    explicate(run.store(), run.host(), run.entities(), request, sink);
  };
  double ours = no_time;
  double theirs = no_time;
  double writing = no_time;
  for (int round = 0; round < rounds; ++round) {
    ours = std::min(ours, seconds([&] {
                      const NewFile written{file, [&](const ByteSink& sink) {
                                              write(sink);
                                              return true;
                                            }};
                      if (run.host().replace_files({&written, 1})) {
                        fail("the explication was not saved");
                      }
                    }));
    theirs = std::min(theirs, seconds([&] { write_csv(run.database(), file); }));
    std::string bytes;
    write([&](std::string_view piece) {
      bytes += piece;
      return true;
    });
    check_last_lines(run.database(), bytes);
    writing = std::min(writing, seconds([&] {
                         std::ofstream out(file, std::ios::binary);
                         out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
                       }));
  }
  std::filesystem::remove(file);
  print_line(name, ours, theirs, {}, run.records());
  std::printf("%-44s %10.2f %10s %8.1f\n", "  writing its bytes alone, and times that",
              writing * 1e3, "", ours / writing);
}

}  // namespace korvel::bench
