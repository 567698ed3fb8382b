// Explication, translation, and tables as files.
#include <benchmark/benchmark.h>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "bench/micro/large_drawing.h"
#include "bench/silent_host.h"
#include "exchange/csv_export.h"
#include "exchange/csv_plan.h"
#include "exchange/explication.h"
#include "exchange/mif_export.h"
#include "exchange/translation.h"

namespace korvel::bench {
namespace {

// By table, or by a field of which there are thousands of values.
void explication(benchmark::State& state, std::optional<std::wstring> type_field) {
  SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  const ExplicationRequest request{{L"Roads", L"Surveys"}, std::move(type_field), L","};
  for ([[maybe_unused]] auto _ : state)
    explicate(store, host, entities, request,
              [](std::string_view bytes) { benchmark::DoNotOptimize(bytes); });
  count_entities(state);
}

// Every value is looked up, and the texts of one column are others afterwards; beside
// write_one_column.
void translate_all_values(benchmark::State& state) {
  SilentHost host(drawing_of(1));
  AliasMaps maps;
  maps.values = {{L"none", L"nothing"}};
  for (int street = 0; street < 5000; ++street) {
    const std::wstring number = std::to_wstring(street);
    maps.field_values[L"NAME"].emplace(L"Street " + number, L"Road " + number);
  }
  set_values(state, [&](ODStore& store, const EntityList& entities) {
    return translate_values(store, host, entities, maps);
  });
}

// The first record of Roads on each entity, all columns.
struct RoadRows {
  explicit RoadRows(std::int64_t size)
      : host(drawing_of(size)), store(host.drawing()), table(*store.table(L"Roads")) {
    for (std::size_t i = 0; i < table.columns.size(); ++i)
      rows.columns.push_back(i);
    for (const EntityId entity : host.drawing().entities(Space::Model))
      rows.rows.push_back({entity, 1});
  }
  std::string csv() { return write_csv(store, host, table, rows, ',').bytes; }

  SilentHost host;
  StandaloneStore store;
  ODTableDef table;
  RecordRows rows{L"Roads", {}, {}};
};

// read_one_column and read_shapes are the bare passes.
void write_table_as_csv(benchmark::State& state) {
  RoadRows roads(state.range(0));
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(roads.csv());
  count_entities(state);
}

void compare_csv_with_table(benchmark::State& state) {
  RoadRows roads(state.range(0));
  const std::string csv = roads.csv().substr(3);
  for ([[maybe_unused]] auto _ : state) {
    std::string text = csv;
    benchmark::DoNotOptimize(plan_csv(roads.store, roads.host, roads.table, text, ','));
  }
  count_entities(state);
}

void write_table_as_mif(benchmark::State& state) {
  RoadRows roads(state.range(0));
  for ([[maybe_unused]] auto _ : state) {
    const MifLayout layout = mif_layout(roads.store, roads.table, roads.rows);
    benchmark::DoNotOptimize(write_mif(roads.store, roads.host, roads.table, roads.rows, layout));
  }
  count_entities(state);
}

BENCHMARK_CAPTURE(explication, by_table, std::nullopt)->Apply(sizes);
BENCHMARK_CAPTURE(explication, by_field, L"NAME")->Apply(sizes);
BENCHMARK(translate_all_values)->Apply(sizes);
BENCHMARK(write_table_as_csv)->Apply(sizes);
BENCHMARK(compare_csv_with_table)->Apply(sizes);
BENCHMARK(write_table_as_mif)->Apply(sizes);

}  // namespace
}  // namespace korvel::bench
