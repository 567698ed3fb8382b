// The drawing that the cases measure, and what they share. The argument of a case is the number of
// entities; they have 1.5 records on the average.
#pragma once

#include <benchmark/benchmark.h>
#include <cstdint>
#include <memory>
#include <string>

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
    const auto drawing = drawing_of(state.range(0));
    StandaloneStore store(*drawing);
    const EntityList entities = drawing->entities(Space::Model);
    drawing->journal().open();
    state.ResumeTiming();
    benchmark::DoNotOptimize(set(store, entities));
    state.PauseTiming();
    drawing->journal().close();
    state.ResumeTiming();
  }
  count_entities(state);
}

}  // namespace korvel::bench
