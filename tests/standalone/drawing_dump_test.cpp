// The text of a drawing: exact lines, and the same ones after saving.
#include "host/standalone/drawing_dump.h"

#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <numbers>
#include <string>
#include <vector>

#include "host/standalone/standalone_host.h"

namespace korvel {
namespace {

std::vector<std::wstring> lines_of(const Drawing& drawing) {
  std::vector<std::wstring> lines;
  dump(drawing, [&lines](std::wstring_view line) { lines.emplace_back(line); });
  return lines;
}

// The line without its handle, which the drawing chooses.
std::wstring line_of(const Drawing& drawing, EntityId id) {
  const std::wstring line = dump_line(drawing, id);
  return line.substr(line.find(L' ') + 1);
}

const ODTableDef roads{L"ROADS",
                       {{L"NAME", ODType::Character, std::wstring(L"no \"name\"")},
                        {L"WIDTH", ODType::Real, 3.5},
                        {L"LANES", ODType::Integer, std::int32_t{2}},
                        {L"START AT", ODType::Point, Point3{1, 2, 3}}}};

TEST(DrawingDump, WritesEveryShape) {
  const auto drawing = Drawing::blank();
  constexpr double pi = std::numbers::pi;
  TextShape text;
  text.position = {1, 2, 0};
  text.text = L"a\tb\\\"c\"";
  text.height = 2.5;
  text.rotation = pi / 2;
  const std::pair<Shape, std::wstring_view> cases[] = {
      {PointShape{{1.5, -2, 1e20}}, L"POINT layer=0 at 1.5,-2,1e+20"},
      {LineShape{{0, 0, 0}, {10, 0.1, 1e-7}}, L"LINE layer=0 from 0,0,0 to 10,0.1,1e-07"},
      {ArcShape{{1, 2, 3}, {0, 0, 1}, {1, 0, 0}, 5, 2 * pi},
       L"CIRCLE layer=0 center 1,2,3 radius 5"},
      {PolylineShape{PolylineKind::Light, {{{0, 0, 0}, 0.5}, {{4, 0, 0}, 0}}, {0, 0, 1}, true},
       L"LWPOLYLINE layer=0 closed vertices 0,0,0 bulge 0.5 4,0,0"},
      {PolylineShape{PolylineKind::ThreeD, {{{0, 0, 1}, 0}, {{4, 0, 2}, 0}}, {0, 0, 1}},
       L"POLYLINE layer=0 3d vertices 0,0,1 4,0,2"},
      {text, L"TEXT layer=0 at 1,2,0 height 2.5 rotation 90 text \"a\\tb\\\\\\\"c\\\"\""},
  };
  for (const auto& [shape, expected] : cases) {
    const auto id = drawing->add_entity({shape}, {});
    ASSERT_TRUE(id);
    EXPECT_EQ(line_of(*drawing, *id), expected);
  }
}

TEST(DrawingDump, WritesPropertiesAndRecords) {
  const auto drawing = Drawing::blank();
  StandaloneStore store(*drawing);
  ASSERT_EQ(store.define_table(roads), TableChange::Done);
  EntityProperties properties;
  properties.layer = L"NEW ROADS";
  properties.color = 1;
  properties.true_color = 0x0A0B0C;
  properties.linetype_scale = 0.5;
  const auto id = drawing->add_entity({PointShape{}}, properties);
  ASSERT_TRUE(id);
  ASSERT_TRUE(attach_default(store, *id, L"ROADS"));
  ASSERT_TRUE(store.attach(
      *id, {L"ROADS", {std::wstring(L"Main\nSt\r"), 4.0, std::int32_t{-1}, Point3{-0.5, 0, 0}}}));
  EXPECT_EQ(line_of(*drawing, *id),
            L"POINT layer=\"NEW ROADS\" color=1 truecolor=0A0B0C ltscale=0.5 at 0,0,0"
            L" | ROADS(NAME=\"no \\\"name\\\"\", WIDTH=3.5, LANES=2, \"START AT\"=1,2,3)"
            L" | ROADS(NAME=\"Main\\nSt\\r\", WIDTH=4.0, LANES=-1, \"START AT\"=-0.5,0,0)");
  EXPECT_THAT(lines_of(*drawing),
              testing::Contains(L"TABLE ROADS(NAME Character \"no \\\"name\\\"\", WIDTH Real 3.5, "
                                L"LANES Integer 2, \"START AT\" Point 1,2,3)"));
}

// Everything that happens to a drawing between opening and saving, in one go.
void change(Drawing& drawing) {
  StandaloneStore store(drawing);
  ASSERT_EQ(store.define_table(roads), TableChange::Done);
  ASSERT_EQ(store.rename_table(L"QUAKE", L"TREMOR"), TableChange::Done);
  ASSERT_EQ(store.rename_column(L"CITY", L"NAME", L"TOWN"), ColumnChange::Done);
  ASSERT_EQ(store.remove_column(L"COUNTRY", 0), ColumnChange::Done);
  ASSERT_EQ(store.delete_table(L"SURVEY"), TableChange::Done);
  const EntityList entities = drawing.entities(Space::Model);
  std::size_t attached = 0;
  for (std::size_t i = 0; i < entities.size(); i += 3) {
    attached += attach_default(store, entities[i], L"ROADS") ? 1 : 0;
  }
  ASSERT_GT(attached, 300U);
  ASSERT_TRUE(drawing.erase(entities[1]));
  ASSERT_TRUE(drawing.add_layer(L"Zwölf"));
  EntityProperties properties;
  properties.layer = L"Zwölf";
  const auto added = drawing.add_entity({LineShape{{0, 0, 0}, {1, 2, 3}}}, properties);
  ASSERT_TRUE(added);
  ASSERT_TRUE(attach_default(store, *added, L"AIRPORT"));
}

TEST(DrawingDump, SaysTheSameAfterSaving) {
  std::ifstream file(KORVEL_SOURCE_DIR "/samples/world.dxf", std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  auto drawing = Drawing::read(bytes, "world.dxf");
  ASSERT_TRUE(drawing) << drawing.reason();
  const std::vector<std::wstring> opened = lines_of(**drawing);
  EXPECT_GT(opened.size(), 1200U);
  change(**drawing);
  const std::vector<std::wstring> changed = lines_of(**drawing);
  EXPECT_NE(opened, changed);

  const auto again = Drawing::read((*drawing)->to_bytes(), "again.dxf");
  ASSERT_TRUE(again) << again.reason();
  const std::vector<std::wstring> read_back = lines_of(**again);
  ASSERT_EQ(read_back.size(), changed.size());
  for (std::size_t i = 0; i < changed.size(); ++i)
    EXPECT_EQ(read_back[i], changed[i]);
}

}  // namespace
}  // namespace korvel
