#include "host/console/form.h"

#include <array>
#include <gtest/gtest.h>

namespace korvel {
namespace {

// One control of every kind; choosing a table refills the grid of values.
class SampleDialog : public Dialog {
 public:
  SampleDialog() : Dialog(L"Sample") {
    tables.fill({L"ROADS", L"PARCELS", L"PIPES", L"Pipes", L"A, B", L"*"});
    table.items = {L"ROADS", L"PARCELS"};
    rule.items = {L"", L"First", L"Last"};
    off.enabled = false;
    used.text = L"one\ntwo";
    criteria.rows = {{L"NAME", L"x"}};
    for (const ControlPointer control :
         {ControlPointer(&tables), ControlPointer(&table), ControlPointer(&rule),
          ControlPointer(&simultaneous), ControlPointer(&prefix), ControlPointer(&first),
          ControlPointer(&values), ControlPointer(&criteria), ControlPointer(&used),
          ControlPointer(&file), ControlPointer(&off)}) {
      add(control);
    }
    add(Button{L"Select all/nothing", ButtonRole::Act});
    add(Button{L"OK", ButtonRole::Accept});
    add(Button{L"Cancel", ButtonRole::Cancel});
  }

  void changed(const Control& control) override {
    ++changes;
    if (&control == &table) values.rows = {{L"WIDTH", L"1.0"}, {L"NAME", L""}, {L"7", L"a=b]"}};
  }

  CheckList tables{L"Tables:"};
  ListBox table{L"Table"};
  DropDown rule{L"Rule"};
  CheckBox simultaneous{L"Simultaneous"};
  Edit prefix{L"Prefix"};
  Spin first{L"First", 0, 10};
  Grid values{L"Values", {{L"Field", false}, {L"Value", true}}, false};
  Grid criteria{L"Criteria", {{L"What", false}, {L"Pattern", true}}, true};
  ReadOnlyText used{L"Used"};
  FileChooser file{L"File", L"Text files (*.txt)|*.txt||"};
  CheckBox off{L"Off"};
  int changes = 0;

 protected:
  void act(const Button&) override { tables.check_all(true); }
};

TEST(Form, PrintsOneLineAControl) {
  SampleDialog dialog;
  dialog.tables.items[0].checked = true;
  dialog.table.select(L"PARCELS");
  EXPECT_EQ(form_text(dialog),
            L"Sample\n"
            L"  Tables = [x] ROADS  [ ] PARCELS  [ ] PIPES  [ ] Pipes  [ ] \"A, B\"  [ ] *\n"
            L"  Table = ( ) ROADS  (*) PARCELS\n"
            L"  Rule = ( ) \"\"  ( ) First  ( ) Last\n"
            L"  Simultaneous = off\n"
            L"  Prefix = \n"
            L"  First = \n"
            L"  Values: Field | Value\n"
            L"  Criteria: What | Pattern\n"
            L"      1: NAME | x\n"
            L"  Used:\n      one\n      two\n"
            L"  File = \n"
            L"  Off (disabled) = off\n"
            L"  [Select all/nothing]  [OK]  [Cancel]\n");
}

TEST(Form, WrapsLongLists) {
  SampleDialog dialog;
  dialog.tables.fill(std::vector<std::wstring>(5, std::wstring(20, L'T')));
  const std::wstring text = form_text(dialog);
  const std::wstring item = L"[ ] " + std::wstring(20, L'T');
  EXPECT_NE(text.find(L"  Tables = " + item + L"  " + item + L"\n      " + item), text.npos);
}

// What a line does, seen in the line of the form that it concerns.
struct Accepted {
  std::wstring_view line;
  std::wstring_view shown;
};

TEST(Form, TakesLines) {
  const auto cases = std::to_array<Accepted>({
      {L"Tables = ROADS, parcels",
       L"Tables = [x] ROADS  [x] PARCELS  [ ] PIPES  [ ] Pipes  [ ] \"A, B\"  [ ] *\n"},
      {L"tables+=Pipes",
       L"Tables = [x] ROADS  [ ] PARCELS  [ ] PIPES  [x] Pipes  [ ] \"A, B\"  [ ] *\n"},
      {L"\"Tables\" = \"ROADS\"",
       L"Tables = [x] ROADS  [ ] PARCELS  [ ] PIPES  [ ] Pipes  [ ] \"A, B\"  [ ] *\n"},
      {L"Tables: -= RO",
       L"Tables = [ ] ROADS  [ ] PARCELS  [ ] PIPES  [ ] Pipes  [ ] \"A, B\"  [ ] *\n"},
      {L"Tables = *",
       L"Tables = [x] ROADS  [x] PARCELS  [x] PIPES  [x] Pipes  [x] \"A, B\"  [x] *\n"},
      {L"Tables = \"*\", \"A, B\"",
       L"Tables = [ ] ROADS  [ ] PARCELS  [ ] PIPES  [ ] Pipes  [x] \"A, B\"  [x] *\n"},
      {L"Tables =",
       L"Tables = [ ] ROADS  [ ] PARCELS  [ ] PIPES  [ ] Pipes  [ ] \"A, B\"  [ ] *\n"},
      {L"Table = p", L"  Table = ( ) ROADS  (*) PARCELS\n"},
      {L"Table =", L"  Table = ( ) ROADS  ( ) PARCELS\n"},
      {L"rul = last", L"  Rule = ( ) \"\"  ( ) First  (*) Last\n"},
      {L"Rule =", L"  Rule = (*) \"\"  ( ) First  ( ) Last\n"},
      {L"sim = YES", L"  Simultaneous = on\n"},
      {L"sim = 0", L"  Simultaneous = off\n"},
      {L"Prefix = a, b = \"c\"", L"  Prefix = a, b = \"c\"\n"},
      {L"Prefix = \" \"\"x \"", L"  Prefix =  \"x \n"},
      {L"First = -3x", L"  First = -3x\n"},
      {L"Value[WIDTH] = 3.5", L"1: WIDTH | 3.5\n"},
      {L"val[2] = 3.5", L"2: NAME | 3.5\n"},
      {L"\"Value\"[2] = 3.5", L"2: NAME | 3.5\n"},
      {L"Value[7] = by its name", L"3: 7 | by its name\n"},
      {L"Value[\"NAME\"] =", L"2: NAME | \"\"\n"},
      {L"Criteria += \"a, b\", *main*", L"2: \"a, b\" | *main*\n"},
      {L"Criteria += LONE", L"2: LONE | \"\"\n"},
      {L"Criteria -= 1", L"Criteria: What | Pattern\n  Used"},
      {L"Pattern[NAME] = [a]=b", L"1: NAME | [a]=b\n"},
      {L"File = \"a b.txt\"", L"  File = a b.txt\n"},
      {L"Select", L"Tables = [x] ROADS  [x] PARCELS  [x] PIPES  [x] Pipes  [x] \"A, B\"  [x] *\n"},
  });
  for (const auto& [line, shown] : cases) {
    SCOPED_TRACE(testing::Message() << std::wstring(line));
    SampleDialog dialog;
    dialog.tables.items[0].checked = true;
    dialog.table.select(L"ROADS");
    dialog.changed(dialog.table);
    const FormReply reply = apply_line(dialog, line);
    EXPECT_EQ(reply.kind, FormReply::Kind::Done) << reply.text;
    EXPECT_NE(form_text(dialog).find(shown), std::wstring::npos) << form_text(dialog);
  }
}

TEST(Form, AWrongLineSaysWhatThereIsAndChangesNothing) {
  const auto cases = std::to_array<std::array<std::wstring_view, 2>>({
      {L"Tables = ROADS, NONE",
       L"Tables has no \"NONE\"; it has: ROADS, PARCELS, PIPES, Pipes, \"A, B\", *."},
      {L"Tables = pipes",
       L"Tables has more than one \"pipes\"; it has: ROADS, PARCELS, PIPES, Pipes, \"A, B\", *."},
      {L"Tables = \"ROADS", L"A quote is not closed, or text follows it."},
      {L"Table = PIPES", L"Table has no \"PIPES\"; it has: ROADS, PARCELS."},
      {L"Table += ROADS", L"Table takes = alone."},
      {L"Simultaneous = maybe", L"Simultaneous is on or off."},
      {L"Value[9] = 1", L"There is no row \"9\"; the rows are: WIDTH, NAME, 7."},
      {L"Field[1] = 1", L"Field cannot be changed."},
      {L"Values += a, b", L"Values is changed cell by cell: Column[row] = text."},
      {L"Criteria += a, b, c", L"A row has from 1 to 2 cells."},
      {L"Criteria -= 2", L"There is no row \"2\"; the rows are: NAME."},
      {L"Used = x", L"Used cannot be changed."},
      {L"Off = on", L"Off is disabled."},
      {L"simul", L"Simultaneous is no button; it is set by: Simultaneous = ..."},
      {L"Nothing = 1",
       L"There is no \"Nothing\" here; there is: Tables, Table, Rule, Simultaneous, Prefix, First, "
       L"Values, Criteria, Used, File, Off, Value, Pattern; buttons: Select all/nothing, OK, "
       L"Cancel."},
  });
  for (const auto& [line, sentence] : cases) {
    SampleDialog dialog;
    dialog.tables.items[1].checked = true;
    dialog.table.select(L"ROADS");
    dialog.changed(dialog.table);
    const std::wstring before = form_text(dialog);
    const int changes = dialog.changes;
    const FormReply reply = apply_line(dialog, line);
    EXPECT_EQ(reply.kind, FormReply::Kind::Refused) << std::wstring(line);
    EXPECT_EQ(reply.text, sentence);
    EXPECT_EQ(form_text(dialog), before) << std::wstring(line);
    EXPECT_EQ(dialog.changes, changes) << std::wstring(line);
  }
}

// Two grids that share a heading; the columns of one repeat a fixed one.
class TwoGrids : public Dialog {
 public:
  TwoGrids() : Dialog(L"Grids") {
    filter.rows = {{L"a", L"b"}};
    records.rows = {{L"2F", L"c", L"d", L"e"}};
    add(&filter);
    add(&records);
  }
  Grid filter{L"Filter", {{L"Field", true}, {L"Value", true}}, true};
  Grid records{
      L"Records", {{L"Handle"}, {L"Value", true}, {L"Handle", true}, {L"A.B", true}}, false};
};

TEST(Form, ACellTakesItsGridsLabel) {
  const auto cases = std::to_array<Accepted>({
      {L"Records.Value[1] = x",
       L"1: a | b\n  Records: Handle | Value | Handle | A.B\n      1: 2F | x | d"},
      {L"rec.val[1] = x", L"1: 2F | x | d | e\n"},
      {L"Filter.Value[1] = x", L"1: a | x\n"},
      {L"handle[1] = x", L"1: 2F | c | x | e\n"},
      {L"A.B[1] = x", L"1: 2F | c | d | x\n"},
      {L"\"Records.A.B\"[1] = x", L"1: 2F | c | d | x\n"},
  });
  for (const auto& [line, shown] : cases) {
    TwoGrids dialog;
    EXPECT_EQ(apply_line(dialog, line).text, L"") << std::wstring(line);
    EXPECT_NE(form_text(dialog).find(shown), std::wstring::npos) << form_text(dialog);
  }
  TwoGrids dialog;
  EXPECT_EQ(apply_line(dialog, L"Value[1] = x").text,
            L"There is more than one \"Value\" here; there is: Filter, Records, Field, "
            L"Filter.Value, Records.Value, Handle, A.B; buttons: none.");
}

TEST(Form, TellsWhatElseChanged) {
  SampleDialog dialog;
  EXPECT_EQ(apply_line(dialog, L"Table = ROADS").text,
            L"  Values: Field | Value\n"
            L"      1: WIDTH | 1.0\n      2: NAME | \"\"\n      3: 7 | a=b]\n");
  (void)apply_line(dialog, L"Value[1] = 9");
  EXPECT_EQ(apply_line(dialog, L"Table = ROADS").text, L"");
  EXPECT_EQ(dialog.values.rows[0][1], L"9") << "choosing the chosen table again is no change";
}

TEST(Form, ButtonsCloseItByTheirRole) {
  SampleDialog dialog;
  EXPECT_EQ(apply_line(dialog, L"Select all/nothing").kind, FormReply::Kind::Done);
  EXPECT_EQ(apply_line(dialog, L"ok").kind, FormReply::Kind::Accepted);
  EXPECT_EQ(dialog.pressed(), L"OK");
  EXPECT_EQ(apply_line(dialog, L"can").kind, FormReply::Kind::Cancelled);
  SampleDialog other;
  other.cancel();
  EXPECT_EQ(other.pressed(), L"Cancel");
}

}  // namespace
}  // namespace korvel
