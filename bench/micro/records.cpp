// Bare passes over the records, beside which others stand, and attaching and removing them.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <memory>
#include <variant>

#include "attach/duplicate_removal.h"
#include "bench/micro/large_drawing.h"
#include "bench/silent_host.h"
#include "frame/od_store.h"

namespace korvel::bench {
namespace {

// A pass that reads one column of every record of a table.
void read_one_column(benchmark::State& state) {
  SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  const std::unique_ptr<RecordIterator> records = store.records();
  for ([[maybe_unused]] auto _ : state) {
    std::int64_t lanes = 0;
    for (const EntityId id : entities) {
      for (records->open(id, OpenMode::Read); !records->done(); records->next()) {
        if (records->table_name() == L"Roads") lanes += std::get<std::int32_t>(records->value(0));
      }
    }
    benchmark::DoNotOptimize(lanes);
  }
  count_entities(state);
}

// A pass that writes one value of every record of a table, beside which setting values stands.
void write_one_column(benchmark::State& state) {
  set_values(state, [](ODStore& store, const EntityList& entities, ProgressMeter& /*meter*/) {
    std::int64_t written = 0;
    const std::unique_ptr<RecordIterator> records = store.records_of(L"Roads");
    for (const EntityId id : entities) {
      for (records->open(id, OpenMode::Write); !records->done(); records->next())
        written += records->set_value(1, 0.5) ? 1 : 0;
    }
    return written;
  });
}

// The table is the last of so many more.
void attach_to_all(benchmark::State& state, int more_tables) {
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    const auto drawing = drawing_of(state.range(0));
    StandaloneStore store(*drawing);
    ODTableDef table = *store.table(L"Roads");
    for (int i = 0; i < more_tables; ++i) {
      table.name = L"Roads" + std::to_wstring(i);
      (void)store.define_table(table);
    }
    const ODRecord record = default_record(table);
    const EntityList entities = drawing->entities(Space::Model);
    drawing->journal().open();
    state.ResumeTiming();
    for (const EntityId id : entities)
      benchmark::DoNotOptimize(store.attach(id, record));
    state.PauseTiming();
    drawing->journal().close();
    state.ResumeTiming();
  }
  count_entities(state);
}

// The drawing has no duplicates, so that every pass meets the same records.
void look_for_duplicates_to_remove(benchmark::State& state) {
  SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(remove_duplicates(store, entities, DuplicateMode::First, host));
  }
  count_entities(state);
}

BENCHMARK(read_one_column)->Apply(sizes);
BENCHMARK(write_one_column)->Apply(sizes);
BENCHMARK_CAPTURE(attach_to_all, few_tables, 0)->Apply(sizes);
BENCHMARK_CAPTURE(attach_to_all, many_tables, 2000)->Apply(sizes);
BENCHMARK(look_for_duplicates_to_remove)->Apply(sizes);

}  // namespace
}  // namespace korvel::bench
