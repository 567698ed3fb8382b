// Tables of text into the drawing: what is written changes nothing, and every kind of row.
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <unistd.h>

#include "exchange/csv_export.h"
#include "exchange/csv_plan.h"
#include "exchange/table_exchange.h"
#include "exchange/value_difference.h"
#include "frame/command_frame.h"
#include "frame/dialog.h"
#include "frame/session.h"
#include "tests/host/failing_host.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Csv : public testing::Test {
 protected:
  // Entities 2A to 2C can be changed; 2D lies on a locked layer.
  Csv() : ids_(ids_of(host_.drawing(), 4)) {
    EXPECT_EQ(store_.define_table(table_), TableChange::Done);
    add(0, {1, L"one", 0.5, Point3{1, 2, 3}});
    add(0, {2, L"two", 2.0, Point3{}});
    add(1, {3, L"three", -0.0, Point3{0.1, 0, -1}});
    add(3, {4, L"locked", 4.0, Point3{}});
  }
  ~Csv() override { std::filesystem::remove(file_); }

  struct Values {
    std::int32_t number;
    std::wstring text;
    double real;
    Point3 point;
  };
  // Past the lock of a layer, as a drawing comes with such records.
  void add(std::size_t entity, const Values& v) {
    OdTables& od = host_.drawing().od();
    const std::vector<ODValueView> views{v.number, std::wstring_view(v.text), v.real, v.point};
    od.append_record(Drawing::index_of(ids_[entity]), od.add_row(0, views));
  }

  RecordRows all_rows() {
    RecordRows rows{L"T", {0, 1, 2, 3}, {}};
    const auto records = store_.records_of(L"T");
    for (const EntityId entity : ids_) {
      records->open(entity, OpenMode::Read);
      for (std::int32_t number = 1; number <= records->count(); ++number)
        rows.rows.push_back({entity, number});
    }
    return rows;
  }
  std::string written(const CsvFormat& format = {}) {
    return write_csv(store_, host_, table_, all_rows(), format).bytes;
  }
  // Without the mark and the line of the columns.
  std::string lines() {
    const std::string text = written();
    return text.substr(text.find("\r\n") + 2);
  }

  CsvPlan plan(std::string text, const CsvFormat& format = {}) {
    text_ = std::move(text);
    return plan_csv(store_, host_, table_, text_, format);
  }
  std::size_t apply(const CsvPlan& plan) { return apply_csv(store_, host_, table_, plan); }

  void save(std::string_view text) { std::ofstream(file_, std::ios::binary) << text; }

  const ODTableDef table_{L"T",
                          {{L"N", ODType::Integer, 9},
                           {L"C", ODType::Character, std::wstring(L"none")},
                           {L"R", ODType::Real, 1.5},
                           {L"P", ODType::Point, Point3{7, 8, 9}}}};
  ScriptedHost host_{
      make_drawing({{L"0"}, {.name = L"L", .locked = true}}, {{L"0"}, {L"0"}, {L"0"}, {L"L"}})};
  StandaloneStore store_{host_.drawing()};
  RememberedChoices choices_;
  Palettes palettes_;
  Session session_{store_, host_, choices_, palettes_};
  EntityList ids_;
  std::string text_;
  const std::filesystem::path file_ = std::filesystem::path(testing::TempDir()) /
                                      ("korvel_csv_" + std::to_string(getpid()) + ".csv");
};

TEST_F(Csv, IsWrittenInTheOrderOfRowsAndColumns) {
  const RecordRows rows{L"T", {2, 0}, {{ids_[1], 1}, {ids_[0], 2}, {ids_[0], 1}, {ids_[0], 3}}};
  const CsvExport result = write_csv(store_, host_, table_, rows, {';'});
  EXPECT_EQ(result.bytes,
            "\xEF\xBB\xBFHandle;Record;R;N\r\n2B;1;-0.0;3\r\n2A;2;2.0;2\r\n2A;1;0.5;1\r\n");
  EXPECT_EQ(result.rows, 3U);
}

TEST_F(Csv, WhatIsWrittenChangesNothing) {
  const std::wstring lone_surrogate(1, static_cast<wchar_t>(0xD800));
  for (const std::wstring& text :
       {std::wstring(L"\"quoted\", with; separators\t"), std::wstring(L"two\r\nlines\nand\rmore"),
        std::wstring(L" blanks "), std::wstring(L"007"), from_utf8("\xF0\x90\x90\xB7 \xC3\xA9"),
        lone_surrogate, std::wstring()})
    add(2, {std::numeric_limits<std::int32_t>::min(), text, 4.9e-324, {0.1 + 0.2, -0.0, 1e300}});
  for (const CsvFormat& format : {CsvFormat{','}, {';'}, {';', ','}, {'\t'}, {'\t', ','}, {'|'}}) {
    const CsvPlan again = plan(written(format).substr(3), format);
    EXPECT_FALSE(again.damage);
    EXPECT_EQ(again.unchanged, all_rows().rows.size());
    EXPECT_EQ(again.unchanged, again.rows);
    EXPECT_TRUE(again.changes.empty() && again.additions.empty());
  }
}

TEST_F(Csv, EveryKindOfRow) {
  const CsvPlan made = plan(
      "Handle,Record,R,Extra,C,N,P\n"
      "2A,1,0.50,x,one,+1,\"1, 2, 3.000\"\n"  // line 2: the same values
      "2A,2,,x,two,,\n"                       // nothing for numbers
      "2a,3,2.5,x,new,,\n"                    // added
      "02A,,,x,\"\",5,\n"                     // added
      "2A,5,,x,,,\n"                          // added: the fifth
      "2A,3,,x,,,\n"                          // came before
      "2A,9,,x,,,\n"                          // is not there
      "2A,x,,x,,,\n"                          // no number
      "2B,1,12abc,x,THREE,7.0,\"1,2\"\n"      // line 10: two of the cells are taken
      "\n"
      "2B,1,1,x,,,\n"                     // came before
      "1E+05,1,1,x,,,\n"                  // no such entity
      "2D,1,4,x,locked,4,\"0,0,0\"\n"     // as it is
      "2D,1,5,x,,,\n"                     // came before
      "2D,2,,x,,,\n"                      // locked
      "2C,1,1e999,x,none,99999999999,\n"  // added; what is refused takes the default
  );
  ASSERT_FALSE(made.damage);
  EXPECT_EQ(made.rows, 15U);
  EXPECT_EQ(made.unchanged, 3U);
  EXPECT_THAT(made.ignored_columns.examples(), ElementsAre(L"Extra"));
  EXPECT_THAT(made.changed.examples(),
              ElementsAre(L"line 10: handle 2B record 1: C three -> THREE, N 3 -> 7"));
  EXPECT_THAT(made.added.examples(),
              ElementsAre(L"line 4: handle 2a record 3", L"line 5: handle 02A record 4",
                          L"line 6: handle 2A record 5", L"line 17: handle 2C record 1"));
  EXPECT_THAT(made.duplicates.examples(),
              ElementsAre(L"line 7: handle 2A record 3", L"line 12: handle 2B record 1",
                          L"line 15: handle 2D record 1"));
  EXPECT_THAT(made.missing_records.examples(),
              ElementsAre(L"line 8: handle 2A record 9", L"line 9: handle 2A record x"));
  EXPECT_THAT(made.unknown_handles.examples(), ElementsAre(L"line 13: 1E+05"));
  EXPECT_THAT(made.locked.examples(), ElementsAre(L"line 16: handle 2D record 2"));
  EXPECT_THAT(made.refused.examples(),
              ElementsAre(L"line 10: R '12abc'", L"line 10: P '1,2'", L"line 17: R '1e999'",
                          L"line 17: N '99999999999'"));

  EXPECT_EQ(apply(made), 5U);
  EXPECT_EQ(lines(),
            "2A,1,1,one,0.5,\"1.0,2.0,3.0\"\r\n"
            "2A,2,2,two,2.0,\"0.0,0.0,0.0\"\r\n"
            "2A,3,9,new,2.5,\"7.0,8.0,9.0\"\r\n"
            "2A,4,5,,1.5,\"7.0,8.0,9.0\"\r\n"
            "2A,5,9,,1.5,\"7.0,8.0,9.0\"\r\n"
            "2B,1,7,THREE,-0.0,\"0.1,0.0,-1.0\"\r\n"
            "2C,1,9,none,1.5,\"7.0,8.0,9.0\"\r\n"
            "2D,1,4,locked,4.0,\"0.0,0.0,0.0\"\r\n");
}

TEST_F(Csv, ThePreviewStaysShortWhateverTheColumnsAre) {
  const CsvPlan made = plan("Handle,Record,\"two\rlines\"," + std::string(50'000, 'x') +
                            std::string(30, ',') + "\n");
  ASSERT_FALSE(made.damage);
  const std::wstring preview = preview_text(made);
  EXPECT_NE(preview.find(L"Column not in the table: two\\rlines\n"), preview.npos);
  EXPECT_NE(preview.find(L"Further columns not in the table: 12\n"), preview.npos);
  EXPECT_LT(preview.size(), 2'000U);
}

TEST_F(Csv, RecordsAreMetOnceInAnyOrder) {
  const CsvPlan made =
      plan("Handle,Record,N\n2B,1,10\n2A,2,11\n2A,1,12\n2A,2,13\n2B,1,14\n2A,1,15\n");
  EXPECT_EQ(made.changes.size(), 3U);
  EXPECT_EQ(made.duplicates.count(), 3U);
  EXPECT_EQ(apply(made), 3U);
  EXPECT_THAT(lines(), HasSubstr("2A,1,12,one,0.5"));
  EXPECT_THAT(lines(), HasSubstr("2A,2,11,two,2.0"));
}

TEST_F(Csv, ARecordIsAddedToTheEntityThatWasChangedLast) {
  EXPECT_EQ(apply(plan("Handle,Record,N\n2A,1,10\n2A,3,30\n")), 2U);
  EXPECT_THAT(lines(), HasSubstr("2A,3,30,none"));
}

// Far more than are passed one by one.
TEST_F(Csv, ManyRecordsOfOneEntityAreReachedInAnyOrder) {
  RecordRows rows{L"T", {0}, {}};
  std::string falling;
  for (std::int32_t number = 1; number <= 40; ++number) {
    add(2, {number, L"", 0, {}});
    rows.rows.insert(rows.rows.begin(), {ids_[2], number});
    falling.insert(0, "2C," + std::to_string(number) + "," + std::to_string(number) + "\r\n");
  }
  rows.rows.push_back({ids_[2], 41});
  const std::string text = "Handle,Record,N\r\n" + falling;
  EXPECT_EQ(write_csv(store_, host_, table_, rows, {}).bytes.substr(3), text);
  EXPECT_EQ(plan(text).unchanged, 40U);
  EXPECT_EQ(apply(plan("Handle,Record,N\n2C,39,390\n2C,2,20\n2C,40,400\n")), 3U);
  EXPECT_THAT(lines(), testing::AllOf(HasSubstr("2C,2,20,"), HasSubstr("2C,38,38,"),
                                      HasSubstr("2C,39,390,"), HasSubstr("2C,40,400,")));
}

TEST_F(Csv, ACellSaysExactlyOneValueOrIsRefused) {
  const struct {
    char decimal_sign;
    const char* column;
    const char* cell;
    const wchar_t* verdict;  // null: refused
  } cases[] = {
      {'.', "N", "12abc", nullptr},
      {'.', "N", "7.5", nullptr},
      {'.', "N", "99999999999", nullptr},
      {'.', "N", "-2147483648", L"N 1 -> -2147483648"},
      {'.', "N", " 3.0 ", L"N 1 -> 3"},
      {'.', "N", "2e3", L"N 1 -> 2000"},
      {'.', "N", "3.00000000000000000001", nullptr},
      {'.', "N", "3,0", nullptr},
      {',', "N", "3,0", L"N 1 -> 3"},
      {',', "N", "3.0", nullptr},
      {',', "N", "1.000", nullptr},
      {'.', "R", "3,5", nullptr},
      {'.', "R", "+3.5", L"R 0.5 -> 3.5"},
      {'.', "R", "+-3", nullptr},
      {'.', "R", "3 5", nullptr},
      {'.', "R", "inf", nullptr},
      {'.', "R", "1e-400", nullptr},
      {'.', "R", "0x10", nullptr},
      {',', "R", "2,5", L"R 0.5 -> 2.5"},
      {',', "R", "2.5", nullptr},
      {',', "R", "1.234,5", nullptr},
      {',', "R", "-1e2", L"R 0.5 -> -100.0"},
      {',', "P", "1.5, 2 ,3", L"P 1.000000,2.000000,3.000000 -> 1.500000,2.000000,3.000000"},
      {',', "P", "1,2,3,4", nullptr},
  };
  for (const auto& c : cases) {
    const CsvPlan made = plan(std::string("Handle;Record;") + c.column + "\n2A;1;" + c.cell + "\n",
                              {';', c.decimal_sign});
    EXPECT_EQ(made.refused.count(), c.verdict == nullptr ? 1U : 0U) << c.cell;
    EXPECT_EQ(made.unchanged, 0U) << c.cell;
    ASSERT_EQ(made.changes.size(), c.verdict == nullptr ? 0U : 1U) << c.cell;
    if (c.verdict != nullptr) {
      EXPECT_EQ(made.changed.examples().front(),
                L"line 2: handle 2A record 1: " + std::wstring(c.verdict));
    }
  }
}

// The export writes it, so an import must not lose it.
TEST_F(Csv, TheSignOfAZeroCounts) {
  EXPECT_EQ(plan("Handle,Record,R\n2B,1,-0.0\n").unchanged, 1U);
  EXPECT_EQ(plan("Handle,Record,R\n2B,1,0.0\n").changes.size(), 1U);
  EXPECT_EQ(plan("Handle,Record,P\n2B,1,\"0.1,-0,-1\"\n").changes.size(), 1U);
}

TEST_F(Csv, ThePreviewShowsWhereValuesDiffer) {
  const std::wstring alike(60, L'a');
  const std::wstring longer = alike + L"b";
  const struct {
    ODValueView before;
    ODValueView after;
    std::wstring text;
  } cases[] = {
      {0.3, 0.1 + 0.2, L"0.3 -> 0.30000000000000004"},
      {1e-13, 0.0, L"1e-13 -> 0.0"},
      {Point3{1e-7, 0, 0}, Point3{}, L"1e-07,0.0,0.0 -> 0.0,0.0,0.0"},
      {L"a\r\nb", L"a\nb", L"a\\r\\nb -> a\\nb"},
      {L"a\\nb", L"a\nb", L"a\\\\nb -> a\\nb"},
      {alike, longer, L"...aaaaa -> ...aaaaab"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(difference_text(c.before, c.after), c.text);
}

TEST_F(Csv, EntitiesOutsideModelSpaceAreUnknown) {
  ScriptedHost host(make_drawing({{L"0"}}, {{L"0", true}, {L"0", false, L"B", {{L"A", L"x"}}}}));
  StandaloneStore store(host.drawing());
  ASSERT_EQ(store.define_table(table_), TableChange::Done);
  text_ = "Handle,Record,N\n2A,,1\n2B,,1\n1000,,1\n";
  const CsvPlan made = plan_csv(store, host, table_, text_, {});
  EXPECT_THAT(made.unknown_handles.examples(), ElementsAre(L"line 2: 2A", L"line 4: 1000"));
  EXPECT_EQ(made.additions.size(), 1U);
}

TEST_F(Csv, WhatIsRefusedIsNotCounted) {
  Failures failures;
  failures.update = {ids_[1]};
  failures.attach = {ids_[2]};
  FailingStore store(store_, failures);
  text_ = "Handle,Record,N\n2A,1,10\n2B,1,10\n2C,1,10\n2A,3,10\n";
  const CsvPlan made = plan_csv(store, host_, table_, text_, {});
  EXPECT_EQ(made.changes.size(), 2U);
  EXPECT_EQ(made.additions.size(), 2U);
  EXPECT_EQ(apply_csv(store, host_, table_, made), 2U);
  EXPECT_EQ(plan("Handle,Record,N\n2A,1,10\n2A,3,10\n2B,1,3\n").unchanged, 3U);
}

TEST_F(Csv, ATableThatIsGoneIsNotExported) {
  export_csv(session_, {L"GONE", {}, {}});
  export_csv(session_, {L"T", {0, 4}, {}});
  export_mif(session_, {L"T", {4}, {}});
  import_csv(session_, L"GONE");
  EXPECT_EQ(host_.printed,
            L"Error: table 'GONE' not found.\nError: column not found.\n"
            L"Error: column not found.\nError: table 'GONE' not found.\n");
}

TEST_F(Csv, ColumnsMayBeNamedLikeThoseOfTheRecord) {
  const ODTableDef odd{L"O", {{L"Record", ODType::Integer, 0}, {L"Handle", ODType::Integer, 0}}};
  ASSERT_EQ(store_.define_table(odd), TableChange::Done);
  ASSERT_TRUE(store_.attach(ids_[0], {L"O", {5, 6}}));
  std::string text = write_csv(store_, host_, odd, {L"O", {0, 1}, {{ids_[0], 1}}}, {}).bytes;
  EXPECT_EQ(text.substr(3), "Handle,Record,Record,Handle\r\n2A,1,5,6\r\n");
  text.erase(0, 3);
  EXPECT_EQ(plan_csv(store_, host_, odd, text, {}).unchanged, 1U);
}

TEST_F(Csv, DamagedTextsAreRefusedWhole) {
  const struct {
    const char* text;
    const wchar_t* damage;
  } cases[] = {
      {"", L"the file is empty"},
      {"Handle;Record;N\n2A;1;5\n",
       L"line 1: the columns 'Handle' and 'Record' are missing, or the separator is another one"},
      {"Handle,Record,N,N\n2A,1,5,5\n", L"line 1: the column 'N' is there twice"},
      {"Handle,Record,N\n2A,1,5\n2A,2\n", L"line 3: 2 fields instead of 3"},
      {"Handle,Record,N\n2A,1,5\n\"2A,2,6\n", L"line 3: the quote is not closed"},
      {"Handle,Record,N\n2A,1,\"5\"6\n", L"line 2: there is text behind the closing quote"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(plan(c.text).damage, std::wstring(c.damage)) << c.text;
}

TEST_F(Csv, TheMenuAsksBeforeItChanges) {
  const auto press_ok = [](Dialog& dialog) { return dialog.press(0); };
  const std::string before = lines();
  for (const bool wanted : {false, true}) {
    save("Handle,Record,N\n2A,1,77\n2A,2,2\n");
    host_.dialogs = {press_ok};
    host_.files = {file_};
    host_.boxes = {wanted};
    host_.printed.clear();
    import_csv(session_, L"T");
    EXPECT_EQ(host_.printed, wanted ? L"Completed: 1 out of 2\n" : L"Completed: 0 out of 2\n");
    EXPECT_EQ(lines() == before, !wanted);
  }
  EXPECT_THAT(host_.text_windows.back(),
              HasSubstr(L"Rows: 2\nChanged: 1\n  line 2: handle 2A record 1: N 1 -> 77\n"
                        L"Added: 0\nUnchanged: 1\n"));
  EXPECT_TRUE(host_.drawing().undo());
  EXPECT_EQ(lines(), before) << "one step of UNDO";

  save("Handle,Record,N\n2A,1,77\n2A,2,\"2\n");
  host_.dialogs = {press_ok};
  host_.files = {file_};
  host_.printed.clear();
  import_csv(session_, L"T");
  EXPECT_THAT(host_.printed, HasSubstr(L"Error: '"));
  EXPECT_THAT(host_.printed, HasSubstr(L".csv', line 3: the quote is not closed.\n"));
  EXPECT_EQ(lines(), before);
}

TEST_F(Csv, EncodingsOfSpreadsheetsAreRead) {
  const std::wstring text = L"Handle\tRecord\tC\r\n2A\t1\t\x00E9\r\n";
  std::string utf16("\xFF\xFE");
  for (const wchar_t c : text)
    utf16 += {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
  for (const std::string& bytes : {utf16, "\xEF\xBB\xBF" + to_utf8(text), to_utf8(text),
                                   std::string("Handle\tRecord\tC\r\n2A\t1\t\xE9\r\n")}) {
    save(bytes);
    host_.dialogs = {[](Dialog& dialog) {
      std::get<CheckBox*>(dialog.controls()[1])->on = true;
      return dialog.press(0);
    }};
    host_.files = {file_};
    host_.boxes = {false};
    import_csv(session_, L"T");
    EXPECT_THAT(host_.text_windows.back(), HasSubstr(L"C one -> \x00E9\n"));
  }
}

TEST_F(Csv, TheExportWarnsOfSpreadsheets) {
  add(2, {0, L"007", 0.1 + 0.2, {}});
  add(2, {0, L"=1+1", 0, {}});
  add(2, {0, L"1-2", 0, {}});
  add(2, {0, L"010", 0, {}});
  host_.dialogs = {[](Dialog& dialog) {
    std::get<Edit*>(dialog.controls()[0])->text = L";";
    return dialog.press(0);
  }};
  host_.files = {file_};
  export_csv(session_, all_rows());
  EXPECT_EQ(host_.printed,
            L"Warning: a spreadsheet program would take texts for numbers: 2 (2C C '007', 2C C "
            L"'010')\n"
            L"Warning: a spreadsheet program would take texts for dates or times: 1 (2C C '1-2')\n"
            L"Warning: a spreadsheet program would compute texts as formulas: 1 (2C C '=1+1')\n"
            L"Warning: a spreadsheet program would round reals of more than 15 digits: 1 (2C R "
            L"'0.30000000000000004')\n"
            L"Completed: 8 out of 8\n");
  std::ifstream file(file_, std::ios::binary);
  const std::string saved{std::istreambuf_iterator<char>(file), {}};
  EXPECT_EQ(saved, written({';'}));
}

TEST_F(Csv, ASeparatorThatCannotBeIsRefused) {
  for (const wchar_t* const separator :
       {L"", L",,", L"\"", L"a", L"1", L".", L"-", L"\x00E9", L","}) {
    host_.dialogs = {[separator](Dialog& dialog) {
      std::get<Edit*>(dialog.controls()[0])->text = separator;
      std::get<DropDown*>(dialog.controls()[2])->select(L",");
      return dialog.press(0);
    }};
    host_.printed.clear();
    export_csv(session_, all_rows());
    EXPECT_EQ(host_.printed, text(Message::InvalidParameters));
  }
}

}  // namespace
}  // namespace korvel::test
