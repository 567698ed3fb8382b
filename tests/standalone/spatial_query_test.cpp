// Windows, crossings, fences and picks over drawings whose entities are known by a letter each.
#include "host/standalone/spatial_query.h"

#include <gtest/gtest.h>
#include <map>
#include <numbers>
#include <string>
#include <vector>

namespace korvel {
namespace {

using Points = std::vector<Point3>;

Points window(Point3 a, Point3 b) { return {a, {b.x, a.y}, b, {a.x, b.y}}; }

class SilentMeter final : public ProgressMeter {
 public:
  void start_progress(std::wstring_view, std::int64_t) override {}
  void move_progress(std::int64_t) override {}
  void end_progress() override {}
};

EntityList inside(const Drawing& drawing, const Points& polygon) {
  SilentMeter meter;
  return inside_polygon(drawing, polygon, meter);
}

EntityList crossing(const Drawing& drawing, const Points& polygon) {
  SilentMeter meter;
  return crossing_polygon(drawing, polygon, meter);
}

EntityList crossing_path(const Drawing& drawing, const Points& path) {
  SilentMeter meter;
  return crossing_fence(drawing, path, meter);
}

// A drawing and the letters of its entities.
class Plan {
 public:
  void add(char letter, Shape shape, std::wstring layer = L"0") {
    EntityProperties properties;
    properties.layer = std::move(layer);
    const auto id = drawing->add_entity({std::move(shape)}, properties);
    ASSERT_TRUE(id);
    letters[*id] = letter;
  }

  [[nodiscard]] std::string names(const EntityList& entities) const {
    std::string text;
    for (const EntityId id : entities)
      text += letters.at(id);
    return text;
  }

  [[nodiscard]] std::string nearest(Point3 at, double reach) const {
    const auto id = nearest_entity(*drawing, at, reach);
    return id ? std::string(1, letters.at(*id)) : std::string();
  }

  std::unique_ptr<Drawing> drawing = Drawing::blank();
  std::map<EntityId, char> letters;
};

Plan sample_plan() {
  Plan plan;
  plan.add('p', PointShape{{5, 5, 99}});
  plan.add('l', LineShape{{0, 0, 0}, {10, 10, 7}});
  plan.add('c', ArcShape{{50, 50, 0}, {0, 0, 1}, {1, 0, 0}, 10, 2 * std::numbers::pi});
  // A half circle below the straight line between its ends.
  plan.add('b', PolylineShape{PolylineKind::Light, {{{20, 0, 0}, 1}, {{30, 0, 0}, 0}}, {0, 0, 1}});
  TextShape text;
  text.position = {100, 100, 0};
  text.text = L"ABCD";
  text.height = 10;  // 28 wide
  plan.add('t', text);
  return plan;
}

TEST(SpatialQuery, WindowsTakeWhatLiesInsideAndCrossingsWhatTheyTouch) {
  const Plan plan = sample_plan();
  struct {
    const char* name;
    Points polygon;
    const char* inside;
    const char* crossing;
  } const cases[] = {
      {"window around both", window({-1, -1}, {11, 11}), "pl", "pl"},
      {"its outline belongs to the window", window({0, 0}, {10, 10}), "pl", "pl"},
      {"corners the other way", window({10, 10}, {0, 0}), "pl", "pl"},
      {"the line's end is outside", window({1, 1}, {11, 11}), "p", "pl"},
      {"in the middle of the circle", window({45, 45}, {55, 55}), "", ""},
      {"in the corner of the circle's extents", window({40, 40}, {42, 42}), "", ""},
      {"over the circle's edge", window({55, 45}, {65, 55}), "", "c"},
      {"on the arc of the bulge alone", window({24, -6}, {26, -4}), "", "b"},
      {"as large as the arc's extents", window({20, -5}, {30, 0}), "b", "b"},
      {"too small for the arc by little", window({20, -4.99}, {30, 0}), "", "b"},
      {"in the text's box", window({110, 103}, {111, 104}), "", "t"},
      {"a triangle beside the line", {{0, 2}, {12, 14}, {0, 14}}, "", ""},
      {"a triangle over half of the line", {{-1, -1}, {12, -1}, {-1, 9}}, "", "l"},
      {"fewer than three corners", {{0, 0}, {10, 10}}, "", ""},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(plan.names(inside(*plan.drawing, c.polygon)), c.inside) << c.name;
    EXPECT_EQ(plan.names(crossing(*plan.drawing, c.polygon)), c.crossing) << c.name;
  }
}

TEST(SpatialQuery, FencesTakeWhatTheirPathMeets) {
  const Plan plan = sample_plan();
  const std::pair<Points, const char*> cases[] = {
      {{{0, 10}, {10, 0}}, "pl"},  // through the point
      {{{0, 9}, {9, 0}}, "l"},     // beside it
      {{{25, 5}, {25, -1}}, ""},   // between the ends of the arc
      {{{45, 50}, {45, 51}}, ""},  // in the circle
      {{{25, 0}, {25, -9}}, "b"},
      {{{45, 50}, {100, 50}}, "c"},
      {{{110, 103}, {110, 104}}, "t"},
      {{{10, 10}}, "l"},
      {{}, ""},
  };
  for (const auto& [fence, expected] : cases) {
    EXPECT_EQ(plan.names(crossing_path(*plan.drawing, fence)), expected);
  }
}

TEST(SpatialQuery, ThePickTakesTheNearestWithinReach) {
  Plan plan = sample_plan();
  plan.add('x', LineShape{{0, 20, 0}, {10, 20, 0}});
  plan.add('y', LineShape{{0, 20, 0}, {10, 20, 0}});
  plan.add('u', LineShape{{100, 102, 0}, {128, 102, 0}});
  struct {
    const char* name;
    Point3 at;
    double reach;
    const char* expected;
  } const cases[] = {
      {"the newest of two alike", {5, 20.5}, 1, "y"},
      {"the line is nearer than the point", {5.5, 5.6}, 2, "l"},
      {"exactly at the reach", {61, 50}, 1, "c"},
      {"beyond it", {61.01, 50}, 1, ""},
      {"the middle of a circle is not the circle", {50, 50}, 5, ""},
      {"a text anywhere in its box", {120, 108}, 0.5, "t"},
      {"a line over a text goes first", {120, 102.4}, 0.5, "u"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(plan.nearest(c.at, c.reach), c.expected) << c.name;
}

TEST(SpatialQuery, FrozenAndOffLayersAreLeftOutAndLockedOnesAreNot) {
  Plan plan;
  const std::pair<const wchar_t*, bool Layer::*> layers[] = {
      {L"ICE", &Layer::frozen}, {L"DARK", &Layer::off}, {L"SHUT", &Layer::locked}};
  char letter = 'a';
  for (const auto& [name, state] : layers) {
    ASSERT_TRUE(plan.drawing->add_layer(name));
    plan.add(letter++, PointShape{{1, 1, 0}}, name);
    Layer layer;
    for (const Layer& known : plan.drawing->layers()) {
      if (known.name == name) layer = known;
    }
    layer.*state = true;
    ASSERT_TRUE(plan.drawing->change_layer(layer));
  }
  const Points around = window({0, 0}, {2, 2});
  EXPECT_EQ(plan.names(inside(*plan.drawing, around)), "c");
  EXPECT_EQ(plan.names(crossing(*plan.drawing, around)), "c");
  EXPECT_EQ(plan.names(crossing_path(*plan.drawing, window({0, 0}, {2, 2}))), "");
  EXPECT_EQ(plan.names(crossing_path(*plan.drawing, Points{{0, 0}, {2, 2}})), "c");
  EXPECT_EQ(plan.nearest({1, 1}, 1), "c");
}

// A block of one line from 0,0 to 2,1, placed at 10,10 twice as large; a point in paper space at
// the same place.
constexpr const char* drawing_with_block =
    "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n8\n0\n2\nSTROKE\n70\n0\n10\n0.0\n20\n0.0\n30\n0.0\n3\n"
    "STROKE\n0\nLINE\n8\n0\n10\n0.0\n20\n0.0\n11\n2.0\n21\n1.0\n0\nENDBLK\n8\n0\n0\nENDSEC\n"
    "0\nSECTION\n2\nENTITIES\n0\nINSERT\n8\n0\n2\nSTROKE\n10\n10.0\n20\n10.0\n41\n2.0\n42\n2.0\n"
    "0\nPOINT\n8\n0\n67\n1\n10\n11.0\n20\n11.0\n0\nENDSEC\n0\nEOF\n";

TEST(SpatialQuery, BlockReferencesCountByTheExtentsOfTheirContents) {
  const auto drawing = Drawing::read(drawing_with_block, "block.dxf");
  ASSERT_TRUE(drawing) << drawing.reason();
  const Drawing& plan = **drawing;
  EXPECT_EQ(inside(plan, window({10, 10}, {14, 12})).size(), 1U);
  EXPECT_EQ(inside(plan, window({10, 10}, {13.9, 12})).size(), 0U);
  EXPECT_EQ(crossing(plan, window({10.1, 11.8}, {10.2, 11.9})).size(), 1U);
  EXPECT_EQ(crossing(plan, window({9, 9}, {9.9, 9.9})).size(), 0U);
  EXPECT_EQ(crossing_path(plan, Points{{9, 11}, {15, 11}}).size(), 1U);
  EXPECT_TRUE(nearest_entity(plan, {13, 11}, 0.1));
  EXPECT_FALSE(nearest_entity(plan, {14.2, 11}, 0.1));
}

TEST(SpatialQuery, ArraysOfBlockReferencesReachToTheirLastCell) {
  std::string file = drawing_with_block;
  const std::string cells = "70\n3\n71\n2\n44\n5.0\n45\n7.0\n";
  file.insert(file.find("41\n2.0\n"), cells);
  const auto drawing = Drawing::read(file, "block.dxf");
  ASSERT_TRUE(drawing) << drawing.reason();
  const EntityId array = (*drawing)->entities(Space::Model).at(0);
  EXPECT_EQ((*drawing)->extents_of(array), (Extents{{10, 10, 0}, {24, 19, 0}}));
}

TEST(SpatialQuery, KnownExtentsFollowChangesUndoAndRedo) {
  const auto read = Drawing::read(drawing_with_block, "block.dxf");
  ASSERT_TRUE(read) << read.reason();
  Drawing& drawing = **read;
  const EntityId reference = drawing.entities(Space::Model).at(0);
  const EntityId stroke = drawing.entities(Space::Block).at(0);
  std::optional<EntityId> line;
  const auto known = [&] {  // R: the reference, B: the line in its block, L: the line added
    std::string letters;
    if (drawing.extents_of(reference) == Extents{{10, 10, 0}, {14, 12, 0}}) letters += 'R';
    if (drawing.extents_of(stroke) == Extents{{0, 0, 0}, {2, 1, 0}}) letters += 'B';
    if (line && drawing.extents_of(*line) == Extents{{1, 1, 0}, {5, 9, 0}}) letters += 'L';
    return letters;
  };
  EXPECT_EQ(known(), "RB");
  line = drawing.add_entity({LineShape{{1, 1, 0}, {5, 9, 0}}}, {});
  EXPECT_EQ(known(), "RBL");
  ASSERT_TRUE(drawing.erase(stroke));
  EXPECT_EQ(known(), "L");
  ASSERT_TRUE(drawing.erase(*line));
  EXPECT_EQ(known(), "");
  for (const char* expected : {"L", "RBL", "RB"}) {
    ASSERT_TRUE(drawing.undo());
    EXPECT_EQ(known(), expected);
  }
  for (const char* expected : {"RBL", "L", ""}) {
    ASSERT_TRUE(drawing.redo());
    EXPECT_EQ(known(), expected);
  }
}

}  // namespace
}  // namespace korvel
