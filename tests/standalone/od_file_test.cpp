// Object data in a drawing file: everything comes back from every form of file, what others put
// there stays, and what cannot be read is told and kept.
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>

#include "tests/standalone/drawing_bytes.h"

namespace korvel {
namespace {

using namespace std::string_literals;
using test::attach;
using test::detach;
using test::difference;
using test::framed;
using test::read;
using test::records_of;
using test::replaced;
using test::sample;
using test::sample_lines;

using Texts = std::vector<std::wstring>;

constexpr dxf::Framing binary = dxf::Framing::BinaryTwoByte;

struct File {
  const char* version;
  test::Form form;
};

const File files[] = {
    {"AC1012", {}},           {"AC1014", {dxf::Framing::Ascii, "\r\n"}}, {"AC1015", {}},
    {"AC1015", {binary, ""}}, {"AC1032", {dxf::Framing::Ascii, "\r\n"}}, {"AC1032", {binary, ""}}};

ODTableDef table(std::wstring name, ODType type, ODValue value) {
  return {std::move(name), {{L"V", type, std::move(value)}}};
}

ODTableDef texts_table(std::wstring name) {
  return table(std::move(name), ODType::Character, std::wstring());
}

ODRecord text_record(std::wstring table, std::wstring text) {
  return {std::move(table), {std::move(text)}};
}

std::unique_ptr<Drawing> reopened(Drawing& drawing) {
  const std::string bytes = drawing.to_bytes();
  auto again = read(bytes);
  EXPECT_TRUE(again);
  EXPECT_TRUE(again->notices().empty()) << again->notices().front();
  EXPECT_EQ(difference(bytes, again->to_bytes()), "same");
  return again;
}

TEST(ObjectDataFile, BringsBackEveryTypeAndItsExtremes) {
  const ODTableDef all{L"All types",
                       {{L"COUNT", ODType::Integer, std::int32_t{-1}},
                        {L"WIDTH", ODType::Real, 0.1},
                        {L"NAME", ODType::Character, std::wstring(L"none \u00E9")},
                        {L"AT", ODType::Point, Point3{1, -2, 0.5}}}};
  using Integers = std::numeric_limits<std::int32_t>;
  using Reals = std::numeric_limits<double>;
  const std::vector<ODRecord> records = {
      {all.name, {std::int32_t{0}, 0.0, std::wstring(), Point3{}}},
      {all.name, {Integers::max(), Reals::max(), std::wstring(L"a"), Point3{1e300, -1e-300, 7}}},
      {all.name, {Integers::min(), Reals::lowest(), std::wstring(L" "), Point3{0.1, 0.2, 0.3}}},
      {all.name, {std::int32_t{7}, Reals::denorm_min(), std::wstring(L"\t"), Point3{1.0 / 3}}},
      default_record(all),
      {all.name, {std::int32_t{7}, -0.0, std::wstring(L"b"), Point3{-0.0, 0, 0}}},
  };
  for (const auto& [version, form] : files) {
    SCOPED_TRACE(version);
    const auto drawing = read(sample(version, form));
    ASSERT_EQ(StandaloneStore(*drawing).define_table(all), TableChange::Done);
    for (const std::uint64_t handle : {0x1AU, 0x20U, 0x21U, 0x22U, 0x24U}) {
      for (const ODRecord& record : records)
        ASSERT_TRUE(attach(*drawing, handle, record));
    }
    const auto again = reopened(*drawing);
    EXPECT_EQ(StandaloneStore(*again).table(all.name), all);
    for (const std::uint64_t handle : {0x1AU, 0x20U, 0x21U, 0x22U, 0x24U}) {
      const std::vector<ODRecord> read_back = records_of(*again, handle);
      EXPECT_TRUE(read_back == records) << handle;
      EXPECT_TRUE(std::signbit(std::get<double>(read_back.at(5).values[1])));
    }
  }
}

TEST(ObjectDataFile, BringsBackEveryText) {
  std::wstring controls;
  for (wchar_t c = 1; c < 32; ++c)
    controls += c;
  const std::wstring astral = L"\U0001F6E3\U00010400";
  Texts texts = {L"",
                 L"\"quoted\" 'so' ; | , {x}",
                 L"tab\tline\nreturn\rboth\r\n",
                 controls,
                 L"\x7F\x80\x9F",
                 L"^J ^ ^^ ^",
                 L"%%d %%c %%u",
                 L"\\U+00B0 \\U+ \\u+00b0 \\M+1A4C0 \\P",
                 L"\\",
                 L"  blanks kept  ",
                 L"\u00E9\u00DF\u20AC",
                 L"\u0416\u4E2D\u6587",
                 L"a" + astral + L"b",
                 L"\u2028\u2029\uFEFF",
                 L"0\nENDSEC\n0\nEOF",
                 L"1.5",
                 L"}"};
  const std::wstring units[] = {L"x",        L"^",  L"\u0416", L"\U0001F6E3",
                                L"\\U+00B0", L"\n", L"\u00E9"};
  for (const std::size_t length : {248U, 249U, 250U, 251U, 252U, 499U, 500U, 501U, 5000U}) {
    for (const std::wstring& unit : units) {
      std::wstring text(length % 7, L'a');
      while (text.size() < length)
        text += unit;
      texts.push_back(std::move(text));
    }
  }
  for (const auto& [version, form] : files) {
    SCOPED_TRACE(version);
    const auto drawing = read(sample(version, form));
    StandaloneStore store(*drawing);
    const std::wstring name = L"T^ \u0416";
    ASSERT_EQ(store.define_table(table(name, ODType::Character, texts.back())), TableChange::Done);
    for (const std::wstring& text : texts)
      ASSERT_TRUE(attach(*drawing, 0x20, text_record(name, text)));
    const auto again = reopened(*drawing);
    EXPECT_TRUE(StandaloneStore(*again).table(name) == store.table(name));
    const std::vector<ODRecord> records = records_of(*again, 0x20);
    ASSERT_EQ(records.size(), texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i)
      EXPECT_TRUE(std::get<std::wstring>(records[i].values[0]) == texts[i]) << i;
    if (form.framing != dxf::Framing::Ascii) continue;
    const std::string bytes = drawing->to_bytes();
    for (std::size_t at = 0, end = 0; at < bytes.size(); at = end + 1) {
      end = bytes.find('\n', at);
      ASSERT_LE(end - at, 2049U) << bytes.substr(at, 40);
    }
  }
}

TEST(ObjectDataFile, ARealThatIsNoNumberSpoilsNoRecord) {
  for (const auto& [version, form] : files) {
    SCOPED_TRACE(version);
    const auto drawing = read(sample(version, form));
    const ODTableDef reals = table(L"R", ODType::Real, 1.0);
    ASSERT_EQ(StandaloneStore(*drawing).define_table(reals), TableChange::Done);
    std::size_t attached = 0;
    for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL, 2.0})
      attached += attach(*drawing, 0x20, {L"R", {value}}) ? 1 : 0;
    const auto again = reopened(*drawing);
    EXPECT_EQ(records_of(*again, 0x20).size(), attached);
  }
}

TEST(ObjectDataFile, KeepsOrderAndTablesApart) {
  const auto drawing = read(sample("AC1032"));
  StandaloneStore store(*drawing);
  const Texts names = {L"Roads", L"ROADS", L"roads", L"ROADS$2", L"TPMLINK_X", L"Roads "};
  std::vector<ODRecord> records;
  for (const std::wstring& name : names) {
    ASSERT_EQ(store.define_table(texts_table(name)), TableChange::Done);
    for (const wchar_t* const text : {L"a", L"b", L"a"})
      records.insert(records.begin() + static_cast<int>(records.size() / 2),
                     text_record(name, text));
  }
  for (const ODRecord& record : records)
    ASSERT_TRUE(attach(*drawing, 0x20, record));
  const auto again = reopened(*drawing);
  EXPECT_TRUE(StandaloneStore(*again).table_names() == names);
  EXPECT_TRUE(records_of(*again, 0x20) == records);
  // A dictionary has each key once, whatever its case.
  ASSERT_EQ(StandaloneStore(*again).define_table(texts_table(L"rOADS")), TableChange::Done);
  const auto third = reopened(*again);
  EXPECT_TRUE(StandaloneStore(*third).table(L"rOADS"));
  EXPECT_TRUE(records_of(*third, 0x20) == records);
  StandaloneStore renamed(*third);
  ASSERT_EQ(renamed.rename_table(L"TPMLINK_X", L"RoAdS"), TableChange::Done);
  ASSERT_EQ(renamed.rename_table(L"Roads ", L"Tpmlink_x"), TableChange::Done);
  const std::string bytes = third->to_bytes();
  for (const std::string key :
       {"Roads", "ROADS$2", "roads$3", "ROADS$2$2", "RoAdS$5", "Tpmlink_x", "rOADS$4"})
    EXPECT_NE(bytes.find("  3\n" + key + "\n360\n"), std::string::npos) << key;
}

TEST(ObjectDataFile, FollowsChangesOfTablesAndColumns) {
  const ODTableDef roads{
      L"Roads",
      {{L"A", ODType::Integer, std::int32_t{1}}, {L"B", ODType::Character, std::wstring(L"b")}}};
  const ODRecord first{L"Roads", {std::int32_t{5}, std::wstring(L"x")}};
  const auto original = read(sample("AC1015"));
  ASSERT_EQ(StandaloneStore(*original).define_table(roads), TableChange::Done);
  ASSERT_EQ(StandaloneStore(*original).define_table(texts_table(L"Keep")), TableChange::Done);
  for (const std::uint64_t handle : {0x20U, 0x22U}) {
    ASSERT_TRUE(attach(*original, handle, text_record(L"Keep", L"k")));
    ASSERT_TRUE(attach(*original, handle, first));
  }
  const std::string file = original->to_bytes();
  const auto done = [](auto change) { return change == decltype(change)::Done; };
  const ODColumnDef width{L"W", ODType::Real, 2.5};
  struct {
    const char* name;
    std::function<bool(StandaloneStore&)> change;
    const char* difference;
    std::vector<ODRecord> record;
  } const cases[] = {
      {"rename table",
       [&](StandaloneStore& s) { return done(s.rename_table(L"Roads", L"Stra\u00DFen")); },
       "~100 ~102 ~103 ~105",
       {{L"Stra\u00DFen", first.values}}},
      {"rename column",
       [&](StandaloneStore& s) { return done(s.rename_column(L"Roads", L"B", L"C")); },
       "~100",
       {first}},
      {"add column in front",
       [&](StandaloneStore& s) { return done(s.add_column(L"Roads", width, 0)); },
       "~100 ~103 ~105",
       {{L"Roads", {2.5, std::int32_t{5}, std::wstring(L"x")}}}},
      {"remove column",
       [&](StandaloneStore& s) { return done(s.remove_column(L"Roads", 0)); },
       "~100 ~103 ~105",
       {{L"Roads", {std::wstring(L"x")}}}},
      {"remove all columns",
       [&](StandaloneStore& s) {
         return done(s.remove_column(L"Roads", 0)) && done(s.remove_column(L"Roads", 0));
       },
       "~100 ~103 ~105",
       {{L"Roads", {}}}},
      {"delete table",
       [&](StandaloneStore& s) { return done(s.delete_table(L"Roads")); },
       "-100 ~102 ~103 ~105",
       {}},
      {"delete and define again",
       [&](StandaloneStore& s) {
         return done(s.delete_table(L"Roads")) && done(s.define_table(roads));
       },
       "+106 -100 ~$HANDSEED ~102 ~103 ~105",
       {}},
  };
  const auto handles = read(file);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const auto drawing = read(file);
    StandaloneStore store(*drawing);
    drawing->journal().open();
    ASSERT_TRUE(c.change(store));
    drawing->journal().close();
    EXPECT_EQ(difference(file, drawing->to_bytes()), c.difference);
    const auto again = reopened(*drawing);
    std::vector<ODRecord> expected = {text_record(L"Keep", L"k")};
    expected.insert(expected.end(), c.record.begin(), c.record.end());
    EXPECT_TRUE(records_of(*again, 0x20) == expected);
    EXPECT_TRUE(records_of(*again, 0x22) == expected);
    for (const std::wstring& name : store.table_names())
      EXPECT_TRUE(StandaloneStore(*again).table(name) == store.table(name));
    ASSERT_TRUE(drawing->undo());
    EXPECT_TRUE(records_of(*drawing, 0x22) == records_of(*handles, 0x22));
    const std::string restored = difference(file, drawing->to_bytes());
    EXPECT_TRUE(restored == "same" || restored == "~$HANDSEED") << restored;
  }
}

TEST(ObjectDataFile, LeavesOtherDataOfADictionaryAlone) {
  const std::string file = sample("AC1032");
  const auto drawing = read(file);
  ASSERT_EQ(StandaloneStore(*drawing).define_table(texts_table(L"T")), TableChange::Done);
  ASSERT_TRUE(attach(*drawing, 0x22, text_record(L"T", L"a")));
  const std::string with_record = drawing->to_bytes();
  EXPECT_NE(with_record.find("  3\nOTHER\n360\n31\n  3\nKORVEL_OD\n360\n102\n"), with_record.npos);
  const auto again = read(with_record);
  ASSERT_TRUE(detach(*again, 0x22, 0));
  EXPECT_EQ(difference(with_record, again->to_bytes()), "-102 ~30");
  EXPECT_EQ(difference(file, again->to_bytes()), "+100 +101 ~$HANDSEED ~C");

  ASSERT_TRUE(attach(*again, 0x22, text_record(L"T", L"a")));
  EXPECT_EQ(difference(with_record, again->to_bytes()), "same") << "the same record once more";
}

TEST(ObjectDataFile, IsRefusedWhereTheDrawingHasNoPlaceForIt) {
  const std::string r12 =
      "0 SECTION\n2 HEADER\n9 $ACADVER\n1 AC1009\n9 $HANDSEED\n5 100\n0 ENDSEC\n"
      "0 SECTION\n2 ENTITIES\n0 POINT\n5 20\n8 0\n10 1.0\n20 1.0\n0 ENDSEC\n0 EOF\n";
  const std::string no_root = replaced(sample_lines("AC1032"), "OBJECTS", "ACDSDATA");
  const std::string bare = "0 SECTION\n2 ENTITIES\n0 POINT\n5 20\n0 ENDSEC\n0 EOF\n";
  struct Case {
    std::string lines;
    std::string version;
    std::string remedy;
  };
  for (const auto& [lines, version, remedy] : {Case{r12, "(AC1009)", "R2000"},
                                               {no_root, "(AC1032)", "no OBJECTS section"},
                                               {bare, "(an early version)", "R2000"}}) {
    SCOPED_TRACE(version);
    const auto drawing = read(framed(lines));
    ASSERT_TRUE(drawing);
    const std::optional<std::string> why = drawing->why_no_object_data();
    ASSERT_TRUE(why);
    EXPECT_NE(why->find(version), why->npos) << *why;
    EXPECT_NE(why->find(remedy), why->npos) << *why;
    StandaloneStore store(*drawing);
    EXPECT_EQ(store.define_table(texts_table(L"T")), TableChange::Failed);
    EXPECT_TRUE(store.lacked_place());
    EXPECT_FALSE(attach(*drawing, 0x20, text_record(L"T", L"a")));
    EXPECT_FALSE(drawing->changed());
    EXPECT_EQ(drawing->to_bytes(), framed(lines));
  }
  EXPECT_FALSE(read(sample("AC1012"))->why_no_object_data());
}

// The sample with the table T of one Character column, and `record` as the data of its POINT.
std::string with_point_data(const std::string& record) {
  const std::string objects =
      "0 DICTIONARY\n5 40\n330 C\n100 AcDbDictionary\n280 1\n281 1\n3 T\n360 41\n"
      "0 XRECORD\n5 41\n330 40\n100 AcDbXrecord\n280 1\n90 1\n2 T\n300 V\n70 3\n1 \n"
      "0 DICTIONARY\n5 50\n330 21\n100 AcDbDictionary\n280 1\n281 1\n3 korvel_od\n360 51\n"
      "0 XRECORD\n5 51\n330 50\n100 AcDbXrecord\n280 1\n";
  const std::string lines = replaced(sample_lines("AC1032", objects + record), "350 D\n",
                                     "350 D\n3 KORVEL_OBJECT_DATA\n350 40\n");
  return replaced(lines, "0 POINT\n5 21\n",
                  "0 POINT\n5 21\n102 {ACAD_XDICTIONARY\n360 50\n102 }\n");
}

TEST(ObjectDataFile, ReadsWhatOtherProgramsWrote) {
  const std::pair<const char*, std::vector<ODRecord>> cases[] = {
      {"", {}},
      {"2 T\n1 a\n", {text_record(L"T", L"a")}},
      {"2 T\n2 T\n3 a\n3 b\n1 c\n", {text_record(L"T", L""), text_record(L"T", L"abc")}},
  };
  for (const auto& [data, records] : cases) {
    const auto drawing = read(framed(with_point_data(data)));
    ASSERT_TRUE(drawing);
    EXPECT_TRUE(drawing->notices().empty()) << data;
    EXPECT_TRUE(records_of(*drawing, 0x21) == records) << data;
    EXPECT_TRUE(attach(*drawing, 0x21, text_record(L"T", L"z")));
    EXPECT_EQ(difference(framed(with_point_data(data)), drawing->to_bytes()), "~51");
  }
}

TEST(ObjectDataFile, KeepsAndTellsWhatCannotBeRead) {
  const char* const records_kept =
      "the object data of one entity cannot be read; they are kept as they stand";
  const std::string good = with_point_data("2 T\n1 a\n");
  struct {
    const char* name;
    std::string lines;
    std::vector<std::string> notices;
  } const cases[] = {
      {"missing table", with_point_data("2 NO\n1 a\n"), {records_kept}},
      {"table named in another case", with_point_data("2 t\n1 a\n"), {records_kept}},
      {"value of another type", with_point_data("2 T\n40 1.5\n"), {records_kept}},
      {"a value too many", with_point_data("2 T\n1 a\n1 b\n"), {records_kept}},
      {"text without its last piece", with_point_data("2 T\n3 a\n"), {records_kept}},
      {"no record at all", replaced(good, "360 51", "360 5F"), {records_kept}},
      {"not an XRECORD", replaced(good, "0 XRECORD\n5 51", "0 PLACEHOLDER\n5 51"), {records_kept}},
      {"later format",
       replaced(replaced(good, "90 1\n2 T", "90 2\n2 T"), "\n3 T\n", "\n3 \\U+00D6T\n"),
       {"the definition of the object-data table '\xC3\x96T' cannot be read; it is kept as it "
        "stands",
        records_kept}},
      {"column of an unknown type",
       replaced(good, "300 V\n70 3", "300 V\n70 9"),
       {"the definition of the object-data table 'T' cannot be read; it is kept as it stands",
        records_kept}},
      {"object data of the CAD host",
       replaced(good, "0 ENDSEC\n0 EOF",
                "0 IRD_OBJ_RECORD\n5 60\n0 IRD_OBJ_RECORD\n5 61\n0 IRD_DSC_DICT\n5 62\n"
                "0 ENDSEC\n0 EOF"),
       {"the drawing holds 2 object-data records of the CAD host; they are kept, but not read "
        "here"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string file = framed(c.lines);
    const auto drawing = read(file);
    ASSERT_TRUE(drawing);
    EXPECT_EQ(drawing->notices(), c.notices);
    StandaloneStore store(*drawing);
    const bool readable = c.notices[0] != records_kept && c.notices.size() == 1;
    EXPECT_EQ(attach(*drawing, 0x21, text_record(L"T", L"b")), readable);
    ASSERT_TRUE(!readable || drawing->undo());
    ASSERT_EQ(store.define_table(texts_table(L"New")), TableChange::Done);
    ASSERT_TRUE(attach(*drawing, 0x20, text_record(L"New", L"b")));
    EXPECT_EQ(difference(file, drawing->to_bytes()), "+100 +101 +102 ~$HANDSEED ~20 ~40");
    const auto again = read(drawing->to_bytes());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->notices(), c.notices);
    EXPECT_EQ(records_of(*again, 0x20).size(), 1U);
  }
}

// The LINE 20, the POINT 21 and the LWPOLYLINE 22 get records, the LINE 1A of a block gets none.
TEST(ObjectDataFile, RecordsAreTakenWhereTheyAreFoundAgain) {
  const std::string good = with_point_data("2 T\n1 a\n");
  const std::string line = "0 LINE\n5 20\n";
  const std::string line_1a = "0 LINE\n5 1A\n";
  const auto reference = [](const char* handle) {
    return "102 {ACAD_XDICTIONARY\n360 "s + handle + "\n102 }\n";
  };
  struct {
    const char* name;
    std::string lines;
    const char* takers;
  } const cases[] = {
      {"sound", good, "20 21 22"},
      {"the table dictionary is missing", replaced(good, "350 40", "350 4F"), "20 22"},
      {"the table dictionary is the root", replaced(good, "350 40", "350 C"), ""},
      {"a null extension dictionary", replaced(good, "360 50", "360 0"), "20 21 22"},
      {"one record for two entities", replaced(good, "3 OTHER\n360 31", "3 KORVEL_OD\n360 51"),
       "20 21"},
      {"the root as extension dictionary", replaced(good, "360 50", "360 C"), "20 22"},
      {"the table dictionary as such", replaced(good, "360 50", "360 40"), "20 22"},
      {"one extension dictionary for two", replaced(good, "360 30", "360 50"), "20 21"},
      {"another's extension dictionary", replaced(good, line, line + reference("30")), "21 22"},
      {"two references", replaced(good, line, line + reference("0") + reference("0")), "21 22"},
      {"an open reference", replaced(good, line, line + "102 {ACAD_XDICTIONARY\n"), "21 22"},
      {"two entries of records", replaced(good, "3 korvel_od", "3 KORVEL_OD\n360 51\n3 korvel_od"),
       "20 22"},
      {"a handle in another group", replaced(good, line, "0 DIMSTYLE\n105 20\n"), "21 22"},
      {"a handle behind XDATA", replaced(good, line, "0 LINE\n1070 1\n5 20\n"), "21 22"},
      {"an entity's handle used twice", replaced(good, line_1a, "0 LINE\n5 20\n"), "21 22"},
      {"a dictionary's handle used twice", replaced(good, line_1a, "0 LINE\n5 50\n"), "20 22"},
      {"a part without an owner", replaced(good, line, "0 SEQEND\n5 20\n"), "21 22"},
      {"a reference to the next handle", replaced(good, line_1a, line_1a + reference("100")),
       "20 21 22"},
  };
  for (const auto& [name, lines, takers] : cases) {
    SCOPED_TRACE(name);
    const std::string file = framed(lines);
    const auto drawing = read(file);
    ASSERT_TRUE(drawing);
    EXPECT_EQ(difference(file, drawing->to_bytes()), "same");
    StandaloneStore store(*drawing);
    EXPECT_EQ(store.define_table(texts_table(L"New")) == TableChange::Done, *takers != '\0');
    const ODRecord record = text_record(L"New", L"b");
    std::string takes;
    std::map<std::uint64_t, std::size_t> counts = {{0x1A, 0}};
    for (const auto& [handle, digits] : {std::pair{0x20U, "20"}, {0x21U, "21"}, {0x22U, "22"}}) {
      if (attach(*drawing, handle, record)) takes += std::string(takes.empty() ? "" : " ") + digits;
      counts[handle] = records_of(*drawing, handle).size();
    }
    EXPECT_EQ(takes, takers);
    const auto again = read(drawing->to_bytes());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->notices().size(), drawing->notices().size());
    EXPECT_TRUE(StandaloneStore(*again).table_names() == store.table_names());
    for (const auto& [handle, count] : counts)
      EXPECT_EQ(records_of(*again, handle).size(), count) << handle;
  }
}

// Programs that compare handles as texts find the owners of what is added.
TEST(ObjectDataFile, RepeatsHandlesAsTheFileSpellsThem) {
  const auto drawing =
      read(framed(replaced(sample_lines("AC1032"), "0 LINE\n5 1A", "0 LINE\n5 1a")));
  ASSERT_EQ(StandaloneStore(*drawing).define_table(texts_table(L"T")), TableChange::Done);
  ASSERT_TRUE(attach(*drawing, 0x1A, text_record(L"T", L"a")));
  const std::string bytes = drawing->to_bytes();
  EXPECT_NE(bytes.find("DICTIONARY\n  5\n103\n330\n1a\n"), bytes.npos) << bytes;
}

}  // namespace
}  // namespace korvel
