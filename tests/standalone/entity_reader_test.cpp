// What entities say, read from their groups: places in world coordinates, outlines, texts,
// properties.
#include "host/standalone/entity_reader.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

#include "geometry/extents.h"
#include "geometry/measures.h"

namespace korvel {
namespace {

constexpr double pi = std::numbers::pi;

const dxf::TextCodec& codec() {
  static const dxf::TextCodec utf8({.code_page = "ANSI_1252", .utf8 = true});
  return utf8;
}

// "0 LINE|8 0|..." as the lines of an ASCII file.
std::string entity(std::string_view groups) {
  std::string bytes;
  while (!groups.empty()) {
    const std::string_view group = groups.substr(0, groups.find('|'));
    const std::size_t blank = group.find(' ');
    bytes.append(group.substr(0, blank)).append("\n");
    bytes.append(group.substr(blank + 1)).append("\n");
    groups.remove_prefix(std::min(groups.size(), group.size() + 1));
  }
  return bytes;
}

EntityGeometry geometry(std::string_view groups) {
  const std::string bytes = entity(groups);
  return read_geometry({bytes, dxf::Framing::Ascii}, codec());
}

EntityGeometry picture(std::string_view groups) {
  const std::string bytes = entity(groups);
  return read_picture({bytes, dxf::Framing::Ascii}, codec());
}

template <class Kind>
Kind shape(std::string_view groups) {
  const EntityGeometry read = geometry(groups);
  EXPECT_TRUE(std::holds_alternative<Kind>(read.shape)) << groups;
  return std::holds_alternative<Kind>(read.shape) ? std::get<Kind>(read.shape) : Kind{};
}

std::vector<Point3> positions(const PolylineShape& line) {
  std::vector<Point3> points;
  for (const Vertex& vertex : line.vertices)
    points.push_back(vertex.point);
  return points;
}

// The places that say where a shape is.
std::vector<Point3> places(const Shape& any) {
  if (const auto* point = std::get_if<PointShape>(&any)) return {point->position};
  if (const auto* line = std::get_if<LineShape>(&any)) return {line->start, line->end};
  if (const auto* arc = std::get_if<ArcShape>(&any)) return {arc->center};
  if (const auto* line = std::get_if<PolylineShape>(&any)) return positions(*line);
  if (const auto* line = std::get_if<MlineShape>(&any)) return line->vertices;
  if (const auto* face = std::get_if<FaceShape>(&any)) return face->corners;
  if (const auto* text = std::get_if<TextShape>(&any)) return {text->position};
  if (const auto* text = std::get_if<MtextShape>(&any)) return {text->position};
  if (const auto* block = std::get_if<BlockReferenceShape>(&any)) return {block->position};
  return {};
}

void expect_near(const std::vector<Point3>& read, const std::vector<Point3>& expected) {
  ASSERT_EQ(read.size(), expected.size());
  for (std::size_t i = 0; i < read.size(); ++i) {
    EXPECT_NEAR(read[i].x, expected[i].x, 1e-12) << "x of point " << i;
    EXPECT_NEAR(read[i].y, expected[i].y, 1e-12) << "y of point " << i;
    EXPECT_NEAR(read[i].z, expected[i].z, 1e-12) << "z of point " << i;
  }
}

TEST(EntityReader, PlacesEveryTypeInTheWorld) {
  struct {
    const char* name;
    const char* groups;
    std::vector<Point3> expected;
  } const cases[] = {
      {"point", "0 POINT|8 0|10 1|20 2|30 3", {{1, 2, 3}}},
      {"line in world coordinates",
       "0 LINE|10 1|20 2|30 3|11 4|21 5|31 6|210 0|220 0|230 -1",
       {{1, 2, 3}, {4, 5, 6}}},
      {"damaged numbers count as 0",
       "0 LINE|10 nan|20 |30 1.#QNAN|11 1e999|21 x|31 6",
       {{0, 0, 0}, {0, 0, 6}}},
      {"circle seen from below", "0 CIRCLE|10 1|20 2|30 3|40 9|210 0|220 0|230 -1", {{-1, 2, -3}}},
      {"text on a wall",
       "0 TEXT|10 1|20 2|30 3|11 7|21 7|31 7|40 1|210 1|220 0|230 0|1 x",
       {{3, 1, 2}}},
      {"normal of any length", "0 TEXT|10 1|20 2|30 3|210 0|220 -5|230 0", {{1, -3, 2}}},
      {"normal without direction", "0 TEXT|10 1|20 2|30 3|210 0|220 0|230 0", {{1, 2, 3}}},
      {"lightweight polyline with elevation",
       "0 LWPOLYLINE|90 9|70 0|38 5|10 1|20 2|42 1|10 3|20 4",
       {{1, 2, 5}, {3, 4, 5}}},
      {"old polyline: its elevation counts, not its vertices'",
       "0 POLYLINE|10 0|20 0|30 5|70 0|0 VERTEX|10 1|20 2|30 77|0 VERTEX|10 3|20 4|30 0|0 SEQEND",
       {{1, 2, 5}, {3, 4, 5}}},
      {"old polyline seen from below",
       "0 POLYLINE|30 5|210 0|220 0|230 -1|0 VERTEX|10 1|20 2|0 SEQEND",
       {{-1, 2, -5}}},
      {"control points of a fitted polyline are not on it",
       "0 POLYLINE|70 4|0 VERTEX|10 9|20 9|70 16|0 VERTEX|10 1|20 2|70 8|0 SEQEND",
       {{1, 2, 0}}},
      {"3D polyline ignores the normal",
       "0 POLYLINE|30 9|70 8|230 -1|0 VERTEX|10 1|20 2|30 3|70 32|42 1|0 SEQEND",
       {{1, 2, 3}}},
      {"polyface mesh without its face records",
       "0 POLYLINE|70 64|0 VERTEX|10 1|20 2|30 3|70 192|0 VERTEX|10 0|20 0|70 128|71 1|0 SEQEND",
       {{1, 2, 3}}},
      {"leader",
       "0 LEADER|100 AcDbLeader|76 2|10 1|20 2|30 3|10 4|20 5|30 6|211 1",
       {{1, 2, 3}, {4, 5, 6}}},
      {"multiline: start point and directions are no vertices",
       "0 MLINE|10 1|20 2|30 3|11 1|21 2|31 3|12 8|22 8|13 7|11 4|21 5|31 6",
       {{1, 2, 3}, {4, 5, 6}}},
      {"solid in running order",
       "0 SOLID|10 0|20 0|11 1|21 0|12 0|22 1|13 1|23 1",
       {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}},
      {"triangle of a solid",
       "0 SOLID|10 0|20 0|11 1|21 0|12 0|22 1|13 0|23 1",
       {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}},
      {"3D face without a fourth corner",
       "0 3DFACE|10 0|20 0|30 1|11 1|21 0|31 2|12 0|22 1|32 3",
       {{0, 0, 1}, {1, 0, 2}, {0, 1, 3}}},
      {"dimension: its block is drawn in the world",
       "0 DIMENSION|2 *D3|10 5|20 5|30 5|70 32",
       {{0, 0, 0}}},
      {"ray has no shape", "0 RAY|10 1|20 2|11 1|21 0", {}},
      {"groups of other applications and XDATA are not read",
       "0 POINT|5 2A|102 {OTHER|10 9|102 }|330 1F|100 AcDbEntity|100 AcDbPoint|10 1|20 2|1001 A|"
       "1010 7|10 8",
       {{1, 2, 0}}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    expect_near(places(picture(test.groups).shape), test.expected);
  }
}

TEST(EntityReader, OnlyJustifiedTextHasAnAlignmentPoint) {
  const std::string text = "10 1|20 2|11 5|21 6|31 7|210 0|220 0|230 -1";
  EXPECT_EQ(shape<TextShape>("0 TEXT|72 1|" + text).alignment, (Point3{-5, 6, -7}));
  EXPECT_EQ(shape<TextShape>("0 TEXT|73 2|" + text).alignment, (Point3{-5, 6, -7}));
  EXPECT_EQ(shape<TextShape>("0 ATTDEF|74 2|" + text).alignment, (Point3{-5, 6, -7}));
  EXPECT_FALSE(shape<TextShape>("0 TEXT|72 0|73 0|" + text).alignment);
  EXPECT_FALSE(shape<TextShape>("0 ATTDEF|73 5|" + text).alignment);
  EXPECT_FALSE(shape<TextShape>("0 TEXT|72 1|10 1|20 2").alignment);
}

TEST(EntityReader, WhatIsNoCurveOrAreaHasAPictureAlone) {
  for (const char* groups : {"0 DIMENSION|2 *D3|10 5|70 32", "0 LEADER|10 1|20 2|10 3|20 4",
                             "0 POLYLINE|70 17|0 VERTEX|70 64|10 1|20 2|0 SEQEND",
                             "0 POLYLINE|70 64|0 VERTEX|70 192|10 1|20 2|0 SEQEND"}) {
    EXPECT_TRUE(std::holds_alternative<std::monostate>(geometry(groups).shape)) << groups;
    EXPECT_FALSE(places(picture(groups).shape).empty()) << groups;
  }
}

TEST(EntityReader, PolylineClosesByItsFlagAlone) {
  EXPECT_TRUE(shape<PolylineShape>("0 LWPOLYLINE|70 27265|10 0|20 0").closed);
  EXPECT_FALSE(shape<PolylineShape>("0 LWPOLYLINE|70 128|10 0|20 0").closed);
  EXPECT_TRUE(shape<PolylineShape>("0 POLYLINE|70 9|0 VERTEX|10 0|20 0|0 SEQEND").closed);
  EXPECT_TRUE(shape<MlineShape>("0 MLINE|70 0|71 3|11 0|21 0|31 0").closed);
  EXPECT_FALSE(shape<MlineShape>("0 MLINE|70 2|71 1|11 0|21 0|31 0").closed);
}

TEST(EntityReader, BulgesStayWithTheirVertices) {
  const auto light =
      shape<PolylineShape>("0 LWPOLYLINE|39 2|10 0|20 0|10 1|20 0|42 -0.5|10 2|20 0");
  const auto old = shape<PolylineShape>(
      "0 POLYLINE|70 0|0 VERTEX|10 0|20 0|0 VERTEX|10 1|20 0|42 -0.5|0 VERTEX|10 2|20 0|0 SEQEND");
  for (const PolylineShape& line : {light, old}) {
    ASSERT_EQ(line.vertices.size(), 3U);
    EXPECT_EQ(line.vertices[0].bulge, 0);
    EXPECT_EQ(line.vertices[1].bulge, -0.5);
    EXPECT_EQ(line.vertices[2].bulge, 0);
  }
  EXPECT_EQ(light.kind, PolylineKind::Light);
  EXPECT_EQ(old.kind, PolylineKind::Old2d);
}

TEST(EntityReader, ArcsTurnInTheirOwnPlane) {
  struct {
    const char* angles;
    double normal;
    Vector3 start;
    double sweep;
  } const cases[] = {
      {"50 0|51 90", 1, {1, 0, 0}, pi / 2},
      {"50 270|51 90", 1, {0, -1, 0}, pi},
      {"50 0|51 90", -1, {-1, 0, 0}, pi / 2},
      {"50 90|51 0", -1, {0, 1, 0}, 1.5 * pi},
      {"50 0|51 360", 1, {1, 0, 0}, 2 * pi},
      {"50 30|51 30", -1, {-std::sqrt(0.75), 0.5, 0}, 2 * pi},
      {"50 -90|51 720", 1, {0, -1, 0}, pi / 2},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.angles);
    const auto arc = shape<ArcShape>("0 ARC|10 0|20 0|40 -2|230 " + std::to_string(test.normal) +
                                     "|100 AcDbArc|" + test.angles);
    EXPECT_EQ(arc.radius, 2);
    EXPECT_EQ(arc.normal.z, test.normal);
    EXPECT_NEAR(arc.start.x, test.start.x, 1e-12);
    EXPECT_NEAR(arc.start.y, test.start.y, 1e-12);
    EXPECT_NEAR(arc.sweep, test.sweep, 1e-12);
  }
  EXPECT_EQ(shape<ArcShape>("0 CIRCLE|10 0|20 0|40 2").sweep, 2 * pi);
}

TEST(EntityReader, SplinesAreReadAsWritten) {
  const auto spline = shape<SplineShape>(
      "0 HELIX|100 AcDbSpline|70 1|71 2|72 99|73 2000000000|40 0|40 0|40 1|41 1|41 0.5|10 1|20 "
      "2|30 3|"
      "10 4|20 5|30 6|11 7|21 8|31 9|100 AcDbHelix|10 0|20 0|11 0|40 5|41 6");
  EXPECT_TRUE(spline.closed);
  EXPECT_EQ(spline.degree, 2);
  EXPECT_EQ(spline.knots, (std::vector<double>{0, 0, 1}));
  EXPECT_EQ(spline.weights, (std::vector<double>{1, 0.5}));
  EXPECT_EQ(spline.control_points, (std::vector<Point3>{{1, 2, 3}, {4, 5, 6}}));
  EXPECT_EQ(spline.fit_points, (std::vector<Point3>{{7, 8, 9}}));
}

TEST(EntityReader, HatchOutlinesHaveTheExtentsOfTheirEdges) {
  const std::string head =
      "0 HATCH|92 4|310 00|100 AcDbHatch|10 0|20 0|30 5|210 0|220 0|230 1|2 SOLID|70 1|71 0|91 1|";
  const std::string seeds = "|97 1|330 2F|75 0|76 1|98 1|10 99|20 99";
  struct {
    const char* name;
    const char* paths;
    std::size_t vertices;
    Extents expected;
  } const cases[] = {
      {"polyline with a half circle",
       "92 3|72 1|73 1|93 2|10 0|20 0|42 1|10 2|20 0|42 0",
       2,
       {{0, -1, 5}, {2, 0, 5}}},
      {"two paths", "92 2|93 1|10 0|20 0|97 0|92 2|93 1|10 3|20 4", 1, {{0, 0, 5}, {3, 4, 5}}},
      {"lines",
       "92 1|93 3|72 1|10 0|20 0|11 4|21 0|72 1|10 4|20 0|11 4|21 3|72 1|10 4|20 3|11 0|21 0",
       3,
       {{0, 0, 5}, {4, 3, 5}}},
      {"line, then a gap",
       "92 1|93 2|72 1|10 0|20 0|11 4|21 0|72 1|10 4|20 3|11 0|21 0",
       3,
       {{0, 0, 5}, {4, 3, 5}}},
      {"whole circle",
       "92 1|93 1|72 2|10 1|20 1|40 2|50 0|51 360|73 1",
       2,
       {{-1, -1, 5}, {3, 3, 5}}},
      {"upper half counter-clockwise",
       "92 1|93 1|72 2|10 0|20 0|40 2|50 0|51 180|73 1",
       2,
       {{-2, 0, 5}, {2, 2, 5}}},
      {"lower half clockwise",
       "92 1|93 1|72 2|10 0|20 0|40 2|50 0|51 180|73 0",
       2,
       {{-2, -2, 5}, {2, 0, 5}}},
      {"lower half of an ellipse, clockwise",
       "92 1|93 1|72 3|10 0|20 0|11 4|21 0|40 0.5|50 0|51 180|73 0",
       2,
       {{-4, -2, 5}, {4, 0, 5}}},
      {"straight spline",
       "92 1|93 1|72 4|94 1|73 0|74 0|95 4|96 2|40 0|40 0|40 1|40 1|10 0|20 0|10 6|20 7",
       2,
       {{0, 0, 5}, {6, 7, 5}}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    const auto hatch = shape<HatchShape>(head + test.paths + seeds);
    ASSERT_FALSE(hatch.loops.empty());
    EXPECT_EQ(hatch.loops[0].vertices.size(), test.vertices);
    const auto extents = extents_of({hatch});
    ASSERT_TRUE(extents);
    expect_near({extents->min, extents->max}, {test.expected.min, test.expected.max});
  }
}

// The flag that closes a path, which comes before that of its bulges, says nothing.
TEST(EntityReader, PolygonsLieAboutTheirOffset) {
  const auto polygon = shape<HatchShape>(
      "0 MPOLYGON|100 AcDbEntity|100 AcDbMPolygon|70 1|10 0|20 0|30 7|210 0|220 0|230 -1|2 "
      "SOLID|71 "
      "1|91 2|92 2|73 0|72 0|93 4|10 0|20 0|10 10|20 0|10 10|20 10|10 0|20 10|92 2|73 0|72 1|93 2|"
      "10 4|20 5|42 1|10 6|20 5|42 1|76 1|63 3|11 1000|21 500|99 0");
  const auto extents = extents_of({polygon});
  ASSERT_TRUE(extents);
  expect_near({extents->min, extents->max}, {{-1010, 500, -7}, {-1000, 510, -7}});
  EXPECT_NEAR(area_of(polygon).value(), 100 - pi, 1e-9);
}

TEST(EntityReader, ParagraphTextStopsAtItsEmbeddedObject) {
  const auto text = shape<MtextShape>(
      "0 MTEXT|100 AcDbMText|10 1|20 2|30 3|40 5|41 80|71 5|3 one ^J|1 two|230 -1|101 Embedded "
      "Object|"
      "70 1|10 1|20 0|11 9|21 9|40 80|42 66|43 100|71 2|1 other|1001 A|1040 7");
  EXPECT_EQ(text.text, L"one \ntwo");
  EXPECT_EQ(text.position, (Point3{1, 2, 3}));
  EXPECT_EQ(text.attachment, 5);
  EXPECT_EQ(text.width, 66);
  EXPECT_EQ(text.height, 100);
  EXPECT_EQ(text.direction, (Vector3{1, 0, 0})) << "the world's x axis, whatever the normal";
}

TEST(EntityReader, LaterOfDirectionAndAngleTurnsParagraphText) {
  EXPECT_NEAR(shape<MtextShape>("0 MTEXT|11 0|21 3|31 0|50 0|1 x").direction.x, 1, 1e-12);
  EXPECT_NEAR(shape<MtextShape>("0 MTEXT|50 0|11 0|21 3|31 0|1 x").direction.y, 1, 1e-12);
  EXPECT_NEAR(shape<MtextShape>("0 MTEXT|50 90|1 x").direction.y, 1, 1e-12);
}

TEST(EntityReader, EstimatedSizeCountsWhatIsSeen) {
  struct {
    const char* text;
    const char* frame;
    double characters;
    double lines;
  } const cases[] = {
      {"abcd", "0", 4, 1},      {"ab\\Pabcd", "0", 4, 2}, {"{\\fArial;\\Lab\\l}\\\\\\~", "0", 4, 1},
      {"abcdefgh", "28", 4, 2}, {"\\H2", "0", 0, 1},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.text);
    const auto text =
        shape<MtextShape>(std::string("0 MTEXT|40 10|41 ") + test.frame + "|1 " + test.text);
    EXPECT_NEAR(text.width, test.characters * 7, 1e-9);
    EXPECT_NEAR(text.height, 10 + (test.lines - 1) * 10 * 5 / 3, 1e-9);
  }
}

TEST(EntityReader, ReferencesNameTheirBlock) {
  const auto insert = shape<BlockReferenceShape>(
      "0 INSERT|66 1|2 Haus|10 1|20 2|41 2|42 -1|50 90|70 3|71 0|44 5|45 6|0 ATTRIB|2 TAG|10 9|0 "
      "SEQEND");
  EXPECT_EQ(insert.block, L"Haus");
  EXPECT_EQ(insert.position, (Point3{1, 2, 0}));
  EXPECT_EQ(insert.scale, (Point3{2, -1, 1}));
  EXPECT_NEAR(insert.rotation, pi / 2, 1e-12);
  EXPECT_EQ(insert.columns, 3);
  EXPECT_EQ(insert.rows, 1);
  EXPECT_EQ(insert.column_spacing, 5);
  EXPECT_EQ(insert.row_spacing, 6);

  const auto table =
      std::get<BlockReferenceShape>(picture("0 ACAD_TABLE|92 4|310 00|100 AcDbBlockReference|2 "
                                            "*T1|10 1|20 2|30 3|100 AcDbTable|11 0|21 "
                                            "2|31 0|"
                                            "91 2|92 2|41 9|2 x|10 7|11 5|21 0")
                                        .shape);
  EXPECT_EQ(table.block, L"*T1");
  EXPECT_EQ(table.position, (Point3{1, 2, 3}));
  EXPECT_NEAR(table.rotation, pi / 2, 1e-12);
  EXPECT_EQ(table.scale, (Point3{1, 1, 1}));
  EXPECT_EQ(std::get<BlockReferenceShape>(picture("0 DIMENSION|2 *D3|10 5|70 32").shape).block,
            L"*D3");
}

TEST(EntityReader, PropertiesComeFromTheCommonPart) {
  struct {
    const char* groups;
    EntityProperties expected;
  } const cases[] = {
      {"0 LINE|10 1", {}},
      {"0 LINE|5 2A|100 AcDbEntity|8 W\xC3\xA4nde|6 DASHED|62 0|48 2.5|420 1193046|370 -2|100 "
       "AcDbLine",
       {L"W\u00e4nde", L"DASHED", 0, 0x123456, 2.5, -2}},
      {"0 LINE|100 AcDbEntity|8 A|100 AcDbTable|8 B|62 3|6 X|370 5", {L"A", L"ByLayer", 256, {}}},
      {"0 LINE|100 AcDbEntity|62 3|100 AcDbLine|8 LATE", {L"LATE", L"ByLayer", 3, {}}},
      {"0 LINE|8 A|8 B|10 1|20 2|62 3|1003 C|8 D", {L"A", L"ByLayer", 3, {}}},
      {"0 LINE|62 x|48 |370 x|420 x", {}},
      {"0 POLYLINE|66 1|0 VERTEX|8 A|62 3|0 SEQEND", {}},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.groups);
    const std::string bytes = entity(test.groups);
    const EntityProperties read = read_properties({bytes, dxf::Framing::Ascii}, codec());
    EXPECT_EQ(read.layer, test.expected.layer);
    EXPECT_EQ(read.linetype, test.expected.linetype);
    EXPECT_EQ(read.color, test.expected.color);
    EXPECT_EQ(read.true_color, test.expected.true_color);
    EXPECT_EQ(read.linetype_scale, test.expected.linetype_scale);
    EXPECT_EQ(read.lineweight, test.expected.lineweight);
  }
}

TEST(EntityReader, CountsInTheFileAreNotBelieved) {
  const char* const entities[] = {
      "0 HATCH|100 AcDbHatch|91 2147483647|92 2|93 2147483647|10 1|20 2|10 3|20 4|92 1|93 9|72 "
      "4|94 3|"
      "95 2147483647|40 0|40 0|40 0|40 0|40 1|40 1|40 1|40 1|10 0|20 0|10 1|20 1|10 2|20 2|10 3|20 "
      "0|75 0",
      "0 MPOLYGON|91 2147483647|92 2|73 0|72 1|93 2147483647|10 1|20 2|42 1|10 3|20 4|92 2|93 -1|"
      "10 5|20 6|76 1|11 9|21 9|99 2147483647"};
  for (const char* groups : entities) {
    const std::string whole = entity(groups);
    for (std::size_t size = 0; size <= whole.size(); ++size) {
      const std::string cut = whole.substr(0, size);
      const EntityGeometry read = read_geometry({cut, dxf::Framing::Ascii}, codec());
      const auto* hatch = std::get_if<HatchShape>(&read.shape);
      if (hatch == nullptr) continue;
      std::size_t vertices = 0;
      for (const PolylineShape& loop : hatch->loops)
        vertices += loop.vertices.size();
      EXPECT_LT(vertices, 1000U) << groups << " after " << size << " bytes";
    }
  }
}

}  // namespace
}  // namespace korvel
