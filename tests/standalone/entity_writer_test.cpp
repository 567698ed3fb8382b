// New entities and changed properties, as bytes and read back.
#include "host/standalone/entity_writer.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numbers>

#include "geometry/extents.h"
#include "geometry/vector.h"
#include "host/standalone/dxf/number_text.h"
#include "host/standalone/entity_reader.h"

namespace korvel {
namespace {

constexpr double pi = std::numbers::pi;

const dxf::TextCodec codec({.code_page = "ANSI_1252", .utf8 = true});
const dxf::Manner bare{.framing = dxf::Framing::Ascii, .line_end = "|", .code_width = 0};

std::string handle_text(std::uint64_t handle) {
  std::string digits;
  dxf::append_handle(digits, handle);
  return digits;
}

// In this manner a line end is a bar, so that an entity is one line of the test.
std::string written(const EntityGeometry& geometry, bool old_version = false) {
  std::uint64_t next = 0x2A;
  const NewEntityPlace place{
      .manner = bare,
      .codec = codec,
      .subclass_markers = !old_version,
      .lightweight_polylines = !old_version,
      .owner = old_version ? "" : "1F",
      .new_handle = [&next] { return handle_text(next++); },
  };
  EntityProperties properties;
  properties.layer = L"A";
  properties.true_color = 255;
  properties.lineweight = -2;
  const auto entity = write_entity(geometry, properties, place);
  return entity ? entity->bytes : "none";
}

const PolylineShape light{PolylineKind::Light, {{{1, 2, 5}, 0.5}, {{3, 4, 5}, 0}}, {}, true};
const PolylineShape three_d{PolylineKind::ThreeD, {{{1, 2, 3}, 0}}, {}, true};

TEST(EntityWriter, WritesGroupsInTheirOrder) {
  const std::string a = "100|AcDbEntity|8|A|420|      255|370|    -2|";
  EXPECT_EQ(
      written({LineShape{{1, 2, 3}, {4, 5, 6}}, 7}),
      "0|LINE|5|2A|330|1F|" + a + "100|AcDbLine|39|7.0|10|1.0|20|2.0|30|3.0|11|4.0|21|5.0|31|6.0|");
  EXPECT_EQ(written({light}), "0|LWPOLYLINE|5|2A|330|1F|" + a +
                                  "100|AcDbPolyline|90|        2|70|     1|38|5.0|10|1.0|20|2.0|"
                                  "42|0.5|10|3.0|20|4.0|");
  EXPECT_EQ(
      written({three_d}),
      "0|POLYLINE|5|2A|330|1F|" + a +
          "100|AcDb3dPolyline|66|     1|10|0.0|20|0.0|30|0.0|70|     9|0|VERTEX|5|2B|330|2A|" + a +
          "100|AcDbVertex|100|AcDb3dPolylineVertex|10|1.0|20|2.0|30|3.0|70|    32|" +
          "0|SEQEND|5|2C|330|2A|" + a);
  EXPECT_EQ(written({ArcShape{{1, 2, 3}, {0, 0, -1}, {-1, 0, 0}, 4, 2 * pi}}),
            "0|CIRCLE|5|2A|330|1F|" + a +
                "100|AcDbCircle|10|-1.0|20|2.0|30|-3.0|40|4.0|210|0.0|220|0.0|230|-1.0|");
}

TEST(EntityWriter, OldVersionsGetNothingTheyDoNotKnow) {
  EXPECT_EQ(written({light}, true),
            "0|POLYLINE|5|2A|8|A|66|     1|10|0.0|20|0.0|30|5.0|70|     1|"
            "0|VERTEX|5|2B|8|A|10|1.0|20|2.0|30|5.0|42|0.5|"
            "0|VERTEX|5|2C|8|A|10|3.0|20|4.0|30|5.0|0|SEQEND|5|2D|8|A|");
}

TEST(EntityWriter, RefusesShapesWithoutAType) {
  EXPECT_EQ(written({}), "none");
  EXPECT_EQ(written({MtextShape{}}), "none");
  EXPECT_EQ(written({PolylineShape{}}), "none");
}

TEST(EntityWriter, ReadsBackTheSameInEveryPlaneAndFraming) {
  const dxf::Manner manners[] = {
      {},
      {.framing = dxf::Framing::BinaryTwoByte},
      {.framing = dxf::Framing::BinaryOneByte},
      {.line_end = "\r\n", .code_width = 0, .padded_integers = false},
  };
  const Vector3 normals[] = {{0, 0, 1}, {0, 0, -1}, {1, 0, 0}, {0.6, 0, 0.8}, {0, -0.6, 0.8}};
  EntityProperties properties;
  properties.layer = L"W\u00e4nde";
  properties.color = 1;
  for (const dxf::Manner& manner : manners) {
    const bool ascii = manner.framing == dxf::Framing::Ascii;
    const dxf::TextCodec text_codec(
        {.code_page = "ANSI_1252", .utf8 = true, .caret_escapes = ascii});
    for (const Vector3& normal : normals) {
      const PlaneFrame plane = plane_frame(normal);
      const Point3 a = to_world(plane, {1, 2, 5});
      const Point3 b = to_world(plane, {4, 2, 5});
      const EntityGeometry shapes[] = {
          {PointShape{a}},
          {LineShape{a, b}},
          {ArcShape{a, plane.normal, plane.y, 2, pi / 3}, 3},
          {ArcShape{a, plane.normal, plane.x, 2, 2 * pi}},
          {PolylineShape{PolylineKind::Light, {{a, 1}, {b, 0}}, plane.normal, false}, 3},
          {PolylineShape{PolylineKind::Light, {{a, 1, 2, 3}, {b}}, plane.normal, true, true}},
          {PolylineShape{PolylineKind::Light, {{a, 1, 4, 4}, {b, 0, 4, 4}}, plane.normal}},
          {PolylineShape{PolylineKind::Old2d, {{a, 1, 2, 3}, {b}}, plane.normal, true, true}},
          {PolylineShape{PolylineKind::ThreeD, {{a, 0}, {b, 0}}, {0, 0, 1}, true}},
          {TextShape{a, plane.normal, L"a\n^b \U0001F600", 2.5, pi / 6, 0.5}},
      };
      for (const EntityGeometry& shape : shapes) {
        SCOPED_TRACE(shape.shape.index());
        const auto entity =
            write_entity(shape, properties,
                         {.manner = manner, .codec = text_codec, .new_handle = [] { return ""; }});
        ASSERT_TRUE(entity);
        const dxf::GroupReader groups(entity->bytes, manner.framing);
        const EntityGeometry read = read_geometry(groups, text_codec);
        ASSERT_EQ(read.shape.index(), shape.shape.index());
        EXPECT_EQ(read.thickness, shape.thickness);
        // Bulges, sweeps and rotations show in the extents.
        const auto before = extents_of(shape);
        const auto after = extents_of(read);
        ASSERT_TRUE(before && after);
        EXPECT_LT(length(after->min - before->min), 1e-9);
        EXPECT_LT(length(after->max - before->max), 1e-9);
        if (const auto* line = std::get_if<PolylineShape>(&read.shape)) {
          EXPECT_EQ(line->kind, std::get<PolylineShape>(shape.shape).kind);
          EXPECT_EQ(line->closed, std::get<PolylineShape>(shape.shape).closed);
          EXPECT_EQ(line->linetype_runs_on, std::get<PolylineShape>(shape.shape).linetype_runs_on);
          for (std::size_t i = 0; i < 2; ++i) {
            const Vertex& vertex = line->vertices.at(i);
            const Vertex& was = std::get<PolylineShape>(shape.shape).vertices[i];
            EXPECT_EQ(std::pair(vertex.start_width, vertex.end_width),
                      std::pair(was.start_width, was.end_width));
          }
        }
        if (const auto* text = std::get_if<TextShape>(&read.shape)) {
          EXPECT_EQ(text->text, std::get<TextShape>(shape.shape).text);
        }
        EXPECT_EQ(read_properties(groups, text_codec).layer, properties.layer);
        EXPECT_EQ(read_properties(groups, text_codec).color, 1);
      }
    }
  }
}

TEST(EntityWriter, ReadsBackAnArrayOfReferences) {
  const BlockReferenceShape array{{1, 2, 3}, {0, 0, -1}, L"B", {2, -1, 1}, 3 * pi / 2, 3, 2, 5, 6};
  const auto entity =
      write_entity({array}, {}, {.manner = {}, .codec = codec, .new_handle = [] { return ""; }});
  const auto geometry = read_geometry({entity->bytes, dxf::Framing::Ascii}, codec);
  const auto& read = std::get<BlockReferenceShape>(geometry.shape);
  EXPECT_EQ(read.block, array.block);
  EXPECT_EQ(read.position, array.position);
  EXPECT_EQ(read.scale, array.scale);
  EXPECT_NEAR(read.rotation, array.rotation, 1e-12);
  EXPECT_EQ(read.columns, 3);
  EXPECT_EQ(read.rows, 2);
  EXPECT_EQ(read.column_spacing, 5);
  EXPECT_EQ(read.row_spacing, 6);
}

// The same with bars for line ends, before and after.
std::string reshaped(std::string entity, const EntityGeometry& geometry, bool old_version = false) {
  std::ranges::replace(entity, '|', '\n');
  std::uint64_t next = 0x2A;
  const dxf::Manner manner{.code_width = 0};
  const NewEntityPlace place{.manner = manner,
                             .codec = codec,
                             .subclass_markers = !old_version,
                             .lightweight_polylines = !old_version,
                             .owner = old_version ? "" : "1F",
                             .new_handle = [&next] { return handle_text(next++); }};
  std::string bytes = with_geometry(entity, geometry, place).value_or("none");
  std::ranges::replace(bytes, '\n', '|');
  return bytes;
}

TEST(EntityReshaping, KeepsAllButTheShape) {
  const std::string head =
      "5|9|102|{ACAD_XDICTIONARY|360|77|102|}|330|1F|100|AcDbEntity|67|1|8|A|62|     5|";
  const std::string xdata = "1001|X|1010|1.0|1020|2.0|1030|3.0|";
  const std::string line =
      "0|LINE|" + head + "100|AcDbLine|10|0.0|20|0.0|30|0.0|11|1.0|21|0.0|" + "31|0.0|" + xdata;
  const std::string polyline =
      "0|POLYLINE|" + head + "100|AcDb2dPolyline|66|1|70|1|" + xdata +
      "0|VERTEX|5|A|330|9|100|AcDbEntity|8|A|100|AcDbVertex|10|0.0|20|0.0|1001|GONE|" +
      "0|SEQEND|5|B|330|9|100|AcDbEntity|8|A|";
  const std::string vertex = "330|9|100|AcDbEntity|8|A|62|     5|";
  struct Case {
    const char* name;
    std::string before;
    EntityGeometry geometry;
    std::string after;
  };
  const std::vector<Case> cases = {
      {"line to light polyline",
       line,
       {light},
       "0|LWPOLYLINE|" + head + "100|AcDbPolyline|90|        2|70|     1|38|5.0|10|1.0|20|2.0|" +
           "42|0.5|10|3.0|20|4.0|" + xdata},
      {"polyline to line",
       polyline,
       {LineShape{{1, 2, 3}, {4, 5, 6}}},
       "0|LINE|" + head + "100|AcDbLine|10|1.0|20|2.0|30|3.0|11|4.0|21|5.0|31|6.0|" + xdata},
      {"line to 3D polyline",
       line,
       {three_d},
       "0|POLYLINE|" + head + "100|AcDb3dPolyline|66|     1|10|0.0|20|0.0|30|0.0|70|     9|" +
           xdata + "0|VERTEX|5|2A|" + vertex +
           "100|AcDbVertex|100|AcDb3dPolylineVertex|10|1.0|20|2.0|30|3.0|70|    32|0|SEQEND|5|2B|" +
           vertex},
  };
  for (const Case& test : cases)
    EXPECT_EQ(reshaped(test.before, test.geometry), test.after) << test.name;
  EXPECT_EQ(reshaped(line, {MtextShape{}}), "none");
}

TEST(EntityReshaping, ACopyHasAllButDictionaryAndReactors) {
  const std::string properties =
      "100|AcDbEntity|8|A|62|     5|440|  33554534|48|2.0|60|     1|420|      255|347|2F|"
      "370|    50|430|BOOK$RED|348|30|284|     1|390|F|";
  const std::string xdata = "1001|X|1070|     1|";
  std::string line =
      "0|LINE|5|9|102|{ACAD_XDICTIONARY|360|77|102|}|102|{ACAD_REACTORS|330|78|102|}|330|1E|" +
      properties + "100|AcDbLine|10|0.0|20|0.0|30|0.0|11|1.0|21|0.0|31|0.0|" + xdata;
  std::ranges::replace(line, '|', '\n');
  const dxf::Manner manner{.code_width = 0};
  const NewEntityPlace place{
      .manner = manner, .codec = codec, .owner = "1f", .new_handle = [] { return "2A"; }};
  auto copy = copied_with_geometry(line, {PointShape{{1, 2, 3}}}, place);
  ASSERT_TRUE(copy);
  std::ranges::replace(copy->bytes, '\n', '|');
  EXPECT_EQ(copy->bytes,
            "0|POINT|5|2A|330|1f|" + properties + "100|AcDbPoint|10|1.0|20|2.0|30|3.0|" + xdata);
}

TEST(EntityReshaping, OldVersionsKeepWhatTheyHave) {
  const std::string line =
      "0|LINE|5|9|8|A|62|     5|10|0.0|20|0.0|30|0.0|11|1.0|21|0.0|31|0.0|1001|X|";
  EXPECT_EQ(reshaped(line, {ArcShape{{1, 2, 3}, {}, {1, 0, 0}, 4, 2 * pi}}, true),
            "0|CIRCLE|5|9|8|A|62|     5|10|1.0|20|2.0|30|3.0|40|4.0|1001|X|");
}

// Some programs write entities of newer versions without markers, or with the first one alone.
TEST(EntityReshaping, LeavesTheOldShapeOfEntitiesWithoutMarkers) {
  const std::string identity = "5|9|102|{ACAD_XDICTIONARY|360|77|102|}|330|1F|";
  const std::string shape =
      "10|7.0|20|8.0|30|9.0|50|30.0|330|20|1001|X|1010|1.0|1020|2.0|1030|3.0|";
  const std::string after =
      "0|LWPOLYLINE|" + identity +
      "100|AcDbEntity|67|1|410|Plan|8|A|100|AcDbPolyline|90|        2|" +
      "70|     1|38|5.0|10|1.0|20|2.0|42|0.5|10|3.0|20|4.0|1001|X|1010|1.0|1020|2.0|1030|3.0|";
  const std::string properties = "67|1|410|Plan|8|A|";
  EXPECT_EQ(reshaped("0|POINT|" + identity + properties + shape, {light}), after);
  EXPECT_EQ(reshaped("0|POINT|" + identity + "100|AcDbEntity|" + properties + shape, {light}),
            after);
  // A property may stand behind the shape.
  EXPECT_EQ(reshaped("0|POINT|5|9|10|1.0|20|2.0|8|A|62|     5|", {LineShape{{}, {1, 0, 0}}}),
            "0|LINE|5|9|100|AcDbEntity|8|A|62|     5|100|AcDbLine|10|0.0|20|0.0|30|0.0|" +
                std::string("11|1.0|21|0.0|31|0.0|"));
}

TEST(EntityReshaping, OldVersionsKeepTheirSpaceAndDictionary) {
  EXPECT_EQ(reshaped("0|POINT|5|9|102|{ACAD_XDICTIONARY|360|77|102|}|67|1|8|A|10|1.0|20|2.0|",
                     {LineShape{{}, {1, 0, 0}}}, true),
            "0|LINE|5|9|102|{ACAD_XDICTIONARY|360|77|102|}|67|1|8|A|10|0.0|20|0.0|30|0.0|" +
                std::string("11|1.0|21|0.0|31|0.0|"));
}

TEST(PropertyEdit, ChangesOnlyTheGroupsConcerned) {
  const std::string head =
      "  0\nLINE\n  5\n2A\n102\n{X\n 62\n9\n102\n}\n330\n1F\n100\nAcDbEntity\n";
  const std::string tail = "100\nAcDbLine\n 62\n5\n 10\n1.50\n1001\nX\n1003\nA\n";
  using Change = void (*)(EntityProperties&);
  struct {
    const char* name;
    const char* before;
    Change change;
    const char* after;
  } const cases[] = {
      {"nothing", "8\nA\n 62\n7\n", [](EntityProperties&) {}, "8\nA\n 62\n7\n"},
      {"case of a name", " 8\nA\n", [](EntityProperties& p) { p.layer = L"a"; }, " 8\nA\n"},
      {"layer", " 8\nA\n 62\n7\n", [](EntityProperties& p) { p.layer = L"B\u00e4"; },
       "  8\nB\xC3\xA4\n 62\n7\n"},
      {"colour in place", "  8\nA\n62\n 7\n 48\n2.50\n", [](EntityProperties& p) { p.color = 0; },
       "  8\nA\n 62\n     0\n 48\n2.50\n"},
      {"default colour goes, and its book name", "  8\nA\n 62\n7\n420\n255\n430\nBOOK$RED\n",
       [](EntityProperties& p) { p = {L"A"}; }, "  8\nA\n"},
      {"another colour of the book", "  8\nA\n420\n255\n430\nBOOK$RED\n",
       [](EntityProperties& p) { p.book_color = L"BOOK$R\u00f6t"; },
       "  8\nA\n420\n255\n430\nBOOK$R\xC3\xB6t\n"},
      {"explicit default stays", "  8\nA\n  6\nBYLAYER\n 62\n256\n",
       [](EntityProperties& p) { p.lineweight = 50; },
       "  8\nA\n  6\nBYLAYER\n 62\n256\n370\n    50\n"},
      {"new groups in their places", " 67\n1\n  8\nA\n440\n33554534\n 60\n1\n347\n2F\n348\n30\n",
       [](EntityProperties& p) { p = {L"A", L"DASHED", 3, 0x123456, 2, 9}; },
       " 67\n1\n  8\nA\n  6\nDASHED\n 62\n     3\n440\n33554534\n 48\n2.0\n 60\n1\n"
       "420\n  1193046\n347\n2F\n370\n     9\n348\n30\n"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.name);
    const std::string bytes = head + test.before + tail;
    EntityProperties properties = read_properties({bytes, dxf::Framing::Ascii}, codec);
    test.change(properties);
    EXPECT_EQ(with_properties(bytes, properties, {}, codec), head + test.after + tail);
  }
}

TEST(PropertyEdit, WorksWithoutMarkersAndLeavesThePartsAlone) {
  const std::string vertex = "0|VERTEX|8|A|62|1|10|0|0|SEQEND|8|A|";
  const dxf::Manner manner{.code_width = 0, .padded_integers = false};
  std::string before = "0|POLYLINE|5|2A|8|A|66|1|1001|X|" + vertex;
  std::string after = "0|POLYLINE|5|2A|8|B|62|3|66|1|1001|X|" + vertex;
  std::ranges::replace(before, '|', '\n');
  std::ranges::replace(after, '|', '\n');
  EXPECT_EQ(with_properties(before, {L"B", L"ByLayer", 3, {}}, manner, codec), after);
}

TEST(PropertyEdit, LayerOutOfPlaceIsReplacedThere) {
  const std::string before = "  0\nLINE\n100\nAcDbEntity\n100\nAcDbLine\n  8\nA\n 10\n1\n";
  const std::string after =
      "  0\nLINE\n100\nAcDbEntity\n 62\n     3\n100\nAcDbLine\n  8\nB\n 10\n1\n";
  EXPECT_EQ(with_properties(before, {L"B", L"ByLayer", 3, {}}, {}, codec), after);
}

}  // namespace
}  // namespace korvel
