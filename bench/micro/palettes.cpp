// What the table editor shows.
#include <benchmark/benchmark.h>

#include "bench/micro/large_drawing.h"
#include "bench/silent_host.h"
#include "palettes/record_view.h"

namespace korvel::bench {
namespace {

// What the table editor reads for its rows; read_one_column is the bare pass.
void arrange_rows(benchmark::State& state, const RecordArrangement& arrangement) {
  SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  RecordView view;
  for ([[maybe_unused]] auto _ : state) {
    view.read(store, host, entities, L"Roads", arrangement);
    benchmark::DoNotOptimize(view.rows().data());
  }
  count_entities(state);
}

RecordArrangement filtered_rows() {
  RecordArrangement arrangement;
  arrangement.filter = {{L"NAME", L"street 12"}};
  return arrangement;
}

RecordArrangement sorted_rows() {
  RecordArrangement arrangement;
  arrangement.sort_by = first_table_column;
  return arrangement;
}

RecordArrangement grouped_rows() {
  RecordArrangement arrangement;
  arrangement.group_by = first_table_column;
  return arrangement;
}

BENCHMARK_CAPTURE(arrange_rows, as_drawn, RecordArrangement{})->Apply(sizes);
BENCHMARK_CAPTURE(arrange_rows, filtered, filtered_rows())->Apply(sizes);
BENCHMARK_CAPTURE(arrange_rows, sorted, sorted_rows())->Apply(sizes);
BENCHMARK_CAPTURE(arrange_rows, grouped, grouped_rows())->Apply(sizes);

}  // namespace
}  // namespace korvel::bench
