// What is asked of the shapes of entities, and their conversion.
#include <benchmark/benchmark.h>

#include "bench/micro/large_drawing.h"
#include "bench/silent_host.h"
#include "geometry/polyline_conversion.h"

namespace korvel::bench {
namespace {

void extents_first(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    const auto drawing = drawing_of(state.range(0));
    const EntityList entities = drawing->entities(Space::Model);
    state.ResumeTiming();
    ask_extents(*drawing, entities);
  }
  count_entities(state);
}

void extents_again(benchmark::State& state) {
  const auto drawing = drawing_of(state.range(0));
  const EntityList entities = drawing->entities(Space::Model);
  ask_extents(*drawing, entities);
  for ([[maybe_unused]] auto _ : state)
    ask_extents(*drawing, entities);
  count_entities(state);
}

// A pass that reads the shape of every entity, beside which the conversion stands.
void read_shapes(benchmark::State& state) {
  const auto drawing = drawing_of(state.range(0));
  const EntityList entities = drawing->entities(Space::Model);
  for ([[maybe_unused]] auto _ : state) {
    for (const EntityId id : entities)
      benchmark::DoNotOptimize(drawing->geometry_of(id));
  }
  count_entities(state);
}

void convert_all_to_3d(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    SilentHost host(drawing_of(state.range(0)));
    const EntityList entities = host.model_space();
    host.lock();
    state.ResumeTiming();
    benchmark::DoNotOptimize(convert_to_polylines(host, entities, PolylineTarget::ThreeD, 0));
    state.PauseTiming();
    host.unlock();
    state.ResumeTiming();
  }
  count_entities(state);
}

BENCHMARK(extents_first)->Apply(sizes);
BENCHMARK(extents_again)->Apply(sizes);
BENCHMARK(read_shapes)->Apply(sizes);
BENCHMARK(convert_all_to_3d)->Apply(sizes);

}  // namespace
}  // namespace korvel::bench
