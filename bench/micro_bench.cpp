// What a pass over a large drawing costs: opening, writing, searching, decoding. The argument is
// the number of entities; they have 1.5 records on the average.
#include <benchmark/benchmark.h>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "attach/duplicate_removal.h"
#include "attributes/attribute_transfer.h"
#include "bench/drawing_maker.h"
#include "bench/silent_host.h"
#include "exchange/csv_export.h"
#include "exchange/csv_plan.h"
#include "exchange/explication.h"
#include "exchange/mif_export.h"
#include "exchange/translation.h"
#include "frame/command_frame.h"
#include "frame/od_store.h"
#include "geometry/polyline_conversion.h"
#include "host/standalone/drawing.h"
#include "host/standalone/dxf/text_codec.h"
#include "host/standalone/standalone_store.h"
#include "palettes/record_view.h"
#include "search/presence_search.h"
#include "search/statistics.h"
#include "search/table_search.h"
#include "search/value_pattern.h"
#include "search/value_search.h"
#include "values/coordinates.h"
#include "values/identifiers.h"
#include "values/measure_values.h"
#include "values/replace_values.h"
#include "values/sums.h"
#include "values/text_values.h"

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

// One criterion on a field of Roads, over entities of which most have a record of it.
void value_search(benchmark::State& state, const wchar_t* field, const wchar_t* pattern,
                  bool extended) {
  const auto drawing = drawing_of(state.range(0));
  StandaloneStore store(*drawing);
  const EntityList entities = drawing->entities(Space::Model);
  const ValueSearch search{{L"Roads"}, {{field, pattern}}, extended};
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(find_by_values(search, store, entities));
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
  const auto drawing = drawing_of(state.range(0));
  StandaloneStore store(*drawing);
  const EntityList entities = drawing->entities(Space::Model);
  const TableSearch search{TableCriterion::Carries, user_tables(store), true};
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(find_by_tables(search, store, entities));
  }
  count_entities(state);
}

void statistics(benchmark::State& state) {
  const auto drawing = drawing_of(state.range(0));
  StandaloneStore store(*drawing);
  const EntityList entities = drawing->entities(Space::Model);
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(count_object_data(store, entities));
  }
  count_entities(state);
}

// What a query by place asks of every entity.
void ask_extents(const Drawing& drawing, const EntityList& entities) {
  for (const EntityId id : entities)
    benchmark::DoNotOptimize(drawing.extents_of(id));
}

void extents_first(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    const auto drawing = drawing_of(state.range(0));
    const EntityList entities = drawing->entities(Space::Model);
    state.ResumeTiming();
    ask_extents(*drawing, entities);
  }
  count_entities(state);
}

void extents_again(benchmark::State& state) {
  const auto drawing = drawing_of(state.range(0));
  const EntityList entities = drawing->entities(Space::Model);
  ask_extents(*drawing, entities);
  for ([[maybe_unused]] auto _ : state)
    ask_extents(*drawing, entities);
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

// The drawing has no duplicates, so that every pass meets the same records.
void look_for_duplicates_to_remove(benchmark::State& state) {
  const auto drawing = drawing_of(state.range(0));
  StandaloneStore store(*drawing);
  const EntityList entities = drawing->entities(Space::Model);
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(remove_duplicates(store, entities, DuplicateMode::First));
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
    bench::SilentHost host(drawing_of(state.range(0)));
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

void number_all(benchmark::State& state, const wchar_t* field) {
  const auto drawing = drawing_of(state.range(0));
  StandaloneStore store(*drawing);
  const EntityList entities = drawing->entities(Space::Model);
  const Numbering numbering{L"Roads", field, L"R-", L"", 1};
  for ([[maybe_unused]] auto _ : state) {
    EntityList once = entities;
    drop_repeated(once);
    benchmark::DoNotOptimize(number_records(store, once, numbering));
  }
  count_entities(state);
}

void propose_first_number(benchmark::State& state) {
  const auto drawing = drawing_of(state.range(0));
  StandaloneStore store(*drawing);
  const EntityList entities = drawing->entities(Space::Model);
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(proposed_first(store, entities, L"Roads", L"NAME"));
  count_entities(state);
}

// Beside read_shapes and extents_again.
void set_all_coordinates(benchmark::State& state) {
  bench::SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  ask_extents(host.drawing(), entities);
  const CoordinateRequest request{L"Roads", {L"WIDTH", L"NAME", L""}, {}, 4, 4};
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(set_coordinates(host, store, entities, request).completed);
  count_entities(state);
}

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

// A pass that writes one value of every record of a table, beside which setting values stands.
void write_one_column(benchmark::State& state) {
  set_values(state, [](ODStore& store, const EntityList& entities) {
    std::int64_t written = 0;
    const std::unique_ptr<RecordIterator> records = store.records_of(L"Roads");
    for (const EntityId id : entities) {
      for (records->open(id, OpenMode::Write); !records->done(); records->next())
        written += records->set_value(1, 0.5) ? 1 : 0;
    }
    return written;
  });
}

void replace(benchmark::State& state, const wchar_t* field, const wchar_t* search,
             const wchar_t* replacement) {
  const ReplaceRequest request{{L"Roads"}, {field}, search, replacement};
  set_values(state, [&request](ODStore& store, const EntityList& entities) {
    return replace_in_records(request, store, entities);
  });
}

// From LANES into WIDTH.
void add_columns(benchmark::State& state) {
  set_values(state, [](ODStore& store, const EntityList& entities) {
    return add_within_records(L"Roads", 0, 1, store, entities).written;
  });
}

void set_all_measures(benchmark::State& state) {
  bench::SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  for ([[maybe_unused]] auto _ : state) {
    host.lock();
    benchmark::DoNotOptimize(
        set_measures(store, host, entities, {L"Roads", L"WIDTH", L"NAME", L"", 4}));
    host.unlock();
  }
  count_entities(state);
}

// One text for ten entities, each at the middle of an entity's extents.
void add_texts(Drawing& drawing, const EntityList& entities) {
  for (std::size_t i = 0; i < entities.size(); i += 10) {
    const std::optional<Extents> box = drawing.extents_of(entities[i]);
    if (!box) continue;
    TextShape text;
    text.position = {(box->min.x + box->max.x) / 2, (box->min.y + box->max.y) / 2, 0};
    text.text = L"Text " + std::to_wstring(i);
    text.height = 1;
    (void)drawing.add_entity({text}, {});
  }
}

void set_all_texts(benchmark::State& state) {
  bench::SilentHost host(drawing_of(state.range(0)));
  StandaloneStore store(host.drawing());
  const EntityList entities = host.model_space();
  host.lock();
  add_texts(host.drawing(), entities);
  host.unlock();
  for ([[maybe_unused]] auto _ : state) {
    host.lock();
    benchmark::DoNotOptimize(set_texts(store, host, entities, {L"Roads", L"NAME", 1}));
    host.unlock();
  }
  count_entities(state);
}

// What a transfer does to a drawing whose every fourth entity is a block reference, in which nobody
// has changed anything yet.
template <class Transfer>
void transfer_attributes(benchmark::State& state, const Transfer& transfer) {
  bench::DrawingSize size;
  size.entities = static_cast<std::uint64_t>(state.range(0));
  size.references = true;
  std::string bytes;
  bench::make_drawing(size, [&bytes](std::string_view piece) { bytes += piece; });
  const AttributeMapping mapping{{L"SIGN",
                                  {{L"NAME", L"Roads", L"NAME"},
                                   {L"LANES", L"Roads", L"LANES"},
                                   {L"WIDTH", L"Roads", L"WIDTH"}}}};
  for ([[maybe_unused]] auto _ : state) {
    state.PauseTiming();
    bench::SilentHost host(std::move(*Drawing::read(bytes, "bench.dxf")));
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

// By table, or by a field of which there are thousands of values.
void explication(benchmark::State& state, std::optional<std::wstring> type_field) {
  bench::SilentHost host(drawing_of(state.range(0)));
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
  bench::SilentHost host(drawing_of(1));
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

  bench::SilentHost host;
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

// What the table editor reads for its rows; read_one_column is the bare pass.
void arrange_rows(benchmark::State& state, const RecordArrangement& arrangement) {
  bench::SilentHost host(drawing_of(state.range(0)));
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
BENCHMARK_CAPTURE(value_search, contained, L"NAME", L"street", false)->Apply(sizes);
BENCHMARK_CAPTURE(value_search, wildcard, L"NAME", L"a*e*1*", true)->Apply(sizes);
BENCHMARK_CAPTURE(value_search, greater_real, L"WIDTH", L">5", true)->Apply(sizes);
BENCHMARK_CAPTURE(value_search, contained_in_real, L"WIDTH", L"5.0", false)->Apply(sizes);
BENCHMARK_CAPTURE(value_pattern, contained, L"street", false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(value_pattern, wildcard, L"*north*9*9", true)->Unit(benchmark::kMillisecond);
BENCHMARK(table_search)->Apply(sizes);
BENCHMARK(statistics)->Apply(sizes);
BENCHMARK(extents_first)->Apply(sizes);
BENCHMARK(extents_again)->Apply(sizes);
BENCHMARK(read_one_column)->Apply(sizes);
BENCHMARK(attach_to_all)->Apply(sizes);
BENCHMARK(look_for_duplicates_to_remove)->Apply(sizes);
BENCHMARK_CAPTURE(replace, any_value, L"WIDTH", L"*", L"0.5")->Apply(sizes);
BENCHMARK_CAPTURE(replace, smaller_real, L"WIDTH", L">7000", L"7000")->Apply(sizes);
BENCHMARK_CAPTURE(replace, in_real, L"WIDTH", L"5", L"6")->Apply(sizes);
BENCHMARK_CAPTURE(replace, in_text, L"NAME", L"street", L"St.")->Apply(sizes);
BENCHMARK_CAPTURE(replace, wildcard, L"NAME", L"a*e", L"-")->Apply(sizes);
BENCHMARK(add_columns)->Apply(sizes);
BENCHMARK(read_shapes)->Apply(sizes);
BENCHMARK(convert_all_to_3d)->Apply(sizes);
BENCHMARK(write_one_column)->Apply(sizes);
BENCHMARK_CAPTURE(number_all, integers, L"LANES")->Apply(sizes);
BENCHMARK_CAPTURE(number_all, texts, L"NAME")->Apply(sizes);
BENCHMARK(propose_first_number)->Apply(sizes);
BENCHMARK(set_all_coordinates)->Apply(sizes);
BENCHMARK(set_all_measures)->Apply(sizes);
BENCHMARK(set_all_texts)->Apply(sizes);
BENCHMARK(read_attributes)->Apply(sizes);
BENCHMARK_CAPTURE(transfer_attributes, load, load_attributes)->Apply(sizes);
BENCHMARK_CAPTURE(transfer_attributes, store, store_attributes)->Apply(sizes);
BENCHMARK_CAPTURE(explication, by_table, std::nullopt)->Apply(sizes);
BENCHMARK_CAPTURE(explication, by_field, L"NAME")->Apply(sizes);
BENCHMARK(translate_all_values)->Apply(sizes);
BENCHMARK(write_table_as_csv)->Apply(sizes);
BENCHMARK(compare_csv_with_table)->Apply(sizes);
BENCHMARK(write_table_as_mif)->Apply(sizes);
BENCHMARK_CAPTURE(arrange_rows, as_drawn, RecordArrangement{})->Apply(sizes);
BENCHMARK_CAPTURE(arrange_rows, filtered, filtered_rows())->Apply(sizes);
BENCHMARK_CAPTURE(arrange_rows, sorted, sorted_rows())->Apply(sizes);
BENCHMARK_CAPTURE(arrange_rows, grouped, grouped_rows())->Apply(sizes);
BENCHMARK(decode_text)->ArgName("utf8")->Arg(0)->Arg(1);

}  // namespace
}  // namespace korvel
