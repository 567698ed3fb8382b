// Many records on one entity, many attributes on one reference, many tables in one drawing: what
// must not grow faster than their number. The argument of a case is that number.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <memory>
#include <string>

#include "attach/duplicate_removal.h"
#include "attach/record_removal.h"
#include "attributes/attribute_transfer.h"
#include "bench/drawing_maker.h"
#include "bench/micro/large_drawing.h"
#include "bench/silent_host.h"
#include "exchange/translation.h"
#include "frame/od_store.h"
#include "search/presence_search.h"

namespace korvel::bench {
namespace {

std::wstring table_name(std::int64_t number) { return L"Table " + std::to_wstring(number); }

void define_tables(ODStore& store, std::int64_t count) {
  for (std::int64_t i = 0; i < count; ++i) {
    (void)store.define_table({table_name(i),
                              {{L"NAME", ODType::Character, std::wstring()},
                               {L"NUMBER", ODType::Integer, std::int32_t{0}}}});
  }
}

// What a command does to one point with records of the tables by turns, undone each time.
template <class Work>
void work_on_one_entity(benchmark::State& state, std::int64_t tables, const Work& work) {
  SilentHost host(Drawing::blank());
  Drawing& drawing = host.drawing();
  StandaloneStore store(drawing);
  host.lock();
  define_tables(store, tables);
  const EntityId entity = drawing.add_entity({PointShape{}}, {}).value();
  for (std::int64_t i = 0; i < state.range(0); ++i)
    (void)attach_default(store, entity, table_name(i % tables));
  host.unlock();
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    host.lock();
    state.ResumeTiming();
    benchmark::DoNotOptimize(work(store, EntityList{entity}, host));
    state.PauseTiming();
    host.unlock();
    if (drawing.journal().state() > 1) (void)drawing.undo();
    state.ResumeTiming();
  }
  count_entities(state);
}

void remove_one_of_two_tables(benchmark::State& state) {
  const std::vector<std::wstring> chosen = {table_name(1)};
  work_on_one_entity(state, 2,
                     [&](ODStore& store, const EntityList& entities, ProgressMeter& meter) {
                       return remove_tables(store, entities, chosen, meter);
                     });
}

void remove_all_records(benchmark::State& state) { work_on_one_entity(state, 2, remove_all); }

void remove_all_duplicates(benchmark::State& state, DuplicateMode mode) {
  work_on_one_entity(state, 2,
                     [mode](ODStore& store, const EntityList& entities, ProgressMeter& meter) {
                       return remove_duplicates(store, entities, mode, meter);
                     });
}

// Every record is of another table.
void find_no_duplicate(benchmark::State& state) {
  work_on_one_entity(state, state.range(0),
                     [](ODStore& store, const EntityList& entities, ProgressMeter& meter) {
                       return find_by_presence(Presence::Duplicated, store, entities, meter).size();
                     });
}

// One reference, every attribute of which is mapped.
template <class Transfer>
void transfer_many_attributes(benchmark::State& state, const Transfer& transfer) {
  DrawingSize size;
  size.entities = 4;
  size.references = true;
  size.further_attributes = static_cast<std::uint64_t>(state.range(0));
  const std::string bytes = drawing_text(size);
  AttributeMapping mapping;
  for (std::int64_t i = 0; i < state.range(0); ++i)
    mapping[L"SIGN"].push_back({L"A" + std::to_wstring(i), L"Roads", L"NAME"});
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    SilentHost host(std::move(*Drawing::read(bytes, "bench.dxf")));
    StandaloneStore store(host.drawing());
    const EntityList entities = host.model_space();
    host.lock();
    state.ResumeTiming();
    benchmark::DoNotOptimize(transfer(mapping, store, host, entities));
    state.PauseTiming();
    host.unlock();
    state.ResumeTiming();
  }
  count_entities(state);
}

void rename_fields_of_all_tables(benchmark::State& state) {
  SilentHost host(Drawing::blank());
  StandaloneStore store(host.drawing());
  define_tables(store, state.range(0));
  AliasMaps there;
  AliasMaps back;
  there.fields = {{L"NAME", L"TITLE"}, {L"NUMBER", L"COUNT"}};
  back.fields = {{L"TITLE", L"NAME"}, {L"COUNT", L"NUMBER"}};
  for ([[maybe_unused]] auto _ : state) {
    host.lock();
    benchmark::DoNotOptimize(translate_columns(store, there, host));
    benchmark::DoNotOptimize(translate_columns(store, back, host));
    host.unlock();
  }
  count_entities(state);
}

void save_renamed_tables(benchmark::State& state) {
  const auto former = Drawing::blank();
  StandaloneStore former_store(*former);
  define_tables(former_store, state.range(0));
  const auto drawing = std::move(*Drawing::read(former->to_bytes(), "bench.dxf"));
  StandaloneStore store(*drawing);
  for (std::int64_t i = 0; i < state.range(0); ++i)
    (void)store.rename_table(table_name(i), L"Renamed " + std::to_wstring(i));
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(drawing->to_bytes());
  count_entities(state);
}

void thousands(benchmark::internal::Benchmark* of) {
  of->Arg(2'000)->Arg(20'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(remove_one_of_two_tables)->Apply(thousands);
BENCHMARK(remove_all_records)->Apply(thousands);
BENCHMARK_CAPTURE(remove_all_duplicates, first, DuplicateMode::First)->Apply(thousands);
BENCHMARK_CAPTURE(remove_all_duplicates, last, DuplicateMode::Last)->Apply(thousands);
BENCHMARK(find_no_duplicate)->Apply(thousands);
BENCHMARK_CAPTURE(transfer_many_attributes, load, load_attributes)->Apply(thousands);
BENCHMARK_CAPTURE(transfer_many_attributes, store, store_attributes)->Apply(thousands);
BENCHMARK(rename_fields_of_all_tables)->Apply(thousands);
BENCHMARK(save_renamed_tables)->Apply(thousands);

}  // namespace
}  // namespace korvel::bench
