// Shapes through the binding and the classes of the double: what comes out is what was in the
// drawing, read and set.
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "host/arx/block_references.h"
#include "host/arx/geometry.h"
#include "host/arx/properties.h"
#include "host/arx/reshaping.h"
#include "tests/arx_double/db_classes.h"
#include "tests/host/scripted_host.h"
#include "tests/standalone/shared_drawings.h"

namespace korvel::test {
namespace {

// All that a shape says, as one list of numbers and one text.
struct Flat {
  std::vector<double> numbers;
  std::wstring text;

  void add(double number) { numbers.push_back(number); }
  void add(Point3 p) { numbers.insert(numbers.end(), {p.x, p.y, p.z}); }
  void add(Vector3 v) { numbers.insert(numbers.end(), {v.x, v.y, v.z}); }
  void add(const std::wstring& words) { text += words + L'|'; }
  void add(const Vertex& vertex) {
    all(vertex.point, vertex.bulge, vertex.start_width, vertex.end_width);
  }
  template <class Value>
  void add(const std::vector<Value>& values) {
    for (const Value& value : values)
      add(value);
    text += L';';
  }
  template <class... Values>
  void all(const Values&... values) {
    (add(values), ...);
  }

  void add(std::monostate) {}
  void add(const PointShape& s) { all(s.position, s.normal); }
  void add(const LineShape& s) { all(s.start, s.end, s.normal); }
  void add(const ArcShape& s) { all(s.center, s.normal, s.start, s.radius, s.sweep); }
  void add(const EllipseShape& s) { all(s.center, s.normal, s.major, s.ratio, s.start, s.end); }
  void add(const PolylineShape& s) {
    all(static_cast<double>(s.kind), s.vertices, s.closed, s.linetype_runs_on);
    // Of a 3D polyline it means nothing.
    if (s.kind != PolylineKind::ThreeD) add(s.normal);
  }
  void add(const SplineShape& s) {
    all(s.degree, s.closed, s.knots, s.weights, s.control_points, s.fit_points);
  }
  void add(const MlineShape& s) { all(s.vertices, s.closed); }
  void add(const TextShape& s) {
    all(s.position, s.normal, s.text, s.height, s.rotation, s.width_factor,
        s.alignment.value_or(Point3{-1, -1, -1}));
  }
  void add(const MtextShape& s) {
    all(s.position, s.normal, s.direction, s.text, s.width, s.height, s.attachment);
  }
  void add(const BlockReferenceShape& s) {
    all(s.position, s.normal, s.block, s.scale, s.rotation, s.columns, s.rows, s.column_spacing,
        s.row_spacing);
  }
  void add(const CurvedEdge& s) {
    all(static_cast<double>(s.loop), static_cast<double>(s.segment));
    std::visit([this](const auto& curve) { add(curve); }, s.curve);
  }
  void add(const HatchShape& s) { all(s.loops, s.curved_edges); }
  void add(const FaceShape& s) { add(s.corners); }
};

Flat flat(const EntityGeometry& geometry) {
  Flat flattened;
  std::visit([&](const auto& shape) { flattened.add(shape); }, geometry.shape);
  flattened.add(geometry.thickness);
  return flattened;
}

void expect_same(const std::optional<EntityGeometry>& is, const EntityGeometry& expected) {
  ASSERT_TRUE(is);
  ASSERT_EQ(is->shape.index(), expected.shape.index());
  const Flat a = flat(*is);
  const Flat b = flat(expected);
  EXPECT_EQ(a.text, b.text);
  ASSERT_EQ(a.numbers.size(), b.numbers.size());
  for (std::size_t i = 0; i < a.numbers.size(); ++i)
    EXPECT_NEAR(a.numbers[i], b.numbers[i], 1e-9 * (1 + std::abs(b.numbers[i])));
}

// "0 LINE|10 1" as two lines for each group.
std::string groups(std::string_view text) {
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('|', at), text.size());
    const std::string_view group = text.substr(at, end - at);
    const std::size_t blank = group.find(' ');
    out += std::string(group.substr(0, blank)) + '\n' + std::string(group.substr(blank + 1)) + '\n';
    at = end + 1;
  }
  return out;
}

std::unique_ptr<Drawing> drawing_of(const std::string& entities) {
  return std::move(*Drawing::read(
      groups("0 SECTION|2 HEADER|9 $ACADVER|1 AC1032|0 ENDSEC|0 SECTION|2 ENTITIES") + entities +
          groups("0 ENDSEC|0 EOF"),
      "test.dxf"));
}

constexpr const char* all_kinds =
    "0 POINT|10 1|20 2|30 3|39 4|210 1|220 0|230 0|"
    "0 LINE|10 1|20 2|30 3|11 4|21 5|31 6|39 2|"
    "0 CIRCLE|10 1|20 2|30 3|40 5|210 0|220 0|230 -1|"
    "0 ARC|10 1|20 2|40 5|50 350|51 20|39 1|"
    "0 ARC|10 1|20 2|40 5|50 20|51 350|210 0.6|220 0|230 0.8|"
    "0 ELLIPSE|10 1|20 2|30 3|11 4|21 0|31 0|40 0.5|41 0.5|42 5|210 0|220 0|230 1|"
    "0 LWPOLYLINE|90 3|70 129|38 7|39 2|10 0|20 0|40 1|41 2|42 0.5|10 9|20 0|10 9|20 9|"
    "210 0|220 0.6|230 0.8|"
    "0 POLYLINE|66 1|70 129|30 4|39 3|210 0|220 0|230 -1|"
    "0 VERTEX|10 1|20 2|40 1|41 2|42 1|0 VERTEX|10 5|20 6|0 SEQEND|"
    "0 POLYLINE|66 1|70 9|0 VERTEX|70 32|10 1|20 2|30 3|0 VERTEX|70 32|10 4|20 5|30 6|0 SEQEND|"
    "0 SPLINE|70 9|71 2|40 0|40 0|40 0|40 1|40 1|40 1|41 1|41 2|41 1|10 0|20 0|30 0|10 1|20 1|"
    "30 1|10 2|20 0|30 0|11 0|21 0|31 0|11 2|21 0|31 0|"
    "0 MLINE|71 3|72 2|11 1|21 2|31 3|11 4|21 5|31 6|"
    "0 TEXT|10 1|20 2|30 3|40 2.5|1 one %s text|41 0.8|50 30|39 1|210 0|220 0|230 -1|"
    "0 ATTDEF|10 1|20 2|40 2.5|1 default|2 TAG|3 prompt|"
    "0 MTEXT|10 1|20 2|30 3|40 2.5|71 5|1 a\\Pb|11 0|21 1|31 0|42 10|43 5|"
    "0 INSERT|2 DOOR|10 1|20 2|30 3|41 2|42 3|43 4|50 90|210 0|220 0|230 -1|"
    "0 INSERT|2 DOOR|10 1|20 2|70 3|71 4|44 5|45 6|"
    "0 SOLID|10 0|20 0|11 1|21 0|12 0|22 1|13 1|23 1|39 2|"
    "0 TRACE|10 0|20 0|11 1|21 0|12 0|22 1|13 0|23 1|"
    "0 3DFACE|10 0|20 0|30 0|11 1|21 0|31 0|12 1|22 1|32 1|13 0|23 1|33 1|"
    "0 HATCH|10 0|20 0|30 5|210 0|220 0|230 -1|2 SOLID|70 1|71 0|91 2|92 3|72 1|73 1|93 3|10 0|"
    "20 0|42 0.5|10 9|20 0|42 0|10 9|20 9|42 0|97 0|92 3|72 0|73 1|93 3|10 1|20 1|10 2|20 1|10 2|"
    "20 2|97 0|75 0|76 1|98 0|"
    "0 HATCH|10 0|20 0|30 5|210 0|220 0.6|230 0.8|2 SOLID|70 1|71 0|91 2|92 1|93 4|72 1|10 4|20 0|"
    "11 2|21 0|72 3|10 0|20 0|11 2|21 0|40 0.5|50 0|51 180|73 1|72 2|10 -3|20 0|40 1|50 0|51 180|"
    "73 0|72 4|94 2|73 1|74 0|95 6|96 3|40 0|40 0|40 0|40 1|40 1|40 1|10 -4|20 0|42 1|10 0|20 -9|"
    "42 2|10 4|20 0|42 1|97 0|97 0|92 2|72 0|73 1|93 3|10 1|20 -1|10 2|20 -1|10 2|20 -2|97 0|75 0|"
    "76 1|98 0|"
    "0 TEXT|10 1|20 2|40 2|1 centred|72 1|11 5|21 2|31 1|210 0|220 0|230 -1|"
    "0 RAY|10 1|20 2|11 1|21 0";

TEST(ArxGeometry, IsThatOfTheDrawing) {
  ScriptedHost host(drawing_of(groups(all_kinds)));
  const arx_double::DatabaseOver database(host);
  const EntityList entities = host.model_space();
  ASSERT_EQ(entities.size(), 23U);
  for (const EntityId id : entities) {
    SCOPED_TRACE(host.drawing().type_of(id));
    expect_same(arx::geometry_of(id), host.geometry_of(id).value());
  }
  EXPECT_EQ(arx_double::open_objects(), 0);
  EXPECT_EQ(arx_double::texts_kept(), 0);
}

TEST(ArxGeometry, AndTheRestAreThoseOfTheSamples) {
  for (const char* name : {"world.dxf", "doors.dxf"}) {
    ScriptedHost host(
        std::move(*Drawing::open(std::filesystem::path(KORVEL_SOURCE_DIR) / "samples" / name)));
    const arx_double::DatabaseOver database(host);
    for (const EntityId id : host.model_space()) {
      expect_same(arx::geometry_of(id), host.geometry_of(id).value());
      EXPECT_EQ(arx::properties_of(id), host.properties_of(id));
      EXPECT_EQ(arx::block_name_of(id), host.block_name_of(id));
      EXPECT_EQ(arx::attributes_of(id), host.attributes_of(id));
    }
    EXPECT_EQ(arx_double::open_objects(), 0);
  }
}

TEST(ArxGeometry, OfForeignDrawingsIsTheSameInBothHosts) {
  const std::vector<std::filesystem::path> drawings = shared_drawings();
  if (drawings.empty()) GTEST_SKIP() << "no folder of shared drawings is at hand";
  for (const std::filesystem::path& path : drawings) {
    ScriptedHost host(std::move(*Drawing::open(path)));
    const arx_double::DatabaseOver database(host);
    for (const Space space : {Space::Model, Space::Paper, Space::Block}) {
      for (const EntityId id : host.drawing().entities(space)) {
        SCOPED_TRACE(path.filename().string() + " " + std::string(host.drawing().type_of(id)));
        expect_same(arx::geometry_of(id), host.geometry_of(id).value());
      }
    }
    EXPECT_EQ(arx_double::open_objects(), 0);
  }
}

// Every kind of entity is made every other, and itself; which the drawing refuses is refused.
TEST(ArxGeometry, IsSetAsTheStandAloneHostSetsIt) {
  const std::string entities = groups(all_kinds);
  ScriptedHost given(drawing_of(entities));
  for (const EntityId shape_of : given.model_space()) {
    ScriptedHost host(drawing_of(entities));
    ScriptedHost expected(drawing_of(entities));
    const arx_double::DatabaseOver database(host);
    const EntityGeometry wanted = given.geometry_of(shape_of).value();
    for (const EntityId id : host.model_space()) {
      SCOPED_TRACE(std::string(given.drawing().type_of(shape_of)) + " from " +
                   std::string(host.drawing().type_of(id)));
      const bool has_shape = host.geometry_of(id)->shape.index() != 0;
      ASSERT_EQ(arx::set_geometry(id, wanted), has_shape && expected.set_geometry(id, wanted));
      expect_same(host.geometry_of(id), expected.geometry_of(id).value());
    }
    EXPECT_EQ(arx_double::open_objects(), 0);
  }
}

TEST(ArxGeometry, ThatTheHostRefusesLeavesTheEntityAsItWas) {
  ScriptedHost host(drawing_of(groups(all_kinds)));
  const arx_double::DatabaseOver database(host);
  const EntityGeometry bad_shapes[] = {{ArcShape{{9, 9, 9}, {0, 0, 1}, {1, 0, 0}, 0, 1}},
                                       {EllipseShape{{9, 9, 9}, {0, 0, 1}, {1, 0, 0}, 2, 0, 1}},
                                       {PolylineShape{}}};
  for (const EntityId id : host.model_space()) {
    const EntityGeometry before = host.geometry_of(id).value();
    for (const EntityGeometry& bad : bad_shapes) {
      EXPECT_FALSE(arx::set_geometry(id, bad));
      expect_same(host.geometry_of(id), before);
    }
  }
  EXPECT_EQ(arx_double::open_objects(), 0);
}

}  // namespace
}  // namespace korvel::test
