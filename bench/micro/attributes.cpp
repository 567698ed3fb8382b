// The transfer of block attributes.
#include <benchmark/benchmark.h>
#include <cstddef>
#include <string>
#include <utility>

#include "attributes/attribute_transfer.h"
#include "bench/drawing_maker.h"
#include "bench/micro/large_drawing.h"
#include "bench/silent_host.h"

namespace korvel::bench {
namespace {

// What a transfer does to a drawing whose every fourth entity is a block reference, in which nobody
// has changed anything yet.
template <class Transfer>
void transfer_attributes(benchmark::State& state, const Transfer& transfer) {
  DrawingSize size;
  size.entities = static_cast<std::uint64_t>(state.range(0));
  size.references = true;
  const std::string bytes = drawing_text(size);
  const AttributeMapping mapping{{L"SIGN",
                                  {{L"NAME", L"Roads", L"NAME"},
                                   {L"LANES", L"Roads", L"LANES"},
                                   {L"WIDTH", L"Roads", L"WIDTH"}}}};
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

// A pass over all attributes, beside which the transfers stand.
void read_attributes(benchmark::State& state) {
  transfer_attributes(
      state, [](const AttributeMapping&, ODStore&, DrawingHost& host, const EntityList& entities) {
        std::size_t attributes = 0;
        for (const EntityId id : entities)
          attributes += host.attributes_of(id).size();
        return attributes;
      });
}

BENCHMARK_CAPTURE(transfer_attributes, load, load_attributes)->Apply(sizes);
BENCHMARK_CAPTURE(transfer_attributes, store, store_attributes)->Apply(sizes);
BENCHMARK(read_attributes)->Apply(sizes);

}  // namespace
}  // namespace korvel::bench
