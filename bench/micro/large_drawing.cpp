#include "bench/micro/large_drawing.h"

#include <map>
#include <utility>

#include "bench/drawing_maker.h"

namespace korvel::bench {

void sizes(benchmark::internal::Benchmark* of) {
  of->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
}

const std::string& drawing_bytes(std::int64_t entities) {
  static std::map<std::int64_t, std::string> made;
  std::string& bytes = made[entities];
  if (bytes.empty()) {
    DrawingSize size;
    size.entities = static_cast<std::uint64_t>(entities);
    bytes = drawing_text(size);
  }
  return bytes;
}

std::unique_ptr<Drawing> drawing_of(std::int64_t entities) {
  return std::move(*Drawing::read(drawing_bytes(entities), "bench.dxf"));
}

void count_entities(benchmark::State& state) {
  state.counters["entities"] = benchmark::Counter(
      static_cast<double>(state.range(0)) * static_cast<double>(state.iterations()),
      benchmark::Counter::kIsRate);
}

void ask_extents(const Drawing& drawing, const EntityList& entities) {
  for (const EntityId id : entities)
    benchmark::DoNotOptimize(drawing.extents_of(id));
}

}  // namespace korvel::bench
