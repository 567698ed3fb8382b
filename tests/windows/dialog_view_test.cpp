// Every kind of control both ways: the model in the windows, and what a user does in the model.
#include "host/windows/dialog_view.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>

#include "host/standalone/standalone_store.h"
#include "tests/host/test_drawing.h"
#include "tests/windows/view_window.h"
#include "values/replace_dialog.h"

namespace korvel::windows::test {
namespace {

using Texts = std::vector<std::wstring>;

// One control of every kind. Choosing a table refills the grid of values.
class SampleDialog : public Dialog {
 public:
  SampleDialog() : Dialog(L"Sample") {
    checks.fill({L"ROADS", L"PARCELS & PIPES"});
    checks.items[1].checked = true;
    table.items = {L"ROADS", L"PARCELS"};
    rule.items = {L"", L"First", L"Last"};
    rule.selected = 2;
    prefix.text = L"A&B";
    first.text = L"9";
    used.text = L"one\ntwo";
    criteria.rows = {{L"NAME", L"x"}};
    tree.items = {{L"Group", {L"a", L"b"}}, {L"Leaf", {}}};
    for (const ControlPointer control :
         {ControlPointer(&checks), ControlPointer(&table), ControlPointer(&rule),
          ControlPointer(&simultaneous), ControlPointer(&prefix), ControlPointer(&first),
          ControlPointer(&values), ControlPointer(&criteria), ControlPointer(&used),
          ControlPointer(&file), ControlPointer(&tree)}) {
      add(control);
    }
    add(Button{L"All", ButtonRole::Act, L"More"});
    add(Button{L"Nothing", ButtonRole::Act});
    add(Button{L"OK", ButtonRole::Accept});
    add(Button{L"Other", ButtonRole::Accept});
    add(Button{L"Cancel", ButtonRole::Cancel});
  }

  void changed(const Control& control) override {
    reports.push_back(control.label);
    if (&control == &table) values.rows = {{L"WIDTH", L"1.0"}, {L"LANES", L"2"}};
    if (&control == &simultaneous) prefix.enabled = !simultaneous.on;
  }
  void activated(const Control& /*control*/) override { reports.push_back(tree.text()); }
  [[nodiscard]] bool swallows(DialogKey key) const override { return swallowed == key; }

  CheckList checks{L"Tables:"};
  ListBox table{L"Table"};
  DropDown rule{L"Rule"};
  CheckBox simultaneous{L"Both & more"};
  Edit prefix{L"Prefix"};
  Spin first{L"First", 0, 10};
  Grid values{L"Values", {{L"Field", false}, {L"Value", true}}, false};
  Grid criteria{L"Criteria", {{L"What", true}, {L"Pattern", true}}, true};
  ReadOnlyText used{L"Used"};
  FileChooser file{L"File", L"Text files (*.txt)|*.txt||"};
  Tree tree{L"Tree"};
  Texts reports;  // labels of what changed, texts of what was activated
  std::optional<DialogKey> swallowed;

 protected:
  void act(const Button& button) override { checks.check_all(button.label == L"All"); }
};

Texts cells_in(HWND list) {
  Texts cells;
  const int columns = Header_GetItemCount(ListView_GetHeader(list));
  for (int row = 0; row < ListView_GetItemCount(list); ++row) {
    for (int column = 0; column < columns; ++column) {
      std::array<wchar_t, 64> text{};
      ListView_GetItemText(list, row, column, text.data(), 64);
      cells.emplace_back(text.data());
    }
  }
  return cells;
}

POINT cell_center(HWND list, int row, int column) {
  RECT rect{};
  ListView_GetSubItemRect(list, row, column, LVIR_BOUNDS, &rect);
  return {rect.left + (column == 0 ? 60 : (rect.right - rect.left) / 2),
          (rect.top + rect.bottom) / 2};
}

class DialogViewTest : public testing::Test {
 protected:
  SampleDialog dialog_;
  ViewWindow window_{dialog_};
  HWND check_list_ = window_.child(WC_LISTVIEWW, 0);
  HWND values_ = window_.child(WC_LISTVIEWW, 1);
  HWND criteria_ = window_.child(WC_LISTVIEWW, 2);
  HWND prefix_ = window_.child(WC_EDITW, 0);
  HWND spin_ = window_.child(WC_EDITW, 1);
  HWND path_ = window_.child(WC_EDITW, 3);

  void SetUp() override { window_.resize(window_.view().preferred_size()); }
};

TEST_F(DialogViewTest, ShowsTheModel) {
  EXPECT_EQ(cells_in(check_list_), (Texts{L"ROADS", L"PARCELS & PIPES"}));
  EXPECT_FALSE(ListView_GetCheckState(check_list_, 0));
  EXPECT_TRUE(ListView_GetCheckState(check_list_, 1));
  EXPECT_EQ(SendMessageW(window_.child(WC_LISTBOXW), LB_GETCURSEL, 0, 0), LB_ERR);
  EXPECT_EQ(SendMessageW(window_.child(WC_COMBOBOXW), CB_GETCURSEL, 0, 0), 2);
  EXPECT_EQ(text_in(prefix_), L"A&B");
  EXPECT_EQ(text_in(window_.child(WC_EDITW, 2)), L"one\r\ntwo");
  EXPECT_EQ(cells_in(criteria_), (Texts{L"NAME", L"x"}));
  EXPECT_EQ(TreeView_GetCount(window_.child(WC_TREEVIEWW)), 4);
  EXPECT_NE(window_.button(L"Both && more"), nullptr);
  EXPECT_EQ(text_in(window_.child(WC_STATICW, 0)), L"Tables:");
  EXPECT_EQ(text_in(window_.child(WC_STATICW, 1)), L"Table:");
  EXPECT_EQ(dialog_.reports, Texts{}) << "showing is no change of the user's";
}

TEST_F(DialogViewTest, TellsTheModelWhatTheUserDid) {
  const int turns = window_.turns;
  ListView_SetCheckState(check_list_, 0, TRUE);
  EXPECT_EQ(dialog_.checks.checked(), (Texts{L"ROADS", L"PARCELS & PIPES"}));

  const HWND list = window_.child(WC_LISTBOXW);
  RECT second{};
  SendMessageW(list, LB_GETITEMRECT, 1, reinterpret_cast<LPARAM>(&second));
  ViewWindow::click(list, {second.left + 5, second.top + 5});
  EXPECT_EQ(dialog_.table.text(), L"PARCELS");
  EXPECT_EQ(cells_in(values_), (Texts{L"WIDTH", L"1.0", L"LANES", L"2"})) << "follows the table";

  SetFocus(window_.child(WC_COMBOBOXW));
  window_.key(VK_UP);
  EXPECT_EQ(dialog_.rule.text(), L"First");

  SendMessageW(window_.button(L"Both && more"), BM_CLICK, 0, 0);
  EXPECT_TRUE(dialog_.simultaneous.on);
  EXPECT_FALSE(IsWindowEnabled(prefix_));
  SendMessageW(window_.button(L"Both && more"), BM_CLICK, 0, 0);
  EXPECT_TRUE(IsWindowEnabled(prefix_));

  SetFocus(prefix_);
  SendMessageW(prefix_, EM_SETSEL, 1, 1);
  window_.type(L"xy");
  EXPECT_EQ(dialog_.prefix.text, L"Axy&B");
  DWORD caret = 0;
  SendMessageW(prefix_, EM_GETSEL, reinterpret_cast<WPARAM>(&caret), 0);
  EXPECT_EQ(caret, 3u) << "the caret stays where one types";

  const Texts expected = {L"Tables:",     L"Table",  L"Rule",  L"Both & more",
                          L"Both & more", L"Prefix", L"Prefix"};
  EXPECT_EQ(dialog_.reports, expected);
  EXPECT_GE(window_.turns - turns, 7);
}

TEST_F(DialogViewTest, BindsTheArrowsOfANumberAlone) {
  SetFocus(spin_);
  window_.key(VK_UP);
  window_.key(VK_UP);
  EXPECT_EQ(text_in(spin_), L"10");
  SetWindowTextW(spin_, L"x500");
  EXPECT_EQ(dialog_.first.text, L"x500");
  const HWND arrows = window_.child(UPDOWN_CLASSW);
  RECT inside{};
  GetClientRect(arrows, &inside);
  ViewWindow::click(arrows, {inside.right / 2, inside.bottom * 3 / 4});
  EXPECT_EQ(dialog_.first.text, L"0");
  EXPECT_EQ(text_in(spin_), L"0");
}

TEST_F(DialogViewTest, ChoosesFiles) {
  SendMessageW(window_.button(L"..."), BM_CLICK, 0, 0);
  EXPECT_EQ(dialog_.reports, Texts{}) << "cancelled";
  window_.file = L"C:\\a\\b.txt";
  SendMessageW(window_.button(L"..."), BM_CLICK, 0, 0);
  EXPECT_EQ(window_.filters.back(), L"Text files (*.txt)|*.txt||");
  EXPECT_EQ(text_in(path_), L"C:\\a\\b.txt");
  SetWindowTextW(path_, L"d.txt");
  EXPECT_EQ(dialog_.file.path, L"d.txt");
}

TEST_F(DialogViewTest, EditsCellsInTheirPlaces) {
  dialog_.values.rows = {{L"WIDTH", L"1.0"}, {L"LANES", L"2"}};
  window_.view().refresh();
  ViewWindow::click(values_, cell_center(values_, 0, 0));
  EXPECT_EQ(GetWindow(values_, GW_CHILD), ListView_GetHeader(values_)) << "not editable";
  ViewWindow::click(values_, cell_center(values_, 0, 1));
  EXPECT_EQ(text_in(GetFocus()), L"1.0");
  window_.type(L"7");  // over what is there
  window_.key(VK_TAB);
  EXPECT_EQ(dialog_.values.rows[0][1], L"7");
  EXPECT_EQ(text_in(GetFocus()), L"2") << "the next cell that can be edited";
  window_.type(L"8");
  window_.key(VK_ESCAPE);
  EXPECT_EQ(GetFocus(), values_);
  EXPECT_FALSE(window_.accepted) << "Esc ended the field alone";
  window_.key(VK_F2);
  EXPECT_EQ(text_in(GetFocus()), L"2");
  window_.type(L"9");
  SetFocus(prefix_);
  EXPECT_EQ(cells_in(values_), (Texts{L"WIDTH", L"7", L"LANES", L"9"}));
  EXPECT_EQ(dialog_.reports, (Texts{L"Values", L"Values"}));
}

TEST_F(DialogViewTest, KeepsTheWidthsOfColumns) {
  ListView_SetColumnWidth(values_, 0, 33);
  dialog_.values.rows = {{L"WIDTH", L"1.0"}};
  window_.view().refresh();
  EXPECT_EQ(ListView_GetColumnWidth(values_, 0), 33);
  const Size preferred = window_.view().preferred_size();
  window_.resize({preferred.width + 100, preferred.height});
  EXPECT_GT(ListView_GetColumnWidth(values_, 0), 33) << "another width to share";
}

TEST_F(DialogViewTest, GivesATextBeforeWhatIsDoneElsewhere) {
  dialog_.values.rows = {{L"WIDTH", L"1.0"}};
  window_.view().refresh();
  ViewWindow::click(values_, cell_center(values_, 0, 1));
  window_.type(L"7");
  SendMessageW(window_.child(WC_COMBOBOXW), WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
  EXPECT_EQ(dialog_.rule.text(), L"Last") << "the wheel is for the list that has the focus";
  EXPECT_EQ(text_in(GetFocus()), L"7");
  const HWND rule = window_.child(WC_COMBOBOXW);  // as screen readers choose, without the focus
  SendMessageW(rule, CB_SETCURSEL, 1, 0);
  SendMessageW(window_.window(), WM_COMMAND, MAKEWPARAM(0, CBN_SELCHANGE),
               reinterpret_cast<LPARAM>(rule));
  EXPECT_EQ(dialog_.values.rows[0][1], L"7");
  EXPECT_EQ(dialog_.rule.text(), L"First");
  EXPECT_EQ(dialog_.reports, (Texts{L"Values", L"Rule"}));
}

TEST_F(DialogViewTest, AddsAndRemovesRows) {
  SendMessageW(window_.button(L"Add"), BM_CLICK, 0, 0);
  EXPECT_EQ(dialog_.criteria.rows.size(), 1u) << "the model gets a row with its first text";
  window_.key(VK_ESCAPE);
  EXPECT_EQ(ListView_GetItemCount(criteria_), 1);

  SendMessageW(window_.button(L"Add"), BM_CLICK, 0, 0);
  ViewWindow::click(window_.button(L"Remove"), {5, 5});
  EXPECT_EQ(cells_in(criteria_), (Texts{L"NAME", L"x"})) << "the new row alone";

  SendMessageW(window_.button(L"Add"), BM_CLICK, 0, 0);
  ViewWindow::click(criteria_, cell_center(criteria_, 1, 1));
  window_.type(L">3");
  window_.key(VK_RETURN);
  EXPECT_EQ(dialog_.criteria.rows, (std::vector<Texts>{{L"NAME", L"x"}, {L"", L">3"}}));
  SendMessageW(window_.button(L"Remove"), BM_CLICK, 0, 0);
  EXPECT_EQ(dialog_.criteria.rows.size(), 1u);
  for (const bool on_row : {true, false}) {
    SendMessageW(window_.button(L"Add"), BM_CLICK, 0, 0);
    SetFocus(criteria_);
    EXPECT_EQ(ListView_GetItemCount(criteria_), 2);
    if (on_row) {
      ViewWindow::click(criteria_, cell_center(criteria_, 0, 1));
    } else {
      SetFocus(prefix_);
    }
    EXPECT_EQ(cells_in(criteria_), (Texts{L"NAME", L"x"}));
  }

  SendMessageW(window_.button(L"Add"), BM_CLICK, 0, 0);
  window_.type(L"SIZE");
  window_.key(VK_TAB);
  window_.type(L">3");
  window_.key(VK_RETURN);
  EXPECT_FALSE(window_.accepted) << "Enter ended the field alone";
  EXPECT_EQ(dialog_.criteria.rows, (std::vector<Texts>{{L"NAME", L"x"}, {L"SIZE", L">3"}}));
  EXPECT_EQ(cells_in(criteria_), (Texts{L"NAME", L"x", L"SIZE", L">3"}));

  ListView_SetItemState(criteria_, 0, LVIS_FOCUSED | LVIS_SELECTED, LVIS_FOCUSED | LVIS_SELECTED);
  SendMessageW(window_.button(L"Remove"), BM_CLICK, 0, 0);
  EXPECT_EQ(dialog_.criteria.rows, (std::vector<Texts>{{L"SIZE", L">3"}}));
  EXPECT_EQ(cells_in(criteria_), (Texts{L"SIZE", L">3"}));
}

TEST_F(DialogViewTest, ActivatesWhatIsSelectedInATree) {
  const HWND tree = window_.child(WC_TREEVIEWW);
  SetFocus(tree);
  const HTREEITEM group = TreeView_GetRoot(tree);
  TreeView_SelectItem(tree, TreeView_GetNextSibling(tree, TreeView_GetChild(tree, group)));
  EXPECT_EQ(dialog_.tree.text(), L"");
  EXPECT_TRUE(window_.key(VK_RETURN));
  EXPECT_EQ(dialog_.reports, Texts{L"b"});
  dialog_.swallowed = DialogKey::Enter;
  EXPECT_TRUE(window_.key(VK_RETURN));
  EXPECT_EQ(dialog_.reports, Texts{L"b"});
}

TEST_F(DialogViewTest, PressesButtons) {
  SendMessageW(window_.window(), WM_COMMAND, MAKEWPARAM(0x100, 0), 0);  // of a menu
  EXPECT_EQ(dialog_.checks.checked().size(), 2u);
  EXPECT_TRUE(ListView_GetCheckState(check_list_, 0));
  SendMessageW(window_.button(L"Nothing"), BM_CLICK, 0, 0);
  EXPECT_FALSE(ListView_GetCheckState(check_list_, 1));
  EXPECT_FALSE(window_.accepted);
}

TEST(DialogViewClosing, FollowsTheRoleOfTheButton) {
  struct Case {
    std::wstring button;  // that has the focus; empty: a field has it
    WPARAM key;           // 0: the button is clicked
    std::optional<DialogKey> swallowed;
    std::wstring pressed;
    std::optional<bool> accepted;
  };
  const std::vector<Case> cases = {
      {L"OK", 0, std::nullopt, L"OK", true},
      {L"Other", 0, std::nullopt, L"Other", true},
      {L"Cancel", 0, std::nullopt, L"Cancel", false},
      {L"", VK_RETURN, std::nullopt, L"OK", true},
      {L"Other", VK_RETURN, std::nullopt, L"Other", true},
      {L"Nothing", VK_RETURN, std::nullopt, L"", std::nullopt},
      {L"", VK_ESCAPE, std::nullopt, L"Cancel", false},
      {L"", VK_RETURN, DialogKey::Enter, L"", std::nullopt},
      {L"", VK_ESCAPE, DialogKey::Escape, L"", std::nullopt},
  };
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const Case& one = cases[i];
    SampleDialog dialog;
    dialog.swallowed = one.swallowed;
    ViewWindow window(dialog);
    SetFocus(one.button.empty() ? window.child(WC_EDITW) : window.button(one.button));
    if (one.key == 0) {
      SendMessageW(window.button(one.button), BM_CLICK, 0, 0);
    } else {
      EXPECT_TRUE(window.key(one.key)) << i;
    }
    EXPECT_EQ(dialog.pressed(), one.pressed) << i;
    EXPECT_EQ(window.accepted, one.accepted) << i;
  }
}

TEST_F(DialogViewTest, ClicksTheButtonThatHasTheFocusWithEnter) {
  SetFocus(window_.button(L"..."));
  EXPECT_TRUE(window_.key(VK_RETURN));
  EXPECT_EQ(window_.filters.size(), 1u);
  SetFocus(window_.button(L"More \u25BE"));
  EXPECT_TRUE(window_.key(VK_RETURN));
  EXPECT_EQ(window_.menus, 1);
  SetFocus(window_.button(L"Add"));
  EXPECT_TRUE(window_.key(VK_RETURN));
  EXPECT_EQ(ListView_GetItemCount(criteria_), 2);
  EXPECT_FALSE(window_.accepted);
}

TEST_F(DialogViewTest, TypesKeysThatAHostHasUsesFor) {
  const auto types = [this](HWND focus, UINT id, WPARAM key) {
    MSG message{focus, id, key, 1, 0, {}};
    return window_.view().types_key(&message);
  };
  SetFocus(prefix_);
  SendMessageW(prefix_, EM_SETSEL, 0, 1);
  EXPECT_TRUE(types(prefix_, WM_KEYDOWN, VK_DELETE));
  EXPECT_EQ(dialog_.prefix.text, L"&B");
  EXPECT_FALSE(types(prefix_, WM_KEYDOWN, VK_ESCAPE));
  EXPECT_FALSE(types(check_list_, WM_KEYDOWN, VK_DELETE));
}

TEST_F(DialogViewTest, MovesTheFocusInTheOrderOfTheControls) {
  SendMessageW(window_.window(), WM_SETFOCUS, 0, 0);
  EXPECT_EQ(GetFocus(), check_list_);
  EXPECT_TRUE(window_.key(VK_TAB));
  EXPECT_EQ(GetFocus(), window_.child(WC_LISTBOXW));
  SetFocus(window_.window());
  EXPECT_EQ(GetFocus(), window_.child(WC_LISTBOXW)) << "where it was";
  EnableWindow(prefix_, FALSE);
  SetFocus(window_.button(L"Both && more"));
  window_.key(VK_TAB);
  EXPECT_EQ(GetFocus(), spin_) << "what is disabled is passed over";
}

TEST_F(DialogViewTest, ScrollsToTheControlThatGetsTheFocus) {
  window_.resize({window_.view().preferred_size().width, 150});
  SetFocus(check_list_);
  for (const HWND last = window_.button(L"Cancel"); GetFocus() != last;) {
    window_.key(VK_TAB);
    RECT rect{};
    GetWindowRect(GetFocus(), &rect);
    MapWindowPoints(HWND_DESKTOP, window_.window(), reinterpret_cast<POINT*>(&rect), 2);
    ASSERT_GE(rect.top, 0);
    ASSERT_LE(rect.bottom, rect.top < 30 ? 500 : 150);  // what is high begins at the top
  }
  const auto arrows = reinterpret_cast<std::intptr_t>(window_.child(UPDOWN_CLASSW));
  EXPECT_FALSE(window_.view().on_message({WM_VSCROLL, SB_PAGEUP, arrows})) << "a control's own";
}

// Esc would close the window in which the text stands.
TEST(DialogViewOfTexts, ShowsATextAlone) {
  struct TextAlone : Dialog {
    TextAlone() : Dialog(L"Text") {
      text.text = L"all of it in one line";
      add(&text);
    }
    ReadOnlyText text{L""};
  } dialog;
  ViewWindow window(dialog);
  const HWND field = window.child(WC_EDITW);
  EXPECT_TRUE(window.children(WC_STATICW).empty());
  EXPECT_NE(GetWindowLongPtrW(field, GWL_STYLE) & ES_MULTILINE, 0);
  SetFocus(field);
  EXPECT_TRUE(window.key(VK_ESCAPE));
}

TEST_F(DialogViewTest, GivesAWindowTheSizeForWhichThereIsRoom) {
  const HWND owner = window_.window();
  const HWND window = CreateWindowExW(0, WC_STATICW, L"", WS_POPUP | WS_CAPTION, 0, 0, 10, 10,
                                      owner, nullptr, nullptr, nullptr);
  RECT inside{};
  RECT frame{};
  RECT around{};
  give_inside(window, {200, 100});
  GetClientRect(window, &inside);
  GetWindowRect(window, &frame);
  GetWindowRect(owner, &around);
  EXPECT_EQ(inside.right, 200);
  EXPECT_EQ(inside.bottom, 100);
  EXPECT_EQ((frame.left + frame.right) / 2, (around.left + around.right) / 2);
  give_inside(window, {200, 30'000});
  GetWindowRect(window, &frame);
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &around, 0);
  EXPECT_EQ(frame.bottom, around.bottom);
  DestroyWindow(window);
}

std::vector<HWND> all_children(HWND window) {
  std::vector<HWND> children;
  for (HWND one = GetWindow(window, GW_CHILD); one != nullptr; one = GetWindow(one, GW_HWNDNEXT))
    children.push_back(one);
  return children;
}

// The fonts of the windows are asked for after the view is gone: counting the process's handles
// shows nothing under wine.
TEST(DialogViewMemory, LeavesNothingBehind) {
  SampleDialog dialog;
  ViewWindow window(dialog);
  const std::vector<HWND> before = all_children(window.window());
  std::vector<HGDIOBJ> fonts;
  {
    const DialogView second(window.window(), dialog, window);
    for (const HWND child : all_children(window.window())) {
      const auto font = reinterpret_cast<HGDIOBJ>(SendMessageW(child, WM_GETFONT, 0, 0));
      if (font != nullptr && std::ranges::find(before, child) == before.end()) {
        fonts.push_back(font);
      }
    }
    ASSERT_GE(fonts.size(), before.size() / 2);
    EXPECT_EQ(GetObjectType(fonts.front()), static_cast<DWORD>(OBJ_FONT));
  }
  EXPECT_EQ(all_children(window.window()), before);
  for (const HGDIOBJ font : fonts)
    EXPECT_EQ(GetObjectType(font), 0U);
}

// A dialog whose fields follow its tables, as a command has it.
TEST(DialogViewOfCommands, FollowsTheTables) {
  const auto drawing = korvel::test::make_drawing({{L"0"}}, {});
  StandaloneStore store(*drawing);
  ASSERT_EQ(store.define_table({L"T", {{L"A", ODType::Integer, 0}, {L"B", ODType::Integer, 0}}}),
            TableChange::Done);
  OptionsReplace dialog(store, {L"T"});
  ViewWindow window(dialog);
  const HWND fields = window.child(WC_LISTVIEWW, 1);
  ListView_SetCheckState(window.child(WC_LISTVIEWW, 0), 0, TRUE);
  EXPECT_EQ(cells_in(fields), (Texts{L"A", L"B"}));
  ListView_SetCheckState(fields, 1, TRUE);
  SetFocus(window.child(WC_EDITW, 0));
  window.type(L"?");
  EXPECT_EQ(dialog.request().fields, Texts{L"B"});
  EXPECT_EQ(dialog.request().search, L"?");
  ListView_SetCheckState(window.child(WC_LISTVIEWW, 0), 0, FALSE);
  EXPECT_EQ(ListView_GetItemCount(fields), 0);
}

}  // namespace
}  // namespace korvel::windows::test
