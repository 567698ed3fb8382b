// One drawing and its copy in SQLite, which answer the same questions by turns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench/beside_sqlite/database.h"
#include "bench/silent_host.h"
#include "frame/entity_id.h"
#include "frame/od_store.h"
#include "host/standalone/drawing.h"
#include "host/standalone/standalone_store.h"

namespace korvel::bench {

// How often both sides answer.
constexpr int rounds = 5;

[[nodiscard]] std::unique_ptr<Drawing> drawing_of_size(std::uint64_t entities);

class Comparison {
 public:
  // Of the cases, those whose names contain `wanted`.
  Comparison(std::uint64_t size, std::string_view wanted);

  // What was found or changed.
  using Work = std::function<std::size_t()>;

  // What changes nothing.
  void search(const char* name, const Work& work, const std::vector<std::string>& statements);

  // What changes the drawing: undone, and rolled back, after every time.
  void change(const char* name, const Work& work, const std::vector<std::string>& statements);

  // What works on the shapes of entities, which SQLite has not: beside a pass that reads them.
  void beside_shapes(const char* name, const Work& work);

  [[nodiscard]] bool is_wanted(std::string_view name) const;
  [[nodiscard]] DrawingHost& host() { return host_; }
  [[nodiscard]] ODStore& store() { return store_; }
  [[nodiscard]] Database& database() { return database_; }
  [[nodiscard]] const EntityList& entities() const { return entities_; }
  // Those that there are now.
  [[nodiscard]] std::size_t records();

 private:
  struct Change {
    double seconds;
    double undoing;
    std::size_t changed;
  };
  // The best of all rounds. After each comes what it is compared with, which is told what changed.
  Change timed_change(const Work& work, const std::function<void(std::size_t)>& beside);
  void add_duplicates();

  SilentHost host_;
  Drawing& drawing_;
  StandaloneStore store_;
  std::string_view wanted_;
  Database database_;
  EntityList entities_;
};

}  // namespace korvel::bench
