// Setting values.
#include <benchmark/benchmark.h>
#include <optional>
#include <string>

#include "bench/micro/large_drawing.h"
#include "bench/silent_host.h"
#include "frame/command_frame.h"
#include "values/coordinates.h"
#include "values/identifiers.h"
#include "values/measure_values.h"
#include "values/replace_values.h"
#include "values/sums.h"
#include "values/text_values.h"

namespace korvel::bench {
namespace {

void replace(benchmark::State& state, const wchar_t* field, const wchar_t* search,
             const wchar_t* replacement) {
  const ReplaceRequest request{{L"Roads"}, {field}, search, replacement};
  set_values(state, [&request](ODStore& store, const EntityList& entities, ProgressMeter& meter) {
    return replace_in_records(request, store, entities, meter);
  });
}

// From LANES into WIDTH.
void add_columns(benchmark::State& state) {
  set_values(state, [](ODStore& store, const EntityList& entities, ProgressMeter& meter) {
    return add_within_records(L"Roads", 0, 1, store, entities, meter).written;
  });
}

void number_all(benchmark::State& state, const wchar_t* field) {
  SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  const Numbering numbering{L"Roads", field, L"R-", L"", 1};
  for ([[maybe_unused]] auto _ : state) {
    EntityList once = entities;
    drop_repeated(once);
    benchmark::DoNotOptimize(number_records(store, once, numbering, host));
  }
  count_entities(state);
}

void propose_first_number(benchmark::State& state) {
  SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(proposed_first(store, entities, L"Roads", L"NAME", host));
  count_entities(state);
}

// Beside read_shapes and extents_again.
void set_all_coordinates(benchmark::State& state) {
  SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  ask_extents(host.drawing(), entities);
  const CoordinateRequest request{L"Roads", {L"WIDTH", L"NAME", L""}, {}, 4, 4};
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(set_coordinates(host, store, entities, request).completed);
  count_entities(state);
}

void set_all_measures(benchmark::State& state) {
  SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  for ([[maybe_unused]] auto _ : state) {
    host.lock();
    benchmark::DoNotOptimize(
        set_measures(store, host, entities, {L"Roads", L"WIDTH", L"NAME", L"", 4}));
    host.unlock();
  }
  count_entities(state);
}

// One text for ten entities, each at the middle of an entity's extents.
void add_texts(Drawing& drawing, const EntityList& entities) {
  for (std::size_t i = 0; i < entities.size(); i += 10) {
    const std::optional<Extents> box = drawing.extents_of(entities[i]);
    if (!box) continue;
    TextShape text;
    text.position = {(box->min.x + box->max.x) / 2, (box->min.y + box->max.y) / 2, 0};
    text.text = L"Text " + std::to_wstring(i);
    text.height = 1;
    (void)drawing.add_entity({text}, {});
  }
}

void set_all_texts(benchmark::State& state) {
  SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  host.lock();
  add_texts(host.drawing(), entities);
  host.unlock();
  for ([[maybe_unused]] auto _ : state) {
    host.lock();
    benchmark::DoNotOptimize(set_texts(store, host, entities, {L"Roads", L"NAME", 1}));
    host.unlock();
  }
  count_entities(state);
}

BENCHMARK_CAPTURE(replace, any_value, L"WIDTH", L"*", L"0.5")->Apply(sizes);
BENCHMARK_CAPTURE(replace, smaller_real, L"WIDTH", L">7000", L"7000")->Apply(sizes);
BENCHMARK_CAPTURE(replace, in_real, L"WIDTH", L"5", L"6")->Apply(sizes);
BENCHMARK_CAPTURE(replace, in_text, L"NAME", L"street", L"St.")->Apply(sizes);
BENCHMARK_CAPTURE(replace, wildcard, L"NAME", L"a*e", L"-")->Apply(sizes);
BENCHMARK(add_columns)->Apply(sizes);
BENCHMARK_CAPTURE(number_all, integers, L"LANES")->Apply(sizes);
BENCHMARK_CAPTURE(number_all, texts, L"NAME")->Apply(sizes);
BENCHMARK(propose_first_number)->Apply(sizes);
BENCHMARK(set_all_coordinates)->Apply(sizes);
BENCHMARK(set_all_measures)->Apply(sizes);
BENCHMARK(set_all_texts)->Apply(sizes);

}  // namespace
}  // namespace korvel::bench
