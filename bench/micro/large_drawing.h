// The drawing that the cases measure, and what they share. The argument of a case is the number of
// entities; they have 1.5 records on the average.
#pragma once

#include <benchmark/benchmark.h>
#include <cstdint>
#include <memory>
#include <string>

#include "bench/silent_host.h"
#include "frame/entity_id.h"
#include "host/standalone/drawing.h"
#include "host/standalone/standalone_store.h"

namespace korvel::bench {

// Both sizes of a case, in milliseconds.
void sizes(benchmark::internal::Benchmark* of);

// Made once in the life of the program.
[[nodiscard]] const std::string& drawing_bytes(std::int64_t entities);
[[nodiscard]] std::unique_ptr<Drawing> drawing_of(std::int64_t entities);

// Shows the entities a second.
void count_entities(benchmark::State& state);

// What a query by place asks of every entity.
void ask_extents(const Drawing& drawing, const EntityList& entities);

// What a command that sets values does to a drawing that nobody has changed yet.
template <class Set>
void set_values(benchmark::State& state, const Set& set) {
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    SilentHost host(drawing_of(state.range(0)));
    StandaloneStore store(host.drawing());
    const EntityList entities = host.model_space();
    host.lock();
    state.ResumeTiming();
    benchmark::DoNotOptimize(set(store, entities, host));
    state.PauseTiming();
    host.unlock();
    state.ResumeTiming();
  }
  count_entities(state);
}

}  // namespace korvel::bench
