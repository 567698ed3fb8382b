// Measures in records, where the console cannot draw what they need: thickness, locked layers.
#include "values/measure_values.h"

#include <numbers>

#include "tests/host/failing_host.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

class MeasureValues : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(store_.define_table({L"T",
                                   {{L"LENGTH", ODType::Real, 0.5},
                                    {L"AREA", ODType::Integer, std::int32_t{-1}},
                                    {L"VOLUME", ODType::Character, std::wstring(L"none")},
                                    {L"AT", ODType::Point, Point3{}}}}),
              TableChange::Done);
  }
  EntityId draw(Shape shape, double thickness, const wchar_t* layer = L"0") {
    EntityProperties properties;
    properties.layer = layer;
    host_.lock();
    const auto id = host_.drawing().add_entity({std::move(shape), thickness}, properties);
    host_.unlock();
    EXPECT_TRUE(id.has_value());
    return id.value_or(EntityId{});
  }
  void attach(EntityId entity) {
    ASSERT_TRUE(store_.attach(entity, default_record(*store_.table(L"T"))));
  }
  // The values of the entity's record of this number, from 0.
  [[nodiscard]] std::vector<ODValue> values(EntityId entity, int number = 0) {
    ODRecord record;
    const std::unique_ptr<RecordIterator> records = store_.records();
    records->open(entity, OpenMode::Read);
    for (; number > 0; --number)
      records->next();
    records->read(record);
    return record.values;
  }

  ScriptedHost host_{make_drawing({{L"0"}, {L"LOCKED", false, true}}, {{L"0"}, {L"LOCKED"}})};
  StandaloneStore store_{host_.drawing()};
};

const ArcShape disc{{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, 10, 2 * std::numbers::pi};
const std::vector<ODValue> untouched = {0.5, -1, std::wstring(L"none"), Point3{}};

TEST_F(MeasureValues, GoIntoTheFirstRecordOfWhatHasThem) {
  const EntityId thick = draw(disc, -2);
  const EntityId flat = draw(disc, 0);
  const EntityId bare = draw(disc, 0);
  const EntityId gone = draw(disc, 0);
  const EntityId point = ids_of(host_.drawing(), 1).front();
  const EntityId locked = ids_of(host_.drawing(), 2).back();
  for (const EntityId id : {thick, flat, gone, point, thick})
    attach(id);
  const Failures failures{.open = {gone}};
  FailingStore store(store_, failures);
  FailingHost host(host_, failures);

  const MeasureCounts counts = set_measures(store, host, {thick, flat, bare, gone, point, locked},
                                            {L"T", L"LENGTH", L"AREA", L"VOLUME", 3});
  EXPECT_EQ(counts.lengths, 2U);
  EXPECT_EQ(counts.areas, 2U);
  EXPECT_EQ(counts.volumes, 1U);
  EXPECT_EQ(counts.entities, 5U);
  EXPECT_EQ(values(thick), (std::vector<ODValue>{62.832, 314, std::wstring(L"628.319"), Point3{}}));
  EXPECT_EQ(values(thick, 1), untouched);
  EXPECT_EQ(values(flat), (std::vector<ODValue>{62.832, 314, std::wstring(L"none"), Point3{}}));
  EXPECT_EQ(values(point), untouched);
  EXPECT_EQ(values(gone), untouched);
}

TEST_F(MeasureValues, OfUnfitOrMissingColumnsAreNotWritten) {
  const EntityId entity = draw(disc, 1);
  attach(entity);
  const std::pair<MeasureColumns, std::size_t> cases[] = {
      {{L"T", L"AT", L"LENGTH", L"", 1}, 1},  // a number is no point; the area alone
      {{L"T", L"length", L"", L"VOLUM", 1}, 0},
      {{L"NO_TABLE", L"LENGTH", L"", L"", 1}, 0},
  };
  for (const auto& [columns, written] : cases) {
    const MeasureCounts counts = set_measures(store_, host_, {entity}, columns);
    EXPECT_EQ(counts.lengths + counts.areas + counts.volumes, written);
    EXPECT_EQ(counts.entities, 1U);
  }
  EXPECT_EQ(values(entity)[0], ODValue{314.2});
}

}  // namespace
}  // namespace korvel::test
