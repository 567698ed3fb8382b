// Names and attributes of block references: the names of dynamic blocks, and texts that change
// without a byte beside them.
#include <gtest/gtest.h>
#include <string>

#include "frame/utf.h"
#include "tests/standalone/drawing_bytes.h"

namespace korvel {
namespace {

using namespace std::string_literals;
using test::difference;
using test::framed;
using test::read;
using test::replaced;

constexpr std::uint64_t reference_handle = 0x24;

EntityId id_of(const Drawing& drawing, std::uint64_t handle) {
  return drawing.by_handle(handle).value_or(EntityId{});
}

// The sample whose reference has these attributes.
std::string lines_with(const std::string& version, const std::string& attributes,
                       const std::string& objects = {}) {
  const std::string lines = test::sample_lines(version, objects);
  const std::size_t begin = lines.find("0 ATTRIB");
  return lines.substr(0, begin) + attributes + lines.substr(lines.find("0 SEQEND"));
}

TEST(BlockAttributes, AreReadWhereverTheirTextLies) {
  const std::string objects =
      "0 DICTIONARY\n5 40\n330 2B\n100 AcDbDictionary\n3 acad_mlatt\n360 41\n"
      "0 XRECORD\n5 41\n330 40\n100 AcDbXrecord\n280 1\n70 2\n2 ML\n1 Embedded Object\n10 0.0\n"
      "3 whole \n1 text\n73 1\n1 later\n"
      "0 DICTIONARY\n5 42\n330 2C\n100 AcDbDictionary\n3 ACAD_MLATT\n360 999\n";
  const auto drawing = read(framed(
      lines_with("AC1032",
                 "0 ATTRIB\n5 2A\n102 {OTHER\n2 x\n360 40\n102 }\n100 AcDbText\n40 1.0\n1 VALUE \n"
                 "100 AcDbAttribute\n2 TAG\n70 0\n1001 A\n1000 y\n"
                 "0 ATTRIB\n1  \n2 LINES\n101 Embedded Object\n10 0.0\n3 first \n1 second\n"
                 "0 ATTRIB\n5 2B\n102 {ACAD_XDICTIONARY\n360 40\n102 }\n1 whole\n2 ML_001\n"
                 "0 ATTRIB\n5 2C\n102 {ACAD_XDICTIONARY\n360 42\n102 }\n1 kept\n2 LOST\n"
                 "0 ATTRIB\n2 BARE\n",
                 objects)));
  ASSERT_TRUE(drawing);
  EXPECT_EQ(drawing->attributes_of(id_of(*drawing, reference_handle)),
            (std::vector<BlockAttribute>{{L"TAG", L"VALUE "},
                                         {L"LINES", L"first second"},
                                         {L"ML_001", L"whole text"},
                                         {L"LOST", L"kept"},
                                         {L"BARE", L""}}));
  EXPECT_TRUE(drawing->attributes_of(id_of(*drawing, 0x20)).empty());
}

// Each form of file; the second of three attributes gets another text.
TEST(BlockAttributes, ATextChangesAndNotAByteBesideIt) {
  const auto attribute = [](const std::string& tag, const std::string& text) {
    return "0 ATTRIB\n5 " + tag + "\n100 AcDbText\n10 1.0\n40 2.5\n1 " + text +
           "\n7 Style\n100 AcDbAttribute\n2 " + tag + "\n70 0\n1001 APP\n1000 1\n";
  };
  const struct {
    const char* version;
    test::Form form;
    const wchar_t* text;
    const char* raw;
  } cases[] = {
      {"AC1009",
       {},
       L"Stra\u00dfe",
       "Stra\xDF"
       "e"},
      {"AC1009", {dxf::Framing::BinaryOneByte, ""}, L"a\nb^c", "a\nb^c"},
      {"AC1012", {}, L"\u2603", "\\U+2603"},
      {"AC1014", {dxf::Framing::Ascii, "\r\n"}, L"", ""},
      {"AC1015", {}, L"  two\nlines^\t", "  two^Jlines^ ^I"},
      {"AC1021",
       {},
       L"Stra\u00dfe \u2603",
       "Stra\xC3\x9F"
       "e \xE2\x98\x83"},
      {"AC1027", {dxf::Framing::BinaryTwoByte, ""}, L"x", "x"},
      {"AC1032", {}, L"%%d \\P ?\t1", "%%d \\P ?^I1"},
      {"AC1032", {dxf::Framing::BinaryTwoByte, ""}, L"\u2603\n", "\xE2\x98\x83\n"},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.version + " "s + test.raw);
    const std::string former =
        framed(lines_with(test.version, attribute("2A", "one") + attribute("2B", "former") +
                                            attribute("2C", "three")),
               test.form);
    const std::string group = framed("1 former", test.form);
    const bool ascii = test.form.framing == dxf::Framing::Ascii;
    const std::string value = ascii ? "former"s + test.form.line_end : "former\0"s;
    const std::string wanted =
        replaced(former, value, test.raw + value.substr(std::string("former").size()));

    const auto drawing = read(former);
    ASSERT_TRUE(drawing);
    const EntityId reference = id_of(*drawing, reference_handle);
    ASSERT_EQ(drawing->set_attribute_texts(reference, {{1, L"other"}, {1, L"former"}}), 2U);
    EXPECT_FALSE(drawing->changed()) << "the text was there";
    ASSERT_TRUE(drawing->set_attribute_texts(reference, {{1, test.text}}));
    EXPECT_EQ(drawing->to_bytes(), wanted);
    EXPECT_EQ(drawing->attributes_of(reference).at(1).text, test.text);
    EXPECT_FALSE(drawing->set_attribute_texts(reference, {{3, L"x"}}));
    ASSERT_TRUE(drawing->undo());
    EXPECT_EQ(drawing->to_bytes(), former);
    EXPECT_FALSE(drawing->changed());
    ASSERT_TRUE(drawing->redo());
    EXPECT_EQ(drawing->to_bytes(), wanted);
  }
}

TEST(BlockAttributes, ChangesOfOneStepAreUndoneTogether) {
  const std::string file = test::sample("AC1032");
  const auto drawing = read(file);
  const EntityId reference = id_of(*drawing, reference_handle);
  drawing->journal().open();
  for (const wchar_t* text : {L"a long text, longer than the next", L"short", L"the last one"})
    ASSERT_TRUE(drawing->set_attribute_texts(reference, {{0, text}}));
  EXPECT_TRUE(drawing->set_properties(reference, {L"Roads", L"ByLayer", 3, {}, 1, -1}));
  ASSERT_TRUE(drawing->set_attribute_texts(reference, {{0, L"and more"}}));
  drawing->journal().close();
  const std::string changed = drawing->to_bytes();
  EXPECT_EQ(difference(file, changed), "~24");
  const auto reopened = read(changed);
  EXPECT_EQ(reopened->attributes_of(id_of(*reopened, reference_handle)).at(0).text, L"and more");
  ASSERT_TRUE(drawing->undo());
  EXPECT_EQ(drawing->to_bytes(), file);
  ASSERT_TRUE(drawing->redo());
  EXPECT_EQ(drawing->to_bytes(), changed);

  // An entity that the step itself has added is another thing: its first bytes come back.
  drawing->journal().open();
  const auto line = drawing->add_entity({LineShape{{0, 0, 0}, {1, 1, 0}}, 0}, {});
  ASSERT_TRUE(line && drawing->set_properties(*line, {L"Roads", L"DASHED", 3, {}, 1, -1}));
  drawing->journal().close();
  const std::string with_line = drawing->to_bytes();
  ASSERT_TRUE(drawing->undo() && drawing->redo());
  EXPECT_EQ(drawing->to_bytes(), with_line);
}

TEST(BlockAttributes, LongTextsFitOrAreRefused) {
  const std::string simple = "0 ATTRIB\n5 2A\n8 0\n40 2.5\n2 TAG\n70 0\n";
  const std::string embedded =
      "0 ATTRIB\n5 2A\n8 0\n40 2.5\n1  \n2 TAG\n101 Embedded Object\n40 1.0\n1 x\n73 1\n";
  const struct {
    const char* version;
    const std::string& attribute;
    std::size_t length;
    wchar_t letter;
    bool fits;
  } cases[] = {
      {"AC1014", simple, 255, L'x', true},         {"AC1014", simple, 256, L'x', false},
      {"AC1015", simple, 2049, L'x', true},        {"AC1015", simple, 2050, L'x', false},
      {"AC1032", simple, 1024, L'\u00df', true},   {"AC1032", simple, 1025, L'\u00df', false},
      {"AC1032", embedded, 9999, L'\u00df', true}, {"AC1032", embedded, 0, L'x', true},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.version + " "s + std::to_string(test.length));
    const std::string file = framed(lines_with(test.version, test.attribute));
    const auto drawing = read(file);
    const EntityId reference = id_of(*drawing, reference_handle);
    const std::wstring text(test.length, test.letter);
    EXPECT_EQ(drawing->set_attribute_texts(reference, {{0, text}}), test.fits ? 1U : 0U);
    const std::string changed = drawing->to_bytes();
    EXPECT_EQ(changed == file, !test.fits);
    if (!test.fits) continue;
    const auto reopened = read(changed);
    EXPECT_EQ(reopened->attributes_of(id_of(*reopened, reference_handle)).at(0).text, text);
    ASSERT_TRUE(drawing->set_attribute_texts(reference, {{0, L"x"}}));
    const auto again = read(drawing->to_bytes());
    EXPECT_EQ(again->attributes_of(id_of(*again, reference_handle)),
              (std::vector<BlockAttribute>{{L"TAG", L"x"}}));
  }
}

TEST(BlockAttributes, SomeTextsAreKept) {
  const std::string objects =
      "0 DICTIONARY\n5 40\n330 2A\n100 AcDbDictionary\n3 ACAD_FIELD\n360 31\n"
      "0 DICTIONARY\n5 41\n330 2A\n100 AcDbDictionary\n3 ACAD_MLATT\n360 31\n"
      "0 DICTIONARY\n5 42\n330 2A\n100 AcDbDictionary\n3 OTHER\n360 31\n";
  const struct {
    const char* what;
    const char* attribute;
    bool kept;
  } cases[] = {
      {"no layer, so the layer 0", "40 1.0\n1 x\n", false},
      {"a locked layer", "8 LOCKED\n40 1.0\n1 x\n", true},
      {"a layer without a record", "8 Elsewhere\n40 1.0\n1 x\n", false},
      {"a field", "102 {ACAD_XDICTIONARY\n360 40\n102 }\n8 0\n40 1.0\n1 x\n", true},
      {"several lines", "102 {ACAD_XDICTIONARY\n360 41\n102 }\n8 0\n40 1.0\n1 x\n", true},
      {"other extension data", "102 {ACAD_XDICTIONARY\n360 42\n102 }\n8 0\n40 1.0\n1 x\n", false},
      {"no dictionary there", "102 {ACAD_XDICTIONARY\n360 20\n102 }\n8 0\n40 1.0\n1 x\n", false},
      {"no place for a text", "8 0\n", true},
      {"scattered pieces", "8 0\n40 1.0\n1  \n101 Embedded Object\n3 a\n40 1.0\n1 b\n", true},
  };
  for (const auto& test : cases) {
    SCOPED_TRACE(test.what);
    const auto drawing = read(framed(
        lines_with("AC1018", "0 ATTRIB\n5 2A\n"s + test.attribute + "2 TAG\n70 0\n", objects)));
    ASSERT_TRUE(drawing);
    EXPECT_EQ(drawing->set_attribute_texts(id_of(*drawing, reference_handle), {{0, L"y"}}),
              test.kept ? 0U : 1U);
    EXPECT_EQ(drawing->changed(), !test.kept);
  }
  // The reference's own layer does not count.
  const auto drawing = read(
      framed(replaced(test::sample_lines("AC1018"), "0 INSERT\n5 24\n330 15\n100 AcDbEntity\n8 0",
                      "0 INSERT\n5 24\n330 15\n100 AcDbEntity\n8 Locked")));
  EXPECT_TRUE(drawing->set_attribute_texts(id_of(*drawing, reference_handle), {{0, L"y"}}));
}

TEST(BlockNames, VariantsGoByTheNameOfTheirDefinition) {
  const auto record = [](int handle, const std::string& name, const std::string& xdata) {
    return "0 BLOCK_RECORD\n5 " + std::to_string(handle) +
           "\n100 AcDbSymbolTableRecord\n100 AcDbBlockTableRecord\n2 " + name + "\n70 0\n" + xdata;
  };
  const auto tag = [](const char* application, int handle) {
    return "1001 "s + application + "\n1070 1\n1005 " + std::to_string(handle) + "\n";
  };
  const auto true_name = [](const char* name) {
    return "1001 AcDbDynamicBlockTrueName\n1000 "s + name + "\n1001 OTHER\n1000 no name\n";
  };
  const std::string records =
      record(40, "Door", true_name("Door")) + record(41, "*U1", tag("AcDbBlockRepBTag", 40)) +
      record(42, "*U2", tag("ACDBBLOCKREPBTAG", 43)) + record(43, "*U3", true_name("Gate")) +
      record(44, "*U4", "") + record(45, "*U5", tag("AcDbBlockRepETag", 40)) +
      record(46, "*U6", tag("AcDbBlockRepBTag", 99)) +
      record(47, "*U7", tag("AcDbBlockRepBTag", 48)) +
      record(48, "*U8", tag("AcDbBlockRepBTag", 47)) +
      record(49, "*U9", tag("AcDbBlockRepBTag", 49));
  const std::pair<const char*, const wchar_t*> cases[] = {
      {"Door", L"Door"},      {"DOOR", L"Door"}, {"*U1", L"Door"}, {"*u2", L"Gate"},
      {"*U3", L"Gate"},       {"*U4", L"*U4"},   {"*U5", L"*U5"},  {"*U6", L"*U6"},
      {"*U7", L"*U7"},        {"*U8", L"*U8"},   {"*U9", L"*U9"},  {"b", L"B"},
      {"Nowhere", L"Nowhere"}};
  for (const auto& [block, name] : cases) {
    std::string lines = replaced(test::sample_lines("AC1018"), "0 ENDTAB\n0 ENDSEC",
                                 records + "0 ENDTAB\n0 ENDSEC");
    lines = replaced(lines, "66 1\n2 B\n", "66 1\n2 "s + block + "\n");
    const auto drawing = read(framed(lines));
    ASSERT_TRUE(drawing);
    EXPECT_EQ(drawing->block_name_of(id_of(*drawing, reference_handle)), name) << block;
    EXPECT_EQ(drawing->block_name_of(id_of(*drawing, 0x20)), std::nullopt);
    EXPECT_EQ(drawing->block_name_of({}), std::nullopt);
  }
  // Without block records a block is spelled as its definition has it.
  const auto old = read(framed(
      "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1009\n0 ENDSEC\n0 SECTION\n2 BLOCKS\n"
      "0 BLOCK\n8 0\n2 Door\n70 0\n10 0.0\n20 0.0\n0 ENDBLK\n0 ENDSEC\n"
      "0 SECTION\n2 ENTITIES\n0 INSERT\n5 24\n8 0\n2 DOOR\n10 0.0\n20 0.0\n0 ENDSEC\n0 EOF\n"));
  ASSERT_TRUE(old);
  EXPECT_EQ(old->block_name_of(id_of(*old, reference_handle)), L"Door");
}

}  // namespace
}  // namespace korvel
