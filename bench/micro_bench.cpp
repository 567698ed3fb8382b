// What a pass over a large drawing costs: opening, writing, searching, decoding. The argument is
// the number of entities; they have 1.5 records on the average.
#include <benchmark/benchmark.h>
#include <map>
#include <memory>
#include <string>

#include "bench/drawing_maker.h"
#include "frame/od_store.h"
#include "geometry/polyline_conversion.h"
#include "host/console/scripted_lines.h"
#include "host/console/terminal_host.h"
#include "host/standalone/drawing.h"
#include "host/standalone/dxf/text_codec.h"
#include "host/standalone/standalone_store.h"
#include "search/presence_search.h"

namespace korvel {
namespace {

const std::string& drawing_bytes(std::int64_t entities) {
  static std::map<std::int64_t, std::string> made;
  std::string& bytes = made[entities];
  if (bytes.empty()) {
    bench::DrawingSize size;
    size.entities = static_cast<std::uint64_t>(entities);
    bench::make_drawing(size, [&bytes](std::string_view piece) { bytes += piece; });
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

void open_from_memory(benchmark::State& state) {
  const std::string& bytes = drawing_bytes(state.range(0));
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(Drawing::read(bytes, "bench.dxf"));
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes.size()) * state.iterations());
  count_entities(state);
}

void write_unchanged(benchmark::State& state) {
  const auto drawing = drawing_of(state.range(0));
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(drawing->to_bytes());
  count_entities(state);
}

// Every record is written anew: the first column is renamed and a column added.
void write_all_changed(benchmark::State& state) {
  const auto drawing = drawing_of(state.range(0));
  (void)StandaloneStore(*drawing).add_column(L"Roads", {L"NEW", ODType::Real, 0.5}, 0);
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(drawing->to_bytes());
  count_entities(state);
}

template <Presence criterion>
void presence_search(benchmark::State& state) {
  const auto drawing = drawing_of(state.range(0));
  StandaloneStore store(*drawing);
  const EntityList entities = drawing->entities(Space::Model);
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(find_by_presence(criterion, store, entities));
  }
  count_entities(state);
}

void list_model_space(benchmark::State& state) {
  const auto drawing = drawing_of(state.range(0));
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(drawing->entities(Space::Model));
  count_entities(state);
}

// A pass that reads one column of every record of a table.
void read_one_column(benchmark::State& state) {
  const auto drawing = drawing_of(state.range(0));
  StandaloneStore store(*drawing);
  const EntityList entities = drawing->entities(Space::Model);
  const std::unique_ptr<RecordIterator> records = store.records();
  for ([[maybe_unused]] auto _ : state) {
    std::int64_t lanes = 0;
    for (const EntityId id : entities) {
      for (records->open(id, OpenMode::Read); !records->done(); records->next()) {
        if (records->table_name() == L"Roads") lanes += std::get<std::int32_t>(records->value(0));
      }
    }
    benchmark::DoNotOptimize(lanes);
  }
  count_entities(state);
}

void attach_to_all(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    const auto drawing = drawing_of(state.range(0));
    StandaloneStore store(*drawing);
    const ODRecord record = default_record(*store.table(L"Roads"));
    const EntityList entities = drawing->entities(Space::Model);
    drawing->journal().open();
    state.ResumeTiming();
    for (const EntityId id : entities)
      benchmark::DoNotOptimize(store.attach(id, record));
    state.PauseTiming();
    drawing->journal().close();
    state.ResumeTiming();
  }
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
    ScriptedLines lines({}, nullptr, ScriptedLines::Comments::AreLines);
    TerminalHost host(drawing_of(state.range(0)), lines, {});
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

void decode_text(benchmark::State& state) {
  const bool utf8 = state.range(0) != 0;
  const dxf::TextCodec codec({.code_page = "ANSI_1252", .utf8 = utf8, .caret_escapes = true});
  const std::string text = utf8 ? "Stra\xC3\x9F"
                                  "e des 17. Juni, \xE4\xB8\xAD\xE6\x96\x87 ^J"
                                : "Stra\xDF"
                                  "e des 17. Juni, \\U+4E2D\\U+6587 ^J";
  std::wstring decoded;
  for ([[maybe_unused]] auto _ : state) {
    codec.decode(text, decoded);
    benchmark::DoNotOptimize(decoded.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(text.size()) * state.iterations());
}

void sizes(benchmark::internal::Benchmark* of) {
  of->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(open_from_memory)->Apply(sizes);
BENCHMARK(write_unchanged)->Apply(sizes);
BENCHMARK(write_all_changed)->Apply(sizes);
BENCHMARK(list_model_space)->Apply(sizes);
BENCHMARK_TEMPLATE(presence_search, Presence::None)->Apply(sizes);
BENCHMARK_TEMPLATE(presence_search, Presence::Any)->Apply(sizes);
BENCHMARK_TEMPLATE(presence_search, Presence::Multiple)->Apply(sizes);
BENCHMARK_TEMPLATE(presence_search, Presence::Duplicated)->Apply(sizes);
BENCHMARK(read_one_column)->Apply(sizes);
BENCHMARK(attach_to_all)->Apply(sizes);
BENCHMARK(read_shapes)->Apply(sizes);
BENCHMARK(convert_all_to_3d)->Apply(sizes);
BENCHMARK(decode_text)->ArgName("utf8")->Arg(0)->Arg(1);

}  // namespace
}  // namespace korvel
