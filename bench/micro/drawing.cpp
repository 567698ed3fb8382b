// Opening, writing and listing a drawing.
#include <benchmark/benchmark.h>
#include <string>

#include "bench/micro/large_drawing.h"
#include "host/standalone/dxf/text_codec.h"

namespace korvel::bench {
namespace {

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

void list_model_space(benchmark::State& state) {
  const auto drawing = drawing_of(state.range(0));
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(drawing->entities(Space::Model));
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

BENCHMARK(open_from_memory)->Apply(sizes);
BENCHMARK(write_unchanged)->Apply(sizes);
BENCHMARK(write_all_changed)->Apply(sizes);
BENCHMARK(list_model_space)->Apply(sizes);
BENCHMARK(decode_text)->ArgName("utf8")->Arg(0)->Arg(1);

}  // namespace
}  // namespace korvel::bench
