// The table editor: its lines, its columns, its selection, and what its menus reach.
#include "palettes/table_editor.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

#include "frame/command_handlers.h"
#include "palettes/chosen_rows.h"
#include "palettes/sort_keys.h"
#include "tests/host/scripted_host.h"
#include "tests/host/test_drawing.h"

namespace korvel::test {
namespace {

using Texts = std::vector<std::wstring>;

// Four points, the last on a locked layer. The records of T are "b" 3, "a" 1, "B" 2, "" 1 and "é" 9
// on the points 0, 0, 1, 2 and 3; point 2 has a record of U before its own of T.
class TableEditing : public testing::Test {
 protected:
  void SetUp() override {
    using enum ODType;
    for (const wchar_t* const name : {L"T", L"U"}) {
      const ODTableDef table{std::wstring(name),
                             {{L"NAME", Character, std::wstring()}, {L"N", Integer, 0}}};
      ASSERT_EQ(store_.define_table(table), TableChange::Done);
    }
    attach(0, L"T", L"b", 3);
    attach(0, L"T", L"a", 1);
    attach(1, L"T", L"B", 2);
    attach(2, L"U", L"u", 7);
    attach(2, L"T", L"", 1);
    attach(3, L"T", L"\u00E9", 9);
    host_.drawing().change_layer([this] {
      Layer layer = host_.layers()[1];
      layer.locked = true;
      return layer;
    }());
  }
  void attach(std::size_t entity, std::wstring table, std::wstring name, int number) {
    ASSERT_TRUE(store_.attach(ids_[entity], {std::move(table), {std::move(name), number}}));
  }

  // Shows the palette and lets the user act.
  void in_palette(const std::function<void(TableEditor&, GridLines&)>& act) {
    host_.palettes.push_back([&act](Palette& palette) {
      auto& editor = dynamic_cast<TableEditor&>(palette);
      act(editor, *editor.records.lines);
    });
    show_table_editor(session_);
  }
  static void press(Dialog& dialog, std::wstring_view label) {
    const auto found = std::ranges::find(dialog.buttons(), label, &Button::label);
    ASSERT_NE(found, dialog.buttons().end()) << to_utf8(label);
    EXPECT_FALSE(dialog.press(static_cast<std::size_t>(found - dialog.buttons().begin())));
  }
  static Texts lines_of(const GridLines& grid) {
    Texts texts;
    for (std::size_t i = 0; i < grid.line_count(); ++i) {
      const GridLines::Line line = grid.line(i);
      std::wstring text;
      for (const std::wstring& cell : line.cells)
        text += (text.empty() ? L"" : L" ") + (cell.empty() ? std::wstring(L"-") : cell);
      texts.push_back(line.chosen ? L'*' + text : text);
    }
    return texts;
  }
  static void set(TableEditor& editor, DropDown& list, std::wstring_view item) {
    list.select(item);
    ASSERT_TRUE(list.selected);
    editor.changed(list);
  }

  ScriptedHost host_{make_drawing({{L"0"}, {L"L"}}, {{L"0"}, {L"0"}, {L"0"}, {L"L"}})};
  StandaloneStore store_{host_.drawing()};
  RememberedChoices choices_;
  Palettes palettes_;
  Session session_{store_, host_, choices_, palettes_};
  EntityList ids_ = host_.model_space();
};

TEST_F(TableEditing, LinesAreFilteredSortedAndGrouped) {
  in_palette([](TableEditor& editor, GridLines& lines) {
    const Texts as_drawn = {L"2A 1 b 3", L"2A 2 a 1", L"2B 1 B 2", L"2C 1 - 1", L"2D 1 \u00E9 9"};
    EXPECT_EQ(lines_of(lines), as_drawn);
    set(editor, editor.sort_by, L"NAME");
    EXPECT_EQ(lines_of(lines),
              (Texts{L"2C 1 - 1", L"2A 2 a 1", L"2B 1 B 2", L"2A 1 b 3", L"2D 1 \u00E9 9"}));
    editor.descending.on = true;
    set(editor, editor.sort_by, L"N");
    EXPECT_EQ(lines_of(lines),
              (Texts{L"2D 1 \u00E9 9", L"2A 1 b 3", L"2B 1 B 2", L"2A 2 a 1", L"2C 1 - 1"}));
    set(editor, editor.group_by, L"Handle");
    EXPECT_EQ(lines_of(lines),
              (Texts{L"Handle: 2A (2)", L"2A 1 b 3", L"2A 2 a 1", L"Handle: 2B (1)", L"2B 1 B 2",
                     L"Handle: 2C (1)", L"2C 1 - 1", L"Handle: 2D (1)", L"2D 1 \u00E9 9"}));
    press(editor, L"Collapse all groups");
    lines.activate(1);
    lines.choose(0, true);
    EXPECT_EQ(lines_of(lines), (Texts{L"*Handle: 2A (2)", L"Handle: 2B (1)", L"2B 1 B 2",
                                      L"Handle: 2C (1)", L"Handle: 2D (1)"}));
    press(editor, L"Disable grouping");
    set(editor, editor.sort_by, L"");
    EXPECT_EQ(lines_of(lines),
              (Texts{L"*2A 1 b 3", L"*2A 2 a 1", L"2B 1 B 2", L"2C 1 - 1", L"2D 1 \u00E9 9"}));
    editor.filter.rows = {{L"NAME", L"B"}, {L"N", L"*"}};
    editor.changed(editor.filter);
    EXPECT_EQ(lines_of(lines), (Texts{L"*2A 1 b 3", L"2B 1 B 2"}));
    editor.filter.rows = {{L"N", L">2"}};
    editor.extended.on = true;
    editor.changed(editor.extended);
    EXPECT_EQ(lines_of(lines), (Texts{L"*2A 1 b 3", L"2D 1 \u00E9 9"}));
    editor.filter.rows = {{L"NOT THERE", L""}};
    editor.changed(editor.filter);
    EXPECT_EQ(lines_of(lines), Texts{});
  });
}

TEST_F(TableEditing, ACellTakesAWholeValueOfItsTypeOnly) {
  in_palette([this](TableEditor& editor, GridLines& lines) {
    EXPECT_EQ(lines.set_cell(1, 3, L" 12 "), std::nullopt);
    EXPECT_EQ(lines.set_cell(1, 2, L" x,\"y"), std::nullopt);
    EXPECT_EQ(lines.set_cell(1, 3, L"12abc"),
              L"N takes a whole number from -2147483648 to 2147483647.");
    EXPECT_EQ(lines.set_cell(4, 3, L"1"),
              L"The record cannot be written: its entity is on a locked layer, or it is gone.");
    EXPECT_FALSE(lines.columns()[0].editable || lines.columns()[1].editable);
    EXPECT_EQ(lines_of(lines)[1], L"2A 2  x,\"y 12");
    EXPECT_EQ(lines_of(lines)[4], L"2D 1 \u00E9 9");
    host_.drawing().undo();
    host_.drawing().undo();
    press(editor, L"Refresh");
    EXPECT_EQ(lines_of(lines)[1], L"2A 2 a 1") << "each cell is a step of its own";
    host_.drawing().erase(ids_[0]);
    EXPECT_EQ(lines.set_cell(1, 3, L"1"),
              L"The record cannot be written: its entity is on a locked layer, or it is gone.");
    EXPECT_EQ(lines_of(lines)[1], L"- 2 - -");
  });
}

TEST_F(TableEditing, RowsFollowTheSelectionAndLeadIt) {
  host_.set_pick_first({ids_[0]});
  in_palette([this](TableEditor& editor, GridLines& lines) {
    lines.choose(2, true);
    editor.changed(editor.records);
    EXPECT_EQ(host_.pick_first(), EntityList{ids_[0]}) << "not unless it is asked for";
    editor.synchronize.on = true;
    editor.changed(editor.synchronize);
    EXPECT_EQ(lines_of(lines),
              (Texts{L"*2A 1 b 3", L"*2A 2 a 1", L"2B 1 B 2", L"2C 1 - 1", L"2D 1 \u00E9 9"}));
    lines.choose(0, false);
    lines.choose(3, true);
    editor.changed(editor.records);
    EXPECT_EQ(host_.pick_first(), (EntityList{ids_[0], ids_[2]}));
  });
  host_.set_pick_first({ids_[3]});
  in_palette([](TableEditor& editor, GridLines& lines) {
    EXPECT_EQ(lines_of(lines),
              (Texts{L"2A 1 b 3", L"2A 2 a 1", L"2B 1 B 2", L"2C 1 - 1", L"*2D 1 \u00E9 9"}));
    EXPECT_EQ(editor.records.top, 4u);
    EXPECT_EQ(editor.count.text, L"5 (1 chosen)");
  });
  host_.set_pick_first({});
  in_palette([this](TableEditor& editor, GridLines& /*lines*/) {
    press(editor, L"Export to CSV");
    press(editor, L"Export to MIF/MID");
    EXPECT_EQ(host_.printed, L"Error: no objects selected.\nError: no objects selected.\n");
  });
  EXPECT_EQ(host_.palette_sets.size(), 1u);
}

TEST_F(TableEditing, WhatAnImportAddsIsShown) {
  const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / "korvel_added.csv";
  std::ofstream(file) << "Handle,Record,NAME\n2B,2,new\n";
  host_.dialogs = {[](Dialog& dialog) { return dialog.press(0); }};
  host_.files = {file};
  host_.boxes = {true};
  in_palette([](TableEditor& editor, GridLines& lines) {
    press(editor, L"Import from CSV");
    EXPECT_EQ(lines_of(lines)[3], L"2B 2 new 0");
    EXPECT_EQ(editor.count.text, L"6");
  });
  std::filesystem::remove(file);
}

TEST_F(TableEditing, CommandsOfTheMenuReachTheChosenRowsAlone) {
  host_.set_pick_first({ids_[2]});
  in_palette([this](TableEditor& editor, GridLines& lines) {
    lines.choose(1, true);
    lines.choose(4, true);  // locked
    host_.dialogs.push_back([](Dialog& dialog) {
      auto& tables = *std::get<CheckList*>(dialog.controls()[2]);
      EXPECT_EQ(tables.items.size(), 1u) << "that of the rows";
      tables.check_all(true);
      dialog.changed(tables);
      auto& fields = *std::get<CheckList*>(dialog.controls()[3]);
      fields.items.at(1).checked = true;
      std::get<Edit*>(dialog.controls()[0])->text = L"*";
      std::get<Edit*>(dialog.controls()[1])->text = L"50";
      return !dialog.press(0) || true;
    });
    press(editor, L"Replace");
    EXPECT_EQ(lines_of(lines),
              (Texts{L"2A 1 b 3", L"*2A 2 a 50", L"2B 1 B 2", L"2C 1 - 1", L"*2D 1 \u00E9 9"}));
    EXPECT_EQ(host_.pick_first(), EntityList{ids_[2]}) << "the drawing's own selection stays";
    press(editor, L"Undo");
    press(editor, L"Redo");
    press(editor, L"Find Values");
    press(editor, L"Show Selection");
    EXPECT_EQ(host_.sent, (Texts{L"_UNDO\n", L"_MREDO\n", L"KORVEL_HAS_SPECIFIC_VALUES\n",
                                 L"_.zoom _o\n", L"_.select _p\n\n"}));
    EXPECT_EQ(host_.pick_first(), (EntityList{ids_[0], ids_[3]}));
    editor.filter.rows = {{L"N", L"nothing"}};
    editor.changed(editor.filter);
    press(editor, L"Replace");
    EXPECT_TRUE(host_.printed.ends_with(L"Error: no objects selected.\n"));
  });
}

TEST_F(TableEditing, TheColumnsAreKeptForEachTable) {
  in_palette([this](TableEditor& editor, GridLines& lines) {
    host_.dialogs.push_back([](Dialog& dialog) {
      auto& grid = *std::get<Grid*>(dialog.controls().front());
      grid.rows[3][1] = L"1";     // N to the front
      grid.rows[1][2] = L"0";     // Record hidden
      grid.rows[2][2] = L"wide";  // no number
      grid.rows[0][1] = L"99";    // Handle to the end
      return true;
    });
    press(editor, L"Columns");
    EXPECT_EQ(lines_of(lines)[0], L"3 b 2A");
    EXPECT_EQ(editor.chosen_rows().columns, (std::vector<std::size_t>{1, 0}));
    set(editor, editor.table, L"U");
    EXPECT_EQ(lines_of(lines), Texts{L"2C 1 u 7"});
  });
  EXPECT_EQ(host_.profile(L"KORVEL_TABLE/T/ColumnCount"), L"4");
  EXPECT_EQ(host_.profile(L"KORVEL_TABLE/T/ColumnData_0"), L"N");
  EXPECT_EQ(host_.profile(L"KORVEL_TABLE/T/ColumnWidth_1"), L"0");
  ASSERT_EQ(store_.rename_column(L"T", L"N", L"Handle"), ColumnChange::Done);
  palettes_.table_editor.reset();
  in_palette([](TableEditor& editor, GridLines& lines) {
    set(editor, editor.table, L"T");
    EXPECT_EQ(lines_of(lines)[0], L"b 2A 3") << "a column of another name comes last";
  });
}

TEST_F(TableEditing, ColumnsThatAreGoneAreNotShown) {
  in_palette([this](TableEditor& editor, GridLines& lines) {
    EXPECT_EQ(lines.columns().size(), 4u);
    lines.choose(1, true);
    ASSERT_EQ(store_.delete_table(L"T"), TableChange::Done);
    EXPECT_EQ(lines_of(lines)[1], L"*2A 2 - -") << "until somebody refreshes";
    press(editor, L"Refresh");
    EXPECT_EQ(lines.columns().size(), 2u);
    set(editor, editor.table, L"U");
    lines.choose(0, true);
    EXPECT_EQ(lines.columns().size(), 4u);
    editor.drawing_closes();
    EXPECT_TRUE(lines.columns().empty());
    EXPECT_EQ(lines.line_count(), 0u);
  });
}

TEST_F(TableEditing, ChosenRowsStayChosenWhenThePaletteIsShownAgain) {
  in_palette([](TableEditor& /*editor*/, GridLines& lines) { lines.choose(1, true); });
  in_palette([](TableEditor& /*editor*/, GridLines& lines) {
    EXPECT_EQ(lines_of(lines)[1], L"*2A 2 a 1");
  });
}

class PressedHost final : public ForwardingHost {
 public:
  using ForwardingHost::ForwardingHost;
  [[nodiscard]] bool interrupted() override { return pressed; }
  bool pressed = false;
};

TEST_F(TableEditing, InterruptedMenusEndLikeEscAndRowsAreNotShownInPart) {
  const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / "korvel_rows.csv";
  PressedHost host(host_);
  Session session{store_, host, choices_, palettes_};
  host_.palettes.push_back([&](Palette& palette) {
    auto& editor = dynamic_cast<TableEditor&>(palette);
    const std::size_t rows = editor.records.lines->line_count();
    host_.dialogs.emplace_back([](Dialog& /*format*/) { return true; });
    host_.files.emplace_back(file);
    host.pressed = true;
    press(editor, L"Export to CSV");
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(editor.records.lines->line_count(), rows);
    press(editor, L"Refresh");
    EXPECT_EQ(editor.records.lines->line_count(), 0U);
    EXPECT_EQ(editor.count.text, L"0 (interrupted)");
    host.pressed = false;
    press(editor, L"Refresh");
    EXPECT_EQ(editor.records.lines->line_count(), rows);
  });
  show_table_editor(session);
  EXPECT_EQ(host_.printed, L"");
}

TEST_F(TableEditing, RowsOutsideAreNotThereForACommand) {
  ChosenRowsStore rows(store_, L"T", {{ids_[2], 1}, {ids_[0], 2}, {ids_[0], 5}});
  EXPECT_EQ(rows.tables_on(ids_, host_), Texts{L"T"});
  const Texts tables = {L"T", L"U"};
  EXPECT_EQ(rows.count_records(ids_, tables, host_), (std::vector<int>{1, 0, 1, 0}));
  EXPECT_FALSE(rows.attach(ids_[0], {L"T", {std::wstring(), 1}}));
  const std::unique_ptr<RecordIterator> record = rows.records();
  ASSERT_TRUE(record->open(ids_[0], OpenMode::Write));
  EXPECT_EQ(record->count(), 1);
  EXPECT_EQ(record->value(1), ODValueView(1));
  EXPECT_FALSE(record->remove());
  record->next();
  EXPECT_TRUE(record->done());
  record->start();
  EXPECT_EQ(record->value(1), ODValueView(1));
  record->open(ids_[1], OpenMode::Read);
  EXPECT_TRUE(record->done());
}

TEST_F(TableEditing, EveryChosenRowIsWrittenWhereItLies) {
  attach(0, L"T", L"c", 5);
  ChosenRowsStore rows(store_, L"T", {{ids_[0], 1}, {ids_[0], 3}});
  const std::unique_ptr<RecordIterator> record = rows.records_of(L"T");
  for (record->open(ids_[0], OpenMode::Write); !record->done(); record->next())
    EXPECT_TRUE(record->set_value(1, 50));
  in_palette([](TableEditor& /*editor*/, GridLines& lines) {
    Texts of_first = lines_of(lines);
    of_first.resize(3);
    EXPECT_EQ(of_first, (Texts{L"2A 1 b 50", L"2A 2 a 1", L"2A 3 c 50"}));
  });
}

TEST(SortKeys, OrderTextsWithoutCaseThenByCodeUnitAndPointsByTheirCoordinates) {
  const struct {
    const char* name;
    std::vector<ODValueView> values;
    std::vector<double> keys;
  } cases[] = {
      {"texts", {L"b", L"B", L"a", L"b", L""}, {3, 2, 1, 3, 0}},
      {"points",
       {Point3{1, 2, 3}, Point3{1, 2, 2}, Point3{0, 9, 9}, Point3{1, 2, 3}},
       {2, 1, 0, 2}},
      {"numbers", {2.5, -1.0}, {2.5, -1}},
  };
  for (const auto& test : cases) {
    SortKeys keys;
    for (const ODValueView& value : test.values)
      keys.add(value);
    EXPECT_EQ(keys.take(), test.keys) << test.name;
  }
  SortKeys handles;
  for (const wchar_t* const handle : {L"FF", L"100", L"2A"})
    handles.add_handle(handle);
  EXPECT_EQ(handles.take(), (std::vector<double>{255, 256, 42}));
}

}  // namespace
}  // namespace korvel::test
