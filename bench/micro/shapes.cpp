// What is asked of the shapes of entities, and their conversion.
#include <benchmark/benchmark.h>
#include <cmath>

#include "bench/micro/large_drawing.h"
#include "bench/silent_host.h"
#include "geometry/measures.h"
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

// Of one hatch with that many round islands, in rows or each within the one before.
HatchShape islands(std::int64_t count, bool in_each_other) {
  HatchShape hatch;
  const auto add = [&hatch](double x, double y, double radius) {
    hatch.loops.push_back({.vertices = {{{x - radius, y, 0}, 1}, {{x + radius, y, 0}, 1}},
                           .normal = {},
                           .closed = true});
  };
  const auto side = static_cast<std::int64_t>(std::ceil(std::sqrt(count)));
  add(0, 0, 2.0 * static_cast<double>(count));
  for (std::int64_t i = 0; i < count; ++i) {
    if (in_each_other) {
      add(0, 0, static_cast<double>(count - i));
    } else {
      add(static_cast<double>(i % side), static_cast<double>(i / side), 0.4);
    }
  }
  return hatch;
}

void area_with_islands(benchmark::State& state) {
  const Shape hatch = islands(state.range(0), state.range(1) != 0);
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(area_of(hatch));
}

BENCHMARK(extents_first)->Apply(sizes);
BENCHMARK(extents_again)->Apply(sizes);
BENCHMARK(read_shapes)->Apply(sizes);
BENCHMARK(convert_all_to_3d)->Apply(sizes);
BENCHMARK(area_with_islands)
    ->ArgNames({"islands", "nested"})
    ->ArgsProduct({{1000, 8000, 64000}, {0, 1}})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace korvel::bench
