// MIF and MID files: their structure, and what another program reads of them.
#include "exchange/mif_export.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <unistd.h>

#include "exchange/mif_geometry.h"
#include "exchange/table_exchange.h"
#include "frame/session.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

constexpr double pi = std::numbers::pi;

std::string object_of(const Shape& shape) {
  std::string out;
  MifObjects().append(EntityGeometry{shape}, out);
  return out;
}

PolylineShape polyline(std::vector<Vertex> vertices, bool closed,
                       PolylineKind kind = PolylineKind::Light) {
  return {kind, std::move(vertices), {}, closed, false};
}

TEST(MifObjects, OfEveryShape) {
  const Point3 p{1.5, -2, 7};
  const Point3 q{1e7, 0.1, 0};
  const double inf = std::numeric_limits<double>::infinity();
  const PolylineShape square = polyline({{{0, 0, 0}}, {{4, 0, 0}}, {{4, 4, 0}}, {{0, 4, 0}}}, true);
  const PolylineShape hole = polyline({{{1, 1, 0}}, {{2, 1, 0}}, {{2, 2, 0}}}, true);
  const struct {
    Shape shape;
    const char* object;
  } cases[] = {
      {std::monostate{}, "None\r\n"},
      {PointShape{p}, "Point 1.5 -2.0\r\n"},
      {PointShape{{inf, 0, 0}}, "None\r\n"},
      {BlockReferenceShape{.position = p, .normal = {}, .block = L"B"}, "Point 1.5 -2.0\r\n"},
      {TextShape{p, {}, L"text", 2.5, 1}, "Point 1.5 -2.0\r\n"},
      {LineShape{p, q}, "Line 1.5 -2.0 10000000.0 0.1\r\n"},
      {LineShape{p, p}, "Point 1.5 -2.0\r\n"},
      {polyline({{p}, {q}}, false), "Pline 2\r\n1.5 -2.0\r\n10000000.0 0.1\r\n"},
      {polyline({{p}, {q}}, true), "Pline 3\r\n1.5 -2.0\r\n10000000.0 0.1\r\n1.5 -2.0\r\n"},
      {polyline({}, true), "None\r\n"},
      {hole, "Region 1\r\n  4\r\n1.0 1.0\r\n2.0 1.0\r\n2.0 2.0\r\n1.0 1.0\r\n"},
      {HatchShape{{square, hole}},
       "Region 2\r\n  5\r\n0.0 0.0\r\n4.0 0.0\r\n4.0 4.0\r\n0.0 4.0\r\n0.0 0.0\r\n"
       "  4\r\n1.0 1.0\r\n2.0 1.0\r\n2.0 2.0\r\n1.0 1.0\r\n"},
      {MlineShape{{p, q, {0, 0, 0}}, true},
       "Pline 4\r\n1.5 -2.0\r\n10000000.0 0.1\r\n0.0 0.0\r\n1.5 -2.0\r\n"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(object_of(c.shape), c.object);
  // Half a turn in steps of pi / 128; the ends are exact.
  const std::string arc = object_of(ArcShape{{0, 0, 0}, {}, {1, 0, 0}, 2, pi});
  EXPECT_THAT(arc, StartsWith("Pline 129\r\n2.0 0.0\r\n"));
  EXPECT_THAT(object_of(ArcShape{{0, 0, 0}, {}, {1, 0, 0}, 2, 2 * pi}),
              StartsWith("Region 1\r\n  257\r\n"));
  EXPECT_THAT(object_of(polyline({{{0, 0, 0}, 1}, {{2, 0, 0}}}, false)),
              StartsWith("Pline 129\r\n0.0 0.0\r\n"));
}

// Entities with the handles 2A, 2B, ... and a table of all types.
class Mif : public testing::Test {
 protected:
  Mif() : ids_(ids_of(host_.drawing(), 5)) {
    EXPECT_EQ(store_.define_table(table_), TableChange::Done);
  }
  ~Mif() override { fs::remove_all(folder_); }

  void add(std::size_t entity, const std::wstring& text, std::int32_t number = 1) {
    EXPECT_TRUE(store_.attach(ids_[entity], {L"T", {text, number, 0.1, Point3{1, 2, 3}}}));
    const auto records = store_.records_of(L"T");
    records->open(ids_[entity], OpenMode::Read);
    rows_.rows.push_back({ids_[entity], records->count()});
  }
  MifExport written() {
    return write_mif(store_, host_, rows_, mif_layout(store_, host_, table_, rows_));
  }
  // Says yes to the changed names, and to overwriting as far as it is asked.
  void run(bool accepted, std::initializer_list<bool> overwrite = {}) {
    host_.boxes = {accepted};
    host_.boxes.insert(host_.boxes.end(), overwrite);
    if (accepted) host_.files = {mif_};
    export_mif(session_, rows_);
  }
  static std::string content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  const ODTableDef table_{L"T",
                          {{L"2 names", ODType::Character, std::wstring()},
                           {L"N", ODType::Integer, 0},
                           {L"n", ODType::Real, 0.0},
                           {L"AT", ODType::Point, Point3{}}}};
  ScriptedHost host_{make_drawing({{L"0"}}, std::vector<EntitySpec>(5, {L"0"}))};
  StandaloneStore store_{host_.drawing()};
  RememberedChoices choices_;
  Palettes palettes_;
  Session session_{store_, host_, choices_, palettes_};
  EntityList ids_;
  RecordRows rows_{L"T", {0, 1, 2, 3}, {}};
  const fs::path folder_ =
      fs::path(testing::TempDir()) / ("korvel_mif_" + std::to_string(getpid()));
  const bool made_ = fs::create_directory(folder_);
  const fs::path mif_ = folder_ / "t.mif";
  const fs::path mid_ = fs::path(mif_).replace_extension(".mid");
};

TEST_F(Mif, HeadAndLines) {
  add(0, L"caf\x00E9, \"x\"");
  add(0, L"a\r\nb\nc", -5);
  rows_.rows.push_back({ids_[4], 1});  // has no record
  const MifExport result = written();
  EXPECT_EQ(
      result.mif,
      "Version 300\r\nCharset \"WindowsLatin1\"\r\nDelimiter \",\"\r\n"
      "CoordSys NonEarth Units \"m\" Bounds (0.0, 1.0) (2.0, 3.0)\r\nColumns 9\r\n"
      "  Handle Char(2)\r\n  Record Integer\r\n  _2_names Char(9)\r\n  N Integer\r\n  n_2 Float\r\n"
      "  AT_X Float\r\n  AT_Y Float\r\n  AT_Z Float\r\n  Layer Char(1)\r\nData\r\n\r\n"
      "Point 1.0 2.0\r\nPoint 1.0 2.0\r\n");
  EXPECT_EQ(result.mid,
            "\"2A\",1,\"caf\xE9, \"\"x\"\"\",1,0.1,1.0,2.0,3.0,\"0\"\r\n"
            "\"2A\",2,\"a b c\",-5,0.1,1.0,2.0,3.0,\"0\"\r\n");
  EXPECT_EQ(result.rows, 2U);
  EXPECT_THAT(result.broken_lines.examples(), ElementsAre(L"2A _2_names 'a\\r\\nb\\nc'"));
}

TEST_F(Mif, CharsetsByWhatTheTextsNeed) {
  const struct {
    const wchar_t* text;
    const char* name;
    const char* bytes;
  } cases[] = {
      {L"ascii \\ ~", "WindowsLatin1", "ascii \\ ~"},
      {L"\x20AC", "WindowsLatin1", "\x80"},
      {L"\x0141\x00F3", "WindowsLatin2", "\xA3\xF3"},
      {L"\x0416\x0443\x043A", "WindowsCyrillic", "\xC6\xF3\xEA"},
      {L"\x03A9", "WindowsGreek", "\xD9"},
      {L"\x011F", "WindowsTurkish", "\xF0"},
      {L"\x05D0", "WindowsHebrew", "\xE0"},
      {L"\x0141\x0416", "UTF-8", "\xC5\x81\xD0\x96"},
      {L"\x65E5", "UTF-8", "\xE6\x97\xA5"},
  };
  for (const auto& c : cases) {
    MifCharsetChoice choice;
    choice.see(L"seen before");
    choice.see(c.text);
    std::string bytes;
    choice.best().append(c.text, bytes);
    EXPECT_EQ(choice.best().name(), c.name);
    EXPECT_EQ(bytes, c.bytes);
  }
}

TEST_F(Mif, NamesAndWidths) {
  const std::wstring forty(40, L'a');
  ODTableDef wide{L"W", {}};
  for (const std::wstring& name :
       {forty + L"1", forty + L"2", std::wstring(L"A"), std::wstring(L"a"), std::wstring(L"a_2"),
        std::wstring(L"\x0416-\x0443"), std::wstring(L"handle"), std::wstring(L"Layer")})
    wide.columns.push_back({name, ODType::Character, std::wstring()});
  wide.columns.push_back({forty, ODType::Point, Point3{}});
  ASSERT_EQ(store_.define_table(wide), TableChange::Done);
  ODRecord record = default_record(wide);
  record.values[0] = std::wstring(300, L'\x0416');
  record.values[1] = std::wstring(20, L'x');
  ASSERT_TRUE(store_.attach(ids_[0], record));
  const RecordRows rows{L"W", {0, 1, 2, 3, 4, 5, 6, 7, 8}, {{ids_[0], 1}}};
  const MifLayout layout = mif_layout(store_, host_, wide, rows);
  std::vector<std::wstring> names;
  for (const MifColumn& column : layout.columns)
    names.insert(names.end(), column.names.begin(), column.names.end());
  const std::wstring most = forty.substr(0, 31);
  EXPECT_THAT(
      names, ElementsAre(L"Handle", L"Record", most, most.substr(2) + L"_2", L"A", L"a_2", L"a_2_2",
                         L"\x0416_\x0443", L"handle_2", L"Layer", most.substr(2) + L"_X",
                         most.substr(2) + L"_Y", most.substr(2) + L"_Z", L"Layer_2"));
  EXPECT_EQ(layout.changed_names.size(), 10U) << "all but Handle, Record, A and the first Layer";
  EXPECT_EQ(layout.columns[2].width, 254U);
  EXPECT_EQ(layout.columns[3].width, 20U);
  EXPECT_EQ(layout.columns[4].width, 1U);
  const MifExport result = write_mif(store_, host_, rows, layout);
  EXPECT_THAT(result.mid, StartsWith("\"2A\",1,\"" + std::string(254, '\xC6') + "\",\""));
  EXPECT_EQ(result.cut_texts.count(), 1U);
}

TEST_F(Mif, BothFilesOrNone) {
  add(0, L"x");
  run(false);
  EXPECT_FALSE(fs::exists(mif_)) << "the names were not accepted";
  EXPECT_EQ(host_.text_windows.back(),
            L"MIF export: changed column names\n2 names -> _2_names\nn -> n_2\n");
  run(true);
  EXPECT_EQ(host_.printed, L"Completed: 1 out of 1\n");
  const MifExport expected = written();
  EXPECT_EQ(content(mif_), expected.mif);
  EXPECT_EQ(content(mid_), expected.mid);

  add(1, L"y");
  run(true, {false});
  EXPECT_EQ(content(mid_), expected.mid) << "the old one was to stay";
  run(true, {true});
  EXPECT_EQ(content(mif_), written().mif);
  EXPECT_EQ(content(mid_), written().mid);
  EXPECT_EQ(std::distance(fs::directory_iterator(folder_), {}), 2) << "nothing is left over";
  const std::string old = content(mif_);
  add(2, L"z");
  fs::remove(mid_);
  fs::create_directory(mid_);
  host_.printed.clear();
  run(true, {true});
  EXPECT_THAT(host_.printed, HasSubstr(L".mid': it is a folder.\n"));
  EXPECT_EQ(content(mif_), old) << "stays when the other cannot be written";
}

TEST_F(Mif, AnotherProgramReadsIt) {
  if (std::system("ogrinfo --version > /dev/null 2>&1") != 0) {
    GTEST_SKIP() << "ogrinfo (package gdal-bin) is not there to read the files";
  }
  ASSERT_TRUE(host_.set_geometry(ids_[1], {LineShape{{0, 0, 0}, {5.25, -1, 0}}}));
  ASSERT_TRUE(host_.set_geometry(ids_[2], {ArcShape{{3, 4, 0}, {}, {1, 0, 0}, 2, 2 * pi}}));
  ASSERT_TRUE(host_.set_geometry(
      ids_[3], {polyline({{{0, 0, 0}}, {{4, 0, 0}}, {{4, 4, 0}}}, true, PolylineKind::ThreeD)}));
  ASSERT_TRUE(host_.set_geometry(
      ids_[4], {polyline({{{0, 0, 0}}, {{4, 0, 0}}, {{4, 4, 0}}}, false, PolylineKind::ThreeD)}));
  const std::vector<std::wstring> texts{L"caf\x00E9", L"a \"b\", c:\\new", L" \x0416 ", L"",
                                        L"\x65E5"};
  for (const bool utf8 : {false, true}) {
    SCOPED_TRACE(utf8);
    rows_.rows.clear();
    for (std::size_t i = 0; i < 5; ++i)
      add(i, !utf8 && (i == 2 || i == 4) ? L"plain" : texts[i], static_cast<std::int32_t>(i) - 2);
    const MifExport result = written();
    std::ofstream(mif_, std::ios::binary) << result.mif;
    std::ofstream(mid_, std::ios::binary) << result.mid;
    const fs::path listing = fs::path(mif_).replace_extension(".txt");
    ASSERT_EQ(std::system(
                  ("ogrinfo -ro -al " + mif_.string() + " > " + listing.string() + " 2> /dev/null")
                      .c_str()),
              0);
    const std::string read = content(listing);
    fs::remove(listing);
    std::vector<const char*> expected{"Feature Count: 5\n",
                                      "_2_names: String",
                                      "\nN: Integer",
                                      "\nn_2: Real",
                                      "\nAT_Z: Real",
                                      "_2_names (String) = caf\xC3\xA9\n",
                                      "_2_names (String) = a \"b\", c:\\new\n",
                                      "N (Integer) = -2\n",
                                      "n_2 (Real) = 0.1\n",
                                      "AT_Z (Real) = 3\n",
                                      "POINT (1 2)\n",
                                      "LINESTRING (0 0,5.25 -1",
                                      "POLYGON ((5 4,",
                                      "POLYGON ((0 0,4 0,4 4,0 0))\n",
                                      "LINESTRING (0 0,4 0,4 4)\n"};
    if (utf8) {
      expected.push_back("_2_names (String) =  \xD0\x96 \n");
      expected.push_back("_2_names (String) = \xE6\x97\xA5\n");
    }
    for (const char* const line : expected)
      EXPECT_NE(read.find(line), std::string::npos) << line;
  }
}

}  // namespace
}  // namespace korvel::test
