#include "bench/beside_sqlite/comparison.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>
#include <utility>

#include "bench/beside_sqlite/lines.h"
#include "bench/drawing_maker.h"
#include "bench/measuring.h"

namespace korvel::bench {
namespace {

void check(std::size_t ours, std::int64_t theirs, const std::string& sql) {
  if (static_cast<std::int64_t>(ours) != theirs) {
    fail(sql + " gives " + std::to_string(theirs) + ", korvel " + std::to_string(ours));
  }
}

}  // namespace

std::unique_ptr<Drawing> drawing_of_size(std::uint64_t entities) {
  DrawingSize size;
  size.entities = entities;
  return std::move(*Drawing::read(drawing_text(size), "made"));
}

Comparison::Comparison(std::uint64_t size, std::string_view wanted)
    : host_(drawing_of_size(size)), drawing_(host_.drawing()), store_(drawing_), wanted_(wanted) {
  entities_ = drawing_.entities(Space::Model);
  add_duplicates();
  copy_object_data(store_, entities_, database_);
  std::printf("%zu entities, %zu records\n", entities_.size(), records());
  print_heads();
}

void Comparison::search(const char* name, const Work& work,
                        const std::vector<std::string>& statements) {
  if (!is_wanted(name)) return;
  double ours = no_time;
  double theirs = no_time;
  std::size_t found = 0;
  for (int round = 0; round < rounds; ++round) {
    ours = std::min(ours, seconds([&] { found = work(); }));
    for (const std::string& sql : statements)
      theirs = std::min(theirs, seconds([&] { check(found, database_.run(sql), sql); }));
  }
  print_line(name, ours, theirs, {}, found);
}

void Comparison::change(const char* name, const Work& work,
                        const std::vector<std::string>& statements) {
  if (!is_wanted(name)) return;
  double theirs = no_time;
  const Change ours = timed_change(work, [&](std::size_t changed) {
    for (const std::string& sql : statements) {
      database_.run("BEGIN");
      theirs = std::min(theirs, seconds([&] { check(changed, database_.run(sql), sql); }));
      database_.run("ROLLBACK");
    }
  });
  print_line(name, ours.seconds, theirs, ours.undoing, ours.changed);
}

void Comparison::beside_shapes(const char* name, const Work& work) {
  if (!is_wanted(name)) return;
  double reading = no_time;
  const Change ours = timed_change(work, [&](std::size_t /*changed*/) {
    reading = std::min(reading, seconds([&] {
                         std::size_t shapes = 0;
                         for (const EntityId entity : entities_)
                           shapes += drawing_.geometry_of(entity).shape.index() != 0 ? 1 : 0;
                         if (shapes != entities_.size()) fail("an entity without a shape");
                       }));
  });
  print_line(name, ours.seconds, {}, ours.undoing, ours.changed);
  print_line("  reading the shapes alone", reading, {}, {}, {});
}

bool Comparison::is_wanted(std::string_view name) const {
  return name.find(wanted_) != std::string_view::npos;
}

std::size_t Comparison::records() {
  std::size_t all = 0;
  for (const int count : store_.count_records(entities_, store_.table_names(), host_))
    all += static_cast<std::size_t>(count);
  return all;
}

Comparison::Change Comparison::timed_change(const Work& work,
                                            const std::function<void(std::size_t)>& beside) {
  Change best{no_time, no_time, 0};
  for (int round = 0; round < rounds; ++round) {
    best.seconds = std::min(best.seconds, seconds([&] {
                              drawing_.journal().open();
                              best.changed = work();
                              drawing_.journal().close();
                            }));
    best.undoing = std::min(best.undoing, seconds([&] { (void)drawing_.undo(); }));
    beside(best.changed);
  }
  return best;
}

// The drawing as made has none.
void Comparison::add_duplicates() {
  const std::optional<ODTableDef> surveys = store_.table(L"Surveys");
  if (!surveys) fail("the drawing has no table Surveys");
  for (std::size_t i = 0; i < entities_.size(); i += 10) {
    for (int time = 0; time < 2; ++time)
      (void)store_.attach(entities_[i], default_record(*surveys));
  }
}

}  // namespace korvel::bench
