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
#include "frame/utf.h"

namespace korvel::bench {
namespace {

// By table, or by a field of which there are thousands of values.
void explication(benchmark::State& state, std::optional<std::wstring> type_field) {
  SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  const ExplicationRequest request{{L"Roads", L"Surveys"}, std::move(type_field), L","};
  for ([[maybe_unused]] auto _ : state)
    explicate(store, host, entities, request, [](std::string_view bytes) {
      benchmark::DoNotOptimize(bytes);
      return true;
    });
  count_entities(state);
}

// Every value is looked up, and the texts of one column are others afterwards; beside
// write_one_column.
void translate_all_values(benchmark::State& state) {
  AliasMaps maps;
  maps.values = {{L"none", L"nothing"}};
  for (int street = 0; street < 5000; ++street) {
    const std::wstring number = std::to_wstring(street);
    maps.field_values[L"NAME"].emplace(L"Street " + number, L"Road " + number);
  }
  set_values(state, [&](ODStore& store, const EntityList& entities, ProgressMeter& meter) {
    return translate_values(store, meter, entities, maps);
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
  std::string csv() { return write_csv(store, host, table, rows, {}).bytes; }

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
    benchmark::DoNotOptimize(plan_csv(roads.store, roads.host, roads.table, text, {}));
  }
  count_entities(state);
}

void write_table_as_mif(benchmark::State& state) {
  RoadRows roads(state.range(0));
  for ([[maybe_unused]] auto _ : state) {
    const MifLayout layout = mif_layout(roads.store, roads.host, roads.table, roads.rows);
    benchmark::DoNotOptimize(write_mif(roads.store, roads.host, roads.rows, layout));
  }
  count_entities(state);
}

// One entity with as many records as a drawing has entities else, and its rows from last to first.
struct Crowd {
  explicit Crowd(std::int64_t size)
      : host(drawing_of(1)), store(host.drawing()), table(*store.table(L"Roads")) {
    const EntityId entity = host.model_space().front();
    ODRecord record = default_record(table);
    host.lock();
    for (std::int64_t i = 0; i < size; ++i) {
      record.values[*table.column(L"NAME")] = L"Street " + std::to_wstring(i);
      (void)store.attach(entity, record);
    }
    host.unlock();
    const auto records = store.records_of(table.name);
    records->open(entity, OpenMode::Read);
    for (std::int32_t number = records->count(); number > 0; --number)
      rows.rows.push_back({entity, number});
    for (std::size_t i = 0; i < table.columns.size(); ++i)
      rows.columns.push_back(i);
  }
  std::string csv() { return write_csv(store, host, table, rows, {}).bytes; }

  SilentHost host;
  StandaloneStore store;
  ODTableDef table;
  RecordRows rows{L"Roads", {}, {}};
};

void explication_of_crowd(benchmark::State& state) {
  Crowd crowd(state.range(0));
  for ([[maybe_unused]] auto _ : state)
    explicate(crowd.store, crowd.host, crowd.host.model_space(), {{L"Roads"}, L"NAME", L","},
              [](std::string_view bytes) {
                benchmark::DoNotOptimize(bytes);
                return true;
              });
  count_entities(state);
}

void write_crowd_as_csv(benchmark::State& state) {
  Crowd crowd(state.range(0));
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(crowd.csv());
  count_entities(state);
}

// Changes every record, and adds as many.
void import_crowd_from_csv(benchmark::State& state) {
  Crowd crowd(state.range(0));
  const EntityId entity = crowd.host.model_space().front();
  const std::string handle = to_utf8(crowd.host.handle_of(entity));
  std::string csv = "Handle,Record,NAME\n";
  for (const RecordKey& row : crowd.rows.rows)
    csv += handle + "," + std::to_string(row.number) + ",x\n" + handle + ",,new\n";
  for ([[maybe_unused]] auto _ : state) {
    std::string text = csv;
    const CsvPlan plan = plan_csv(crowd.store, crowd.host, crowd.table, text, {});
    crowd.host.lock();
    benchmark::DoNotOptimize(apply_csv(crowd.store, crowd.host, crowd.table, plan));
    crowd.host.unlock();
    state.PauseTiming();
    (void)crowd.host.drawing().undo();
    state.ResumeTiming();
  }
  count_entities(state);
}

BENCHMARK_CAPTURE(explication, by_table, std::nullopt)->Apply(sizes);
BENCHMARK_CAPTURE(explication, by_field, L"NAME")->Apply(sizes);
BENCHMARK(translate_all_values)->Apply(sizes);
BENCHMARK(write_table_as_csv)->Apply(sizes);
BENCHMARK(compare_csv_with_table)->Apply(sizes);
BENCHMARK(write_table_as_mif)->Apply(sizes);
BENCHMARK(explication_of_crowd)->Apply(sizes);
BENCHMARK(write_crowd_as_csv)->Apply(sizes);
BENCHMARK(import_crowd_from_csv)->Apply(sizes);

}  // namespace
}  // namespace korvel::bench
