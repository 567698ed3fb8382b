// What passes over the records cost through the binding to the CAD host, over the double of the
// host's classes, beside the same passes straight on the stand-alone drawing, in one run.
//
// Where the double's classes can do the work alone, they do so too: what that costs is no cost of
// the binding. All work by turns, ten times, and the best time of each counts. What changes the
// drawing is undone after every time. All must give the same number, which is not 0, or the program
// fails.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "attach/attach_data.h"
#include "attach/duplicate_removal.h"
#include "bench/drawing_maker.h"
#include "bench/measuring.h"
#include "bench/silent_host.h"
#include "frame/command_frame.h"
#include "host/arx/map_calls.h"
#include "host/arx/object_data.h"
#include "host/arx/object_ids.h"
#include "host/standalone/drawing.h"
#include "host/standalone/standalone_store.h"
#include "search/presence_search.h"
#include "search/value_search.h"
#include "tests/arx_double/db_classes.h"
#include "tests/arx_double/ed_classes.h"
#include "tests/arx_double/map_classes.h"

namespace korvel::bench {
namespace {

constexpr int rounds = 10;

// What a cost must not grow with.
struct Circumstances {
  std::uint64_t entities = 10'000;
  double records = 3;  // an entity: the first of Roads, the others of Surveys
  int tables = 0;      // besides the three that are used
  int iterators = 0;   // that stand on the last entity all the time
};

// One side at work.
struct Side {
  ODStore& store;
  DrawingHost& host;
  const EntityList& entities;
};

// The number of entities found, or of records met, attached, written or removed.
using Pass = std::size_t (*)(const Side& at);

struct Case {
  const char* name;
  bool per_record;  // or else per entity
  Pass pass;
  Pass without_binding = nullptr;
};

template <Presence criterion>
std::size_t presence_search(const Side& at) {
  return find_by_presence(criterion, at.store, at.entities, at.host).size();
}

std::size_t value_search(const Side& at) {
  return find_by_values({{L"Roads"}, {{L"WIDTH", L">5"}}, true}, at.store, at.entities, at.host)
      .size();
}

std::size_t read_one_column(const Side& at) {
  const std::unique_ptr<RecordIterator> records = at.store.records();
  std::size_t read = 0;
  for (const EntityId id : at.entities) {
    for (records->open(id, OpenMode::Read); !records->done(); records->next())
      read += type_of(records->value(0)) == ODType::Integer ? 1U : 0U;
  }
  return read;
}

std::size_t write_one_column(const Side& at) {
  const std::unique_ptr<RecordIterator> records = at.store.records();
  std::size_t written = 0;
  for (const EntityId id : at.entities) {
    for (records->open(id, OpenMode::Write); !records->done(); records->next())
      written += records->set_value(0, std::int32_t{7}) ? 1U : 0U;
  }
  return written;
}

// Both with the double's classes alone, without the binding around them.
template <AcMap::EOpenMode mode>
std::size_t without_binding(const Side& at) {
  const std::unique_ptr<AcMapODRecordIterator> records =
      arx::map::open_records(*arx::map::container());
  AcMapODTableRecord record;
  std::size_t met = 0;
  for (const EntityId id : at.entities) {
    records->Init(arx::object_id(id), mode, true);
    for (; !records->IsDone(); records->Next()) {
      records->GetRecord(record);
      if (mode == AcMap::kOpenForRead) {
        met += record.Value(0).Type() == AcMap::kInteger ? 1U : 0U;
      } else {
        record.Value(0) = 7;
        met += records->UpdateRecord(record) == AcMap::kOk ? 1U : 0U;
      }
    }
  }
  return met;
}

std::size_t attach(const Side& at) {
  const std::optional<ODTableDef> table = at.store.table(L"Extra");
  if (!table) return 0;
  return static_cast<std::size_t>(
      attach_records(at.store, at.entities, default_record(*table), at.host));
}

std::size_t detach(const Side& at) {
  return static_cast<std::size_t>(detach_records(at.store, at.entities, L"Roads", at.host));
}

std::size_t duplicates(const Side& at) {
  return static_cast<std::size_t>(
      remove_duplicates(at.store, at.entities, DuplicateMode::Last, at.host));
}

constexpr std::array cases = {
    Case{"presence search, an entity", false, presence_search<Presence::Any>},
    Case{"search for duplicates, an entity", false, presence_search<Presence::Duplicated>},
    Case{"search by a value, an entity", false, value_search},
    Case{"read one column, a record", true, read_one_column, without_binding<AcMap::kOpenForRead>},
    Case{"write one column, a record", true, write_one_column,
         without_binding<AcMap::kOpenForWrite>},
    Case{"attach to every entity, an entity", false, attach},
    Case{"detach a table, an entity", false, detach},
    Case{"remove duplicates, a record", true, duplicates},
};

class Comparison {
 public:
  explicit Comparison(const Circumstances& circumstances)
      : iterators_(circumstances.iterators), host_(made(circumstances)) {
    const ODTableDef extra{L"Extra", {{L"LANES", ODType::Integer, std::int32_t{2}}}};
    if (drawing_store_.define_table(extra) != TableChange::Done) fail("no table Extra");
    for (int i = 0; i < circumstances.tables; ++i) {
      (void)drawing_store_.define_table({L"Other" + std::to_wstring(i), extra.columns});
    }
    for (const int count :
         drawing_store_.count_records(entities_, drawing_store_.table_names(), host_))
      records_ += static_cast<std::size_t>(count);
    std::printf("\n%zu entities, %zu records, %zu tables, %d more iterators\n", entities_.size(),
                records_, drawing_store_.table_names().size(), iterators_);
    std::printf("%-40s %12s %12s %8s %12s\n", "", "straight ns", "binding ns", "ratio",
                "double ns");
  }

  void run(const Case& measured) {
    double straight = no_time;
    double bound = no_time;
    double double_alone = no_time;
    for (int round = 0; round < rounds; ++round) {
      std::size_t expected = 0;
      straight = std::min(straight, timed(drawing_store_, measured.pass, expected));
      if (expected == 0) fail(std::string(measured.name) + ": nothing was done");
      arx::ArxStore store;
      bound = std::min(bound, timed_like(expected, store, measured.pass));
      if (measured.without_binding == nullptr) continue;
      double_alone = std::min(double_alone, timed_like(expected, store, measured.without_binding));
    }
    const auto parts = static_cast<double>(measured.per_record ? records_ : entities_.size());
    std::printf("%-40s %12.1f %12.1f %8.1f", measured.name, straight / parts * 1e9,
                bound / parts * 1e9, bound / straight);
    if (measured.without_binding != nullptr) std::printf(" %12.1f", double_alone / parts * 1e9);
    std::printf("\n");
  }

 private:
  static std::unique_ptr<Drawing> made(const Circumstances& circumstances) {
    DrawingSize size;
    size.entities = circumstances.entities;
    size.records = circumstances.records;
    return std::move(*Drawing::read(drawing_text(size), "made"));
  }

  double timed(ODStore& store, Pass pass, std::size_t& result) {
    const std::uint64_t before = host_.drawing().journal().state();
    host_.lock();
    std::vector<std::unique_ptr<RecordIterator>> others;
    for (int i = 0; i < iterators_; ++i) {
      others.push_back(store.records());
      others.back()->open(entities_.back(), OpenMode::Read);
    }
    const double time = seconds([&] { result = pass({store, host_, entities_}); });
    others.clear();
    host_.unlock();
    if (host_.drawing().journal().state() != before) (void)host_.drawing().undo();
    return time;
  }

  double timed_like(std::size_t expected, ODStore& store, Pass pass) {
    std::size_t given = 0;
    const double time = timed(store, pass, given);
    if (given != expected) {
      fail(std::to_string(given) + " instead of " + std::to_string(expected));
    }
    return time;
  }

  int iterators_;
  SilentHost host_;
  StandaloneStore drawing_store_{host_.drawing()};
  EntityList entities_ = host_.model_space();
  std::size_t records_ = 0;
  arx_double::DatabaseOver database_{host_};
  arx_double::MapOverStore map_{drawing_store_};
  arx_double::RunningIn command_{arx_double::RunningIn::Command};
};

void compare(const Circumstances& circumstances) {
  Comparison comparison(circumstances);
  for (const Case& measured : cases)
    comparison.run(measured);
}

}  // namespace
}  // namespace korvel::bench

int main() {
  using korvel::bench::compare;
  compare({});
  compare({.entities = 100'000});
  compare({.records = 30});
  compare({.tables = 1000});
  compare({.iterators = 100});
}
