// Alias files line by line, and what the phases of a translation do to tables, columns and values.
#include "exchange/translation.h"

#include <gtest/gtest.h>

#include "bench/silent_host.h"
#include "tests/host/failing_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

AliasLoad load(AliasFile kind, std::wstring text, AliasMaps& maps) {
  TextReading reading{TextReader(std::move(text)), std::nullopt};
  return load_aliases(reading, kind, maps);
}

TEST(AliasFiles, LinesOfTheRightNumberOfFieldsAreLoaded) {
  AliasMaps maps;
  const AliasLoad tables = load(AliasFile::Tables,
                                L"Roads\tStreets # as on the map\n\t\tA b\t\t\u3000 B \t\n"
                                L"one\n\n # nothing\nx\ty\tz\nRoads\tAgain\nroads\t#\nlast\tone",
                                maps);
  EXPECT_EQ(maps.tables,
            (Aliases{{L"Roads", L"Streets"}, {L"A b", L"\u3000 B"}, {L"last", L"one"}}));
  EXPECT_EQ(tables.loaded, 4u);
  EXPECT_EQ(tables.bad_lines, (std::vector<std::wstring>{L"one\n", L"\n", L" # nothing\n",
                                                         L"x\ty\tz\n", L"roads\t#\n"}));

  const AliasLoad fields =
      load(AliasFile::Fields, L"N\tNo\nT\tN\tNumber\nN\t2\nT\tN\t3\nT\tN\tM\tx\nN\n", maps);
  EXPECT_EQ(maps.fields, (Aliases{{L"N", L"No"}}));
  EXPECT_EQ(maps.table_fields, (AliasesByName{{L"T", {{L"N", L"Number"}}}}));
  EXPECT_EQ(fields.loaded, 4u);
  EXPECT_EQ(fields.bad_lines.size(), 2u);

  const AliasLoad values = load(
      AliasFile::Values,
      L"v\ta\nF\tv\tb\nT\tF\tv\tc\nv\t2\nF\tv\t2\nT\tF\tv\t2\nF\tw\td\n1\t2\t3\t4\t5\nv\n", maps);
  EXPECT_EQ(maps.values, (Aliases{{L"v", L"a"}}));
  EXPECT_EQ(maps.field_values, (AliasesByName{{L"F", {{L"v", L"b"}, {L"w", L"d"}}}}));
  EXPECT_EQ(maps.table_field_values.at(L"T"), (AliasesByName{{L"F", {{L"v", L"c"}}}}));
  EXPECT_EQ(values.loaded, 7u);
  EXPECT_EQ(values.bad_lines, (std::vector<std::wstring>{L"1\t2\t3\t4\t5\n", L"v\n"}));
}

TEST(AliasFiles, LeadBackToTheFirstOfSeveralNames) {
  AliasMaps maps;
  maps.tables = {{L"a", L"X"}, {L"b", L"X"}, {L"c", L"Y"}, {L"d", L"X"}};
  maps.table_fields = {{L"T", {{L"n", L"m"}, {L"k", L"m"}}}};
  maps.table_field_values = {{L"T", {{L"F", {{L"1", L"one"}}}}}};
  EXPECT_EQ(duplicate_aliases(maps.tables), (std::vector<std::wstring>{L"X", L"X"}));
  const AliasMaps back = inverted(maps);
  EXPECT_EQ(back.tables, (Aliases{{L"X", L"a"}, {L"Y", L"c"}}));
  EXPECT_EQ(back.table_fields, (AliasesByName{{L"T", {{L"m", L"k"}}}}));
  EXPECT_EQ(back.table_field_values.at(L"T"), (AliasesByName{{L"F", {{L"one", L"1"}}}}));
}

class Translation : public testing::Test {
 protected:
  Translation() : ids_(ids_of(host_.drawing(), 4)) {
    define(L"T");
    define(L"CNTR_U");
    attach(0, L"T", 5, L"five", 2.5);
    attach(0, L"T", 7, L"5", 0.1);
    attach(1, L"CNTR_U", 5, L"x", 5);
    attach(2, L"T", 5, L"five", 2.5);  // on a locked layer
    attach(3, L"T", 5, L"five", 2.5);
  }
  void define(const wchar_t* name) {
    ASSERT_EQ(store_.define_table({name,
                                   {{L"N", ODType::Integer, 0},
                                    {L"C", ODType::Character, std::wstring()},
                                    {L"R", ODType::Real, 0.0},
                                    {L"P", ODType::Point, Point3{}}}}),
              TableChange::Done);
  }
  void attach(std::size_t entity, const wchar_t* table, std::int32_t n, std::wstring c, double r) {
    const bool locked = entity == 2;
    const ODRecord record{table, {n, std::move(c), r, Point3{1, 2, 3}}};
    ASSERT_EQ(store_.attach(ids_[entity], record), !locked);
  }
  std::vector<ODRecord> records_of(std::size_t entity) {
    std::vector<ODRecord> found;
    const std::unique_ptr<RecordIterator> records = store_.records();
    for (records->open(ids_[entity], OpenMode::Read); !records->done(); records->next())
      records->read(found.emplace_back());
    return found;
  }
  std::vector<std::wstring> columns_of(const wchar_t* table) {
    std::vector<std::wstring> names;
    const ODTableDef definition = store_.table(table).value();
    for (const ODColumnDef& column : definition.columns)
      names.push_back(column.name);
    return names;
  }

  bench::SilentHost host_{make_drawing({{L"0"}, {L"locked", false, true, false}},
                                       {{L"0"}, {L"0"}, {L"locked"}, {L"0"}})};
  StandaloneStore store_{host_.drawing()};
  EntityList ids_;
};

TEST_F(Translation, ValuesTakeTheirOwnTextFirst) {
  AliasMaps maps;
  maps.values = {{L"5", L"50"},
                 {L"five", L"many"},
                 {L"0.1", L"1e999"},
                 {L"2.5", L" 3.25 m"},
                 {L"1.000000,2.000000,3.000000", L"nowhere"},
                 {L"x", L"x"}};
  maps.field_values = {{L"N", {{L"5", L"500"}, {L"7", L"007"}}}, {L"C", {{L"five", L"five"}}}};
  maps.table_field_values = {{L"T", {{L"N", {{L"5", L"5000 or so"}}}}},
                             {L"t", {{L"N", {{L"5", L"-1"}}}}}};
  Failures failures;
  failures.update = {ids_[3]};
  FailingStore store(store_, failures);
  // Written are both records of the first entity and the one of the second.
  EXPECT_EQ(translate_values(store, host_, ids_, maps), 3u);
  const Point3 point{1, 2, 3};
  EXPECT_EQ(records_of(0), (std::vector<ODRecord>{{L"T", {5000, L"many", 3.25, point}},
                                                  {L"T", {7, L"50", 0.1, point}}}));
  EXPECT_EQ(records_of(1), (std::vector<ODRecord>{{L"CNTR_U", {500, L"x", 5.0, point}}}));
  EXPECT_EQ(records_of(3), (std::vector<ODRecord>{{L"T", {5, L"five", 2.5, point}}}));

  maps = {};
  maps.values = {{L"1.000000,2.000000,3.000000", L"0,-1,2e1"}};
  EXPECT_EQ(translate_values(store_, host_, {ids_[0]}, maps), 2u);
  EXPECT_EQ(records_of(0)[1].values[3], ODValue(Point3{0, -1, 20}));
  EXPECT_EQ(translate_values(store_, host_, ids_, {}), 0u);
}

TEST_F(Translation, ColumnsTakeTheNameOfTheirTableFirst) {
  AliasMaps maps;
  maps.fields = {{L"N", L"NUMBER"}, {L"C", L"N"}, {L"R", L"REAL"}, {L"P", L"P"}};
  maps.table_fields = {{L"T", {{L"N", L"COUNT"}, {L"R", L"R"}, {L"P", L"NUMBER"}}},
                       {L"CNTR_U", {{L"R", L"C"}, {L"P", L""}}}};
  // In the order of tables and columns. C takes a name only because N has left it before, and R of
  // the second table none, because C has failed to leave it.
  maps.table_fields[L"CNTR_U"][L"C"] = L"P";
  using enum ColumnChange;
  EXPECT_EQ(translate_columns(store_, maps, host_),
            (std::vector{Done, Done, Done, Done, Done, DuplicateName, DuplicateName, Failed}));
  EXPECT_EQ(columns_of(L"T"), (std::vector<std::wstring>{L"COUNT", L"N", L"REAL", L"NUMBER"}));
  EXPECT_EQ(columns_of(L"CNTR_U"), (std::vector<std::wstring>{L"NUMBER", L"C", L"R", L"P"}));
}

TEST_F(Translation, TablesAreRenamedInTheOrderOfTheirNames) {
  translate_tables(store_, {{L"CNTR_U", L"T"}, {L"Nothing", L"Else"}, {L"T", L"V"}}, host_);
  EXPECT_EQ(store_.table_names(), (std::vector<std::wstring>{L"V", L"CNTR_U"}));
}

}  // namespace
}  // namespace korvel::test
