// Texts in records, where the console cannot draw what they need: multiline texts, layers, shapes.
#include "values/text_values.h"

#include <numbers>
#include <utility>

#include "tests/host/failing_host.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

class TextValues : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(store_.define_table({L"T", {{L"TEXT", ODType::Character, std::wstring(L"-")}}}),
              TableChange::Done);
  }
  EntityId draw(Shape shape, const wchar_t* layer = L"0") {
    EntityProperties properties;
    properties.layer = layer;
    host_.lock();
    const auto id = host_.drawing().add_entity({std::move(shape)}, properties);
    host_.unlock();
    EXPECT_TRUE(id.has_value());
    return id.value_or(EntityId{});
  }
  EntityId draw_with_record(Shape shape) {
    const EntityId id = draw(std::move(shape));
    EXPECT_TRUE(store_.attach(id, default_record(*store_.table(L"T"))));
    return id;
  }
  EntityId write(Point3 position, const wchar_t* text, const wchar_t* layer = L"0") {
    TextShape shape;
    shape.position = position;
    shape.text = text;
    shape.height = 1;
    return draw(shape, layer);
  }
  [[nodiscard]] std::wstring value(EntityId entity) {
    const std::unique_ptr<RecordIterator> records = store_.records();
    if (!records->open(entity, OpenMode::Read) || records->done()) return L"no record";
    return std::wstring(std::get<std::wstring_view>(records->value(0)));
  }
  void expect_counts(const TextCounts& counts, const std::vector<std::size_t>& expected) {
    EXPECT_EQ(
        (std::vector{counts.completed, counts.entities, counts.out_of_range, counts.multiple}),
        expected);
  }

  ScriptedHost host_{
      make_drawing({{L"0"}, {L"LOCKED", false, true}, {L"OFF", false, false, true}}, {{L"0"}})};
  StandaloneStore store_{host_.drawing()};
};

const Vector3 up{0, 0, 1};

PolylineShape bulged(Point3 from, Point3 to, bool closed) {
  return {PolylineKind::Light, {{from, 1}, {to, 1}}, up, closed};
}

TEST_F(TextValues, AreTheOneTextInReach) {
  write({0, 0, 50}, L"%%cheight does not count");
  write({100, 0, 0}, L"first");
  write({100, 1, 0}, L"second");
  write({200, 0, 0}, L"locked layers are only read", L"LOCKED");
  write({200, 0, 0}, L"off", L"OFF");
  write({300, 0, 0}, L"off", L"OFF");
  const EntityId round = draw_with_record(bulged({-5, 0, 0}, {5, 0, 0}, true));
  const EntityId crowded =
      draw_with_record(ArcShape{{100, 0, 0}, up, {1, 0, 0}, 5, 2 * std::numbers::pi});
  const EntityId locked = draw_with_record(bulged({195, 0, 0}, {205, 0, 0}, true));
  const EntityId empty = draw_with_record(bulged({295, 0, 0}, {305, 0, 0}, true));
  const EntityId bare = draw(bulged({-5, 0, 0}, {5, 0, 0}, true));
  const EntityId gone = draw_with_record(bulged({-5, 0, 0}, {5, 0, 0}, true));
  const Failures failures{.open = {gone}};
  FailingStore store(store_, failures);
  FailingHost host(host_, failures);

  expect_counts(
      set_texts(store, host, {round, crowded, locked, empty, bare, gone}, {L"T", L"TEXT", 0}),
      {2, 5, 1, 1});
  EXPECT_EQ(value(round), L"\u2300height does not count");
  EXPECT_EQ(value(locked), L"locked layers are only read");
  for (const EntityId id : {crowded, empty, gone})
    EXPECT_EQ(value(id), L"-");
  expect_counts(set_texts(store_, host_, {round}, {L"T", L"NO_FIELD", 0}), {0, 1, 0, 0});
}

TEST_F(TextValues, ReachAsFarAsTheToleranceFromTheOutline) {
  write({0, 7, 0}, L"near");
  const std::pair<Shape, double> cases[] = {
      // and its distance
      {LineShape{{-1, 0, 0}, {9, 0, 9}}, 7},
      {PointShape{{3, 3, 0}}, 5},
      {bulged({-5, 0, 0}, {5, 0, 0}, true), 2},
      {ArcShape{{0, 0, 0}, up, {1, 0, 0}, 10, std::numbers::pi}, 3},  // it has no inside
      {LineShape{{-1, 7, 0}, {9, 7, 9}}, 0},
  };
  for (const auto& [shape, distance] : cases) {
    const EntityId entity = draw_with_record(shape);
    const double rounding = 1e-4;
    if (distance > 0) {
      expect_counts(set_texts(store_, host_, {entity}, {L"T", L"TEXT", distance - rounding}),
                    {0, 1, 1, 0});
    }
    const double enough = distance > 0 ? distance + rounding : 0;
    expect_counts(set_texts(store_, host_, {entity}, {L"T", L"TEXT", enough}), {1, 1, 0, 0});
    EXPECT_EQ(value(entity), L"near");
  }
}

// Shows every point of the drawing as another shape.
class ReplacingHost final : public ForwardingHost {
 public:
  ReplacingHost(DrawingHost& host, Shape shape) : ForwardingHost(host), shape_(std::move(shape)) {}
  [[nodiscard]] std::optional<EntityGeometry> geometry_of(EntityId entity) const override {
    auto geometry = ForwardingHost::geometry_of(entity);
    if (geometry && std::holds_alternative<PointShape>(geometry->shape)) geometry->shape = shape_;
    return geometry;
  }

 private:
  Shape shape_;
};

TEST_F(TextValues, AreMultilineTextsWithoutTheirFormats) {
  const EntityId circle =
      draw_with_record(ArcShape{{0, 0, 0}, up, {1, 0, 0}, 5, 2 * std::numbers::pi});
  MtextShape text;
  text.text = L"{\\C1;Parcel}\\P%%c7";
  ReplacingHost host(host_, text);
  expect_counts(set_texts(store_, host, {circle}, {L"T", L"TEXT", 0}), {1, 1, 0, 0});
  EXPECT_EQ(value(circle), L"Parcel \u23007");
}

TEST_F(TextValues, LieWhereTheyAreAligned) {
  const EntityId circle =
      draw_with_record(ArcShape{{100, 0, 0}, up, {1, 0, 0}, 5, 2 * std::numbers::pi});
  TextShape text;
  text.text = L"centred";
  text.alignment = Point3{100, 0, 0};
  ReplacingHost host(host_, text);
  expect_counts(set_texts(store_, host, {circle}, {L"T", L"TEXT", 0}), {1, 1, 0, 0});
}

// Whatever its block shows: here there is none.
TEST_F(TextValues, ReachABlockReferenceAtItsInsertionPoint) {
  write({100, 3, 0}, L"tree");
  const EntityId tree = draw_with_record(PointShape{{7, 7, 7}});
  BlockReferenceShape reference;
  reference.position = {100, 0, 9};
  ReplacingHost host(host_, reference);
  expect_counts(set_texts(store_, host, {tree}, {L"T", L"TEXT", 2.9}), {0, 1, 1, 0});
  expect_counts(set_texts(store_, host, {tree}, {L"T", L"TEXT", 3}), {1, 1, 0, 0});
}

TEST_F(TextValues, OfATextAreThoseOfOthers) {
  const EntityId label = write({0, 0, 0}, L"label");
  ASSERT_TRUE(store_.attach(label, default_record(*store_.table(L"T"))));
  expect_counts(set_texts(store_, host_, {label}, {L"T", L"TEXT", 2}), {0, 1, 1, 0});
  write({0, -2, 0}, L"other");
  expect_counts(set_texts(store_, host_, {label}, {L"T", L"TEXT", 2}), {1, 1, 0, 0});
  EXPECT_EQ(value(label), L"other");
}

}  // namespace
}  // namespace korvel::test
