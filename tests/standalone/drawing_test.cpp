// The drawing over its document: what a change writes, that undoing leaves no trace, and damage
// inside objects.
#include "host/standalone/drawing.h"

#include <functional>
#include <gtest/gtest.h>

#include "host/standalone/drawing_dump.h"
#include "tests/standalone/drawing_bytes.h"

namespace korvel {
namespace {

using namespace std::string_literals;
using test::difference;
using test::framed;
using test::read;
using test::replaced;
using test::sample;
using test::sample_lines;

const ODTableDef roads{L"Roads",
                       {{L"NAME", ODType::Character, std::wstring(L"?")},
                        {L"LANES", ODType::Integer, std::int32_t{2}}}};
const ODRecord main_street{L"Roads", {std::wstring(L"Main St"), std::int32_t{4}}};

bool define_roads(Drawing& drawing) {
  return StandaloneStore(drawing).define_table(roads) == TableChange::Done;
}

bool define_and_attach(Drawing& drawing, std::uint64_t handle) {
  return define_roads(drawing) && test::attach(drawing, handle, main_street);
}

bool erase(Drawing& drawing, std::uint64_t handle) {
  const std::optional<EntityId> id = drawing.by_handle(handle);
  return id && drawing.erase(*id);
}

std::optional<EntityId> add_line(Drawing& drawing) {
  return drawing.add_entity({LineShape{{0, 0, 0}, {1, 1, 0}}, 0}, {});
}

bool change_layer(Drawing& drawing, const wchar_t* name, bool Layer::*property) {
  const std::optional<EntityId> id = drawing.layer_named(name);
  for (Layer layer : drawing.layers()) {
    if (layer.id != id) continue;
    layer.*property = !(layer.*property);
    return drawing.change_layer(layer);
  }
  return false;
}

std::wstring text_of(const Drawing& drawing) {
  std::wstring text;
  dump(drawing, [&text](std::wstring_view line) { text.append(line).append(L"\n"); });
  return text;
}

struct Edit {
  const char* name;
  std::function<bool(Drawing&)> make;
  const char* difference;
  bool takes_handle = false;  // at once, not when the drawing is written
};

const Edit edits[] = {
    {"a table", define_roads, "+100 +101 ~$HANDSEED ~C"},
    {"a record", [](Drawing& d) { return define_and_attach(d, 0x20); },
     "+100 +101 +102 +103 ~$HANDSEED ~20 ~C"},
    {"a record in a block", [](Drawing& d) { return define_and_attach(d, 0x1A); },
     "+100 +101 +102 +103 ~$HANDSEED ~1A ~C"},
    {"a record on a block reference", [](Drawing& d) { return define_and_attach(d, 0x24); },
     "+100 +101 +102 +103 ~$HANDSEED ~24 ~C"},
    {"a record beside other extension data", [](Drawing& d) { return define_and_attach(d, 0x22); },
     "+100 +101 +102 ~$HANDSEED ~30 ~C"},
    {"freeze a layer", [](Drawing& d) { return change_layer(d, L"roads", &Layer::frozen); }, "~11"},
    {"unlock a layer", [](Drawing& d) { return change_layer(d, L"Locked", &Layer::locked); },
     "~12"},
    {"a layer on", [](Drawing& d) { return change_layer(d, L"Locked", &Layer::off); }, "~12"},
    {"a new layer", [](Drawing& d) { return d.add_layer(L"New").has_value(); }, "+100 ~$HANDSEED",
     true},
    {"a new entity", [](Drawing& d) { return add_line(d).has_value(); }, "+100 ~$HANDSEED", true},
    {"a new entity with a record",
     [](Drawing& d) {
       const std::optional<EntityId> line = add_line(d);
       return line && define_and_attach(d, d.handle_of(*line));
     },
     "+100 +101 +102 +103 +104 ~$HANDSEED ~C", true},
    {"erase", [](Drawing& d) { return erase(d, 0x20); }, "-20"},
    {"erase with parts", [](Drawing& d) { return erase(d, 0x24); }, "-24"},
    {"erase with what it owns", [](Drawing& d) { return erase(d, 0x22); }, "-22 -30 -31"},
    {"erase what just got a record",
     [](Drawing& d) { return define_and_attach(d, 0x22) && erase(d, 0x22); },
     "+100 +101 -22 -30 -31 ~$HANDSEED ~C"},
};

// A number in the place of the handle seed has no room for a handle.
TEST(Drawing, ADamagedHandleSeedIsKept) {
  const auto drawing =
      read(framed(replaced(sample_lines("AC1032"), "$HANDSEED\n5 100", "$HANDSEED\n90 100"),
                  {dxf::Framing::BinaryTwoByte, ""}));
  ASSERT_TRUE(drawing && define_and_attach(*drawing, 0x20));
  const auto reopened = read(drawing->to_bytes());
  ASSERT_TRUE(reopened);
  EXPECT_EQ(reopened->variable("HANDSEED"), "100");
  EXPECT_EQ(test::records_of(*reopened, 0x20), std::vector{main_street});
}

TEST(Drawing, WritesOnlyWhatAChangeConcerns) {
  for (const auto& [version, form] : {std::pair{"AC1014", test::Form{}},
                                      {"AC1015", {dxf::Framing::Ascii, "\r\n"}},
                                      {"AC1032", {dxf::Framing::BinaryTwoByte, ""}}}) {
    const std::string file = sample(version, form);
    for (const Edit& edit : edits) {
      SCOPED_TRACE(version + " "s + edit.name);
      const auto drawing = read(file);
      ASSERT_TRUE(drawing);
      ASSERT_TRUE(edit.make(*drawing));
      EXPECT_TRUE(drawing->changed());
      const std::string changed = drawing->to_bytes();
      EXPECT_EQ(difference(file, changed), edit.difference);
      EXPECT_EQ(difference(changed, drawing->to_bytes()), "same") << "written twice";
      const auto reopened = read(changed);
      ASSERT_TRUE(reopened);
      EXPECT_TRUE(reopened->notices().empty()) << reopened->notices().front();
      EXPECT_EQ(difference(changed, reopened->to_bytes()), "same");
      EXPECT_EQ(text_of(*reopened), text_of(*drawing));
    }
  }
}

TEST(Drawing, UndoLeavesNoTraceAndRedoBringsTheSameBack) {
  const std::string file = sample("AC1032");
  for (const Edit& edit : edits) {
    SCOPED_TRACE(edit.name);
    const auto drawing = read(file);
    drawing->journal().open();
    ASSERT_TRUE(edit.make(*drawing));
    drawing->journal().close();
    ASSERT_TRUE(drawing->undo());
    EXPECT_FALSE(drawing->changed());
    EXPECT_EQ(difference(file, drawing->to_bytes()), edit.takes_handle ? "~$HANDSEED" : "same");
    ASSERT_TRUE(drawing->redo());
    const std::string changed = drawing->to_bytes();
    EXPECT_EQ(difference(file, changed), edit.difference);
    ASSERT_TRUE(drawing->undo());
    EXPECT_FALSE(drawing->undo());
    const std::string restored = difference(file, drawing->to_bytes());
    EXPECT_TRUE(restored == "same" || restored == "~$HANDSEED") << restored;
    ASSERT_TRUE(drawing->redo());
    EXPECT_EQ(difference(changed, drawing->to_bytes()), "same");
    EXPECT_FALSE(drawing->redo());
  }
}

TEST(Drawing, DetachingLeavesNothingButTheSeed) {
  for (const char* const version : {"AC1014", "AC1032"}) {
    const std::string file = sample(version);
    for (const std::uint64_t handle : {0x20ULL, 0x22ULL, 0x24ULL}) {
      const auto drawing = read(file);
      ASSERT_TRUE(define_and_attach(*drawing, handle));
      const auto saved_between = read(drawing->to_bytes());
      for (Drawing* const edited : {drawing.get(), saved_between.get()}) {
        ASSERT_TRUE(test::detach(*edited, handle, 0));
        ASSERT_EQ(StandaloneStore(*edited).delete_table(L"Roads"), TableChange::Done);
      }
      EXPECT_EQ(difference(file, drawing->to_bytes()), "~$HANDSEED");
      // Once saved, dictionaries are the file's own and stay, though empty.
      EXPECT_EQ(difference(file, saved_between->to_bytes()), handle == 0x22 ? "+101 ~$HANDSEED ~C"
                                                             : handle == 0x20
                                                                 ? "+101 +103 ~$HANDSEED ~20 ~C"
                                                                 : "+101 +103 ~$HANDSEED ~24 ~C");
    }
  }
}

TEST(Drawing, KnowsChangedFromSaved) {
  const auto drawing = read(sample("AC1032"));
  EXPECT_FALSE(drawing->changed());
  ASSERT_TRUE(drawing->set_variable("luprec", "6"));
  EXPECT_TRUE(drawing->changed());
  ASSERT_TRUE(drawing->undo());
  EXPECT_FALSE(drawing->changed());
  ASSERT_TRUE(drawing->set_variable_for_now("LUPREC", "8"));
  EXPECT_TRUE(drawing->changed());
  ASSERT_TRUE(drawing->set_variable_for_now("LUPREC", "4"));
  EXPECT_FALSE(drawing->changed());
  ASSERT_TRUE(define_roads(*drawing));
  ASSERT_TRUE(drawing->undo());
  ASSERT_TRUE(add_line(*drawing));
  EXPECT_TRUE(drawing->changed()) << "another step in place of the one undone";
}

TEST(Drawing, HeaderVariablesAreChangedInPlaceAndRestored) {
  struct {
    const char* name;
    const char* value;
    bool taken;
    const char* reads;
  } const cases[] = {
      {"LUPREC", "6", true, "6"},
      {"LUPREC", "4.5", false, "4"},
      {"LUPREC", "six", false, "4"},
      {"ltscale", "2.5", true, "2.5"},
      {"LTSCALE", "", false, "1.0"},
      {"CLAYER", "Roads", true, "Roads"},
      {"CLAYER", "a\n  0\nEOF", true, "a\n  0\nEOF"},  // escaped in the file
      {"HANDSEED", "1", false, "100"},
      {"ACADVER", "AC1009", false, "AC1032"},
  };
  const test::Form crlf{dxf::Framing::Ascii, "\r\n"};
  const test::Form binary{dxf::Framing::BinaryTwoByte, ""};
  const std::string unusual = replaced(sample("AC1032"), " 70\n4\n", " 70\n\t4 \n");
  for (const std::string& file :
       {sample("AC1032"), sample("AC1032", crlf), sample("AC1032", binary), unusual}) {
    for (const auto& [name, value, taken, reads] : cases) {
      SCOPED_TRACE(name + "="s + value);
      const auto drawing = read(file);
      const std::string former = drawing->variable(name).value_or("none");
      EXPECT_EQ(drawing->set_variable(name, value), taken);
      EXPECT_EQ(drawing->variable(name), reads);
      const std::string bytes = drawing->to_bytes();
      EXPECT_EQ(difference(file, bytes), taken ? "~HEADER" : "same");
      EXPECT_EQ(read(bytes)->variable(name), reads);
      if (!taken) continue;
      EXPECT_TRUE(drawing->set_variable(name, former));
      EXPECT_EQ(difference(file, drawing->to_bytes()), "same");
    }
    const auto drawing = read(file);
    EXPECT_FALSE(drawing->set_variable("INSBASE", "1"));
    EXPECT_FALSE(drawing->set_variable("NO_SUCH", "1"));
    EXPECT_EQ(drawing->variable("INSBASE"), std::nullopt);
  }
}

TEST(Drawing, LockedLayersKeepTheirEntities) {
  const auto drawing = read(sample("AC1032"));
  ASSERT_TRUE(define_roads(*drawing));
  EXPECT_FALSE(erase(*drawing, 0x23));
  EXPECT_FALSE(test::attach(*drawing, 0x23, main_street));
  ASSERT_TRUE(change_layer(*drawing, L"LOCKED", &Layer::locked));
  EXPECT_TRUE(test::attach(*drawing, 0x23, main_street));
  EXPECT_TRUE(erase(*drawing, 0x23));
  EXPECT_FALSE(erase(*drawing, 0x23));
}

TEST(Drawing, ErasingEndsWhateverTheDictionariesSay) {
  const std::string head = "0 DICTIONARY\n5 40\n330 22\n100 AcDbDictionary\n280 1\n";
  struct {
    const char* name;
    std::string objects;
    const char* difference;
  } const cases[] = {
      {"owns itself", head + "3 A\n360 40\n", "-22 -40"},
      {"owns its owner's owner",
       head + "3 A\n360 41\n0 DICTIONARY\n5 41\n100 AcDbDictionary\n"
              "3 B\n360 42\n0 DICTIONARY\n5 42\n100 AcDbDictionary\n"
              "3 C\n360 40\n",
       "-22 -40 -41 -42"},
      {"owns the entity and what is missing", head + "3 A\n360 22\n3 B\n360 FFFF\n3 C\n360 0\n",
       "-22 -40"},
      {"owns another entity", head + "3 A\n360 20\n", "-22 -40"},
      {"owns the root", head + "3 A\n360 C\n", "-22 -40"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string file =
        framed(replaced(sample_lines("AC1032", c.objects), "360 30", "360 40"));
    const auto drawing = read(file);
    ASSERT_TRUE(drawing);
    ASSERT_TRUE(erase(*drawing, 0x22));
    EXPECT_EQ(difference(file, drawing->to_bytes()), c.difference);
  }
}

// Two entities may name one dictionary; the data in it are those of the first.
TEST(Drawing, ErasingLeavesTheObjectDataOfOthersAlone) {
  const std::string second =
      "0 LINE\n5 27\n102 {ACAD_XDICTIONARY\n360 30\n102 }\n330 15\n"
      "100 AcDbEntity\n8 0\n100 AcDbLine\n10 0.0\n20 0.0\n11 1.0\n21 1.0\n"
      "0 ENDSEC\n0 SECTION\n2 OBJECTS\n";
  const std::string other =
      framed(replaced(sample_lines("AC1032"), "0 ENDSEC\n0 SECTION\n2 OBJECTS\n", second));
  const auto with_data = read(other);
  ASSERT_TRUE(with_data && define_and_attach(*with_data, 0x22));
  const std::string file = with_data->to_bytes();
  const auto drawing = read(file);
  ASSERT_TRUE(drawing && erase(*drawing, 0x27));
  EXPECT_EQ(difference(file, drawing->to_bytes()), "-27");
}

// Else a conversion to 2D polylines would count them on every run.
TEST(Drawing, OfR12MakesLightPolylinesOldOnesOnce) {
  const auto drawing =
      read(framed("0 SECTION\n2 ENTITIES\n0 LINE\n8 0\n10 0.0\n20 0.0\n11 1.0\n"
                  "21 1.0\n0 ENDSEC\n0 EOF\n"));
  ASSERT_TRUE(drawing);
  const EntityId id = drawing->entities(Space::Model).at(0);
  const EntityGeometry light{
      PolylineShape{PolylineKind::Light, {{{0, 0, 0}}, {{1, 1, 0}}}, {0, 0, 1}}};
  EXPECT_TRUE(drawing->set_geometry(id, light));
  EXPECT_EQ(drawing->type_of(id), "POLYLINE");
  EXPECT_FALSE(drawing->set_geometry(id, light));
}

TEST(Drawing, ClaimsInTheFileAreNotBelieved) {
  const std::string huge(400, '9');
  const std::string lines = sample_lines("AC1032");
  const std::string variants[] = {
      replaced(lines, "90 2", "90 2147483647"),
      replaced(lines, "90 2", "90 -1"),
      replaced(lines, "10 1.5", "10 " + huge),
      replaced(lines, "10 1.5", "10 nan"),
      replaced(lines, "42 1.0", "42 1.#QNAN"),
      replaced(lines, "40 2.0", "40 1e308"),
      replaced(lines, "66 1\n2 B", "66 1\n2 B\n70 30000\n71 30000\n44 1.0\n45 1.0"),
      replaced(lines, "66 1\n2 B", "66 1\n2 B\n41 1e300\n42 1e300\n50 nan"),
      replaced(lines, "0 ENDBLK", "0 INSERT\n5 1B\n8 0\n2 B\n10 0.0\n20 0.0\n0 ENDBLK"),
      replaced(lines, "5 20\n", "5 \n"),
      replaced(lines, "5 100", "5 FFFFFFFFFFFFFFFF"),
      replaced(lines, "0 CIRCLE",
               "0 HATCH\n91 2000000000\n93 2000000000\n0 SPLINE\n72 2147483647\n"
               "73 2147483647\n71 2147483647\n0 CIRCLE"),
  };
  for (const std::string& variant : variants) {
    const std::string file = framed(variant);
    const auto drawing = read(file);
    ASSERT_TRUE(drawing);
    for (const Space space : {Space::Model, Space::Paper, Space::Block}) {
      for (const EntityId id : drawing->entities(space)) {
        (void)drawing->geometry_of(id);
        (void)drawing->attributes_of(id);
        const std::optional<Extents> extents = drawing->extents_of(id);
        if (!extents) continue;
        EXPECT_LE(extents->min.x, extents->max.x) << drawing->type_of(id);
        EXPECT_LE(extents->min.y, extents->max.y) << drawing->type_of(id);
      }
    }
    EXPECT_EQ(difference(file, drawing->to_bytes()), "same");
  }
}

// Layers that the table lacks are there as long as entities are on them.
TEST(Drawing, AnUnlistedLayerStaysWhenItsEntityChanges) {
  const auto drawing = read(framed(replaced(sample_lines("AC1032"), "8 ROADS", "8 Unlisted")));
  ASSERT_TRUE(drawing);
  const EntityId point = *drawing->by_handle(0x21);
  ASSERT_TRUE(drawing->set_geometry(point, {PointShape{{1, 2, 3}}}));
  EXPECT_TRUE(drawing->layer_named(L"Unlisted"));
  ASSERT_TRUE(drawing->erase(point));
  EXPECT_FALSE(drawing->layer_named(L"Unlisted"));
}

TEST(Drawing, AnUndoneLayerIsGoneAndCanBeMadeAgain) {
  const auto drawing = read(sample("AC1032"));
  ASSERT_TRUE(drawing->add_layer(L"Ghost"));
  EntityProperties properties;
  properties.layer = L"Ghost";
  ASSERT_TRUE(drawing->add_entity({LineShape{{0, 0, 0}, {1, 0, 0}}}, properties));
  ASSERT_TRUE(drawing->undo());
  ASSERT_TRUE(drawing->undo());
  EXPECT_FALSE(drawing->layer_named(L"ghost"));
  const auto again = drawing->add_layer(L"Ghost");
  ASSERT_TRUE(again);
  Layer state = drawing->layer(*again);
  state.frozen = true;
  EXPECT_TRUE(drawing->change_layer(state));
  const auto reopened = read(drawing->to_bytes());
  ASSERT_TRUE(reopened);
  const auto found = reopened->layer_named(L"Ghost");
  ASSERT_TRUE(found);
  EXPECT_TRUE(reopened->layer(*found).frozen);
}

TEST(Drawing, TheCurrentLayerGoesWithTheLayerThatIsUndone) {
  const auto drawing = read(sample("AC1032"));
  drawing->journal().open();
  const auto layer = drawing->add_layer(L"New");
  ASSERT_TRUE(layer && drawing->set_current_layer(*layer));
  drawing->journal().close();
  ASSERT_TRUE(drawing->undo());
  EXPECT_EQ(drawing->variable("CLAYER"), "0");
}

TEST(Drawing, TextVariablesAreEncodedAsTheFileIs) {
  const auto drawing = read(sample("AC1015"));
  ASSERT_TRUE(drawing->set_variable("CLAYER", "M\xC3\xBCll"));
  EXPECT_EQ(drawing->variable("clayer"), "M\xC3\xBCll");
  EXPECT_NE(drawing->to_bytes().find("\nM\xFCll\n"), std::string::npos);
}

TEST(Drawing, ErasingTakesTheDictionariesOfPartsAlong) {
  const std::string dictionary = "0 DICTIONARY\n5 70\n330 25\n100 AcDbDictionary\n280 1\n";
  const std::string file =
      framed(replaced(sample_lines("AC1032", dictionary), "0 ATTRIB\n5 25\n",
                      "0 ATTRIB\n5 25\n102 {ACAD_XDICTIONARY\n360 70\n102 }\n"));
  const auto drawing = read(file);
  ASSERT_TRUE(drawing);
  const auto insert = drawing->by_handle(0x24);
  ASSERT_TRUE(insert && drawing->erase(*insert));
  EXPECT_EQ(difference(file, drawing->to_bytes()), "-24 -70");
}

TEST(Drawing, ABlockThatIsNotEndedEndsWithItsSection) {
  const std::string file = framed(replaced(sample_lines("AC1032"), "0 ENDBLK\n5 19\n8 0\n", ""));
  const auto drawing = read(file);
  ASSERT_TRUE(drawing);
  const EntityList entities = drawing->entities(Space::Block);
  ASSERT_EQ(entities.size(), 1U);
  EXPECT_EQ(drawing->handle_of(entities[0]), 0x1AU);
  ASSERT_TRUE(drawing->erase(entities[0]));
  EXPECT_EQ(difference(file, drawing->to_bytes()), "-1A");
}

TEST(Drawing, SaysWhichObjectsCadProgramsWillStumbleOver) {
  const std::string file =
      framed(replaced(sample_lines("AC1032"), "0 POINT\n5 21", "0 POINT\n5 20"));
  const auto drawing = read(file);
  ASSERT_TRUE(drawing);
  ASSERT_EQ(drawing->notices().size(), 2U);
  EXPECT_TRUE(drawing->notices()[0].starts_with("2 entities cannot take object data"));
  EXPECT_TRUE(drawing->notices()[1].starts_with("test.dxf: line ")) << drawing->notices()[1];
  EXPECT_NE(drawing->notices()[1].find("handle 20 is used a second time"), std::string::npos);
  EXPECT_EQ(difference(file, drawing->to_bytes()), "same");
}

TEST(Drawing, CannotBeOpenedFromWhatIsNoFile) {
  for (const std::string& path : {"no such file.dxf"s, testing::TempDir()}) {
    const auto drawing = Drawing::open(path);
    ASSERT_FALSE(drawing) << path;
    EXPECT_TRUE(drawing.reason().starts_with(path)) << drawing.reason();
  }
}

TEST(Drawing, BlankIsCompleteAndTakesEverything) {
  const auto drawing = Drawing::blank();
  ASSERT_TRUE(drawing);
  EXPECT_TRUE(drawing->notices().empty());
  EXPECT_EQ(drawing->version(), "AC1032");
  EXPECT_TRUE(drawing->entities(Space::Model).empty());
  const std::optional<EntityId> line = add_line(*drawing);
  ASSERT_TRUE(line);
  ASSERT_TRUE(define_and_attach(*drawing, drawing->handle_of(*line)));
  const auto reopened = read(drawing->to_bytes());
  ASSERT_TRUE(reopened);
  ASSERT_EQ(reopened->entities(Space::Model).size(), 1U);
  StandaloneStore store(*reopened);
  EXPECT_TRUE(test::records_of(store, reopened->entities(Space::Model)[0]) ==
              std::vector{main_street});
}

}  // namespace
}  // namespace korvel
