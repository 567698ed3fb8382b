// Searching and counting.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "bench/micro/large_drawing.h"
#include "bench/silent_host.h"
#include "search/presence_search.h"
#include "search/statistics.h"
#include "search/table_search.h"
#include "search/value_pattern.h"
#include "search/value_search.h"

namespace korvel::bench {
namespace {

template <Presence criterion>
void presence_search(benchmark::State& state) {
  SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(find_by_presence(criterion, store, entities, host));
  }
  count_entities(state);
}

// One criterion on a field of Roads, over entities of which most have a record of it.
void value_search(benchmark::State& state, const wchar_t* field, const wchar_t* pattern,
                  bool extended) {
  SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  const ValueSearch search{{L"Roads"}, {{field, pattern}}, extended};
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(find_by_values(search, store, entities, host));
  }
  count_entities(state);
}

// A pattern asked about names that are all different, unlike those of a drawing.
void value_pattern(benchmark::State& state, const wchar_t* typed, bool extended) {
  ValuePattern pattern(typed, extended);
  std::vector<std::wstring> names;
  std::int64_t characters = 0;
  for (int i = 0; i < 1'000'000; ++i) {
    names.push_back(L"Great North Road " + std::to_wstring(i));
    characters += static_cast<std::int64_t>(names.back().size());
  }
  for ([[maybe_unused]] auto _ : state) {
    std::int64_t passed = 0;
    for (const std::wstring& name : names)
      passed += pattern(std::wstring_view(name)) ? 1 : 0;
    benchmark::DoNotOptimize(passed);
  }
  state.SetItemsProcessed(characters * state.iterations());
}

void table_search(benchmark::State& state) {
  SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  const TableSearch search{TableCriterion::Carries, user_tables(store), true};
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(find_by_tables(search, store, entities, host));
  }
  count_entities(state);
}

void statistics(benchmark::State& state) {
  SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(count_object_data(store, entities, host));
  }
  count_entities(state);
}

BENCHMARK_TEMPLATE(presence_search, Presence::None)->Apply(sizes);
BENCHMARK_TEMPLATE(presence_search, Presence::Any)->Apply(sizes);
BENCHMARK_TEMPLATE(presence_search, Presence::Multiple)->Apply(sizes);
BENCHMARK_TEMPLATE(presence_search, Presence::Duplicated)->Apply(sizes);
BENCHMARK_CAPTURE(value_search, contained, L"NAME", L"street", false)->Apply(sizes);
BENCHMARK_CAPTURE(value_search, wildcard, L"NAME", L"a*e*1*", true)->Apply(sizes);
BENCHMARK_CAPTURE(value_search, greater_real, L"WIDTH", L">5", true)->Apply(sizes);
BENCHMARK_CAPTURE(value_search, contained_in_real, L"WIDTH", L"5.0", false)->Apply(sizes);
BENCHMARK_CAPTURE(value_pattern, contained, L"street", false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(value_pattern, wildcard, L"*north*9*9", true)->Unit(benchmark::kMillisecond);
BENCHMARK(table_search)->Apply(sizes);
BENCHMARK(statistics)->Apply(sizes);

}  // namespace
}  // namespace korvel::bench
