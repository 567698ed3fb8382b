// A grid of a million lines in a window: what it asks for, chooses, opens and edits.
#include <array>
#include <gtest/gtest.h>
#include <new>
#include <set>
#include <utility>

#include "tests/windows/view_window.h"

namespace korvel::windows::test {
namespace {

// Lines "0", "1" ... with a second cell that takes everything but "no"; line 2 is a group's.
class ManyLines : public Dialog, public GridLines {
 public:
  ManyLines() : Dialog(L"Many") {
    add(&grid);
    add(Button{L"Refresh", ButtonRole::Act});
  }
  [[nodiscard]] std::vector<Column> columns() const override {
    return {{L"Line", false, 0}, {L"Text", true, width}};
  }
  [[nodiscard]] std::size_t line_count() const override { return count; }
  [[nodiscard]] Line line(std::size_t index) const override {
    EXPECT_TRUE(is_in_turn);
    EXPECT_LT(index, count);
    asked.insert(index);
    if (index == 2) return {{L"group"}, true, chosen.contains(index)};
    return {{std::to_wstring(index), text}, false, chosen.contains(index)};
  }
  void choose(std::size_t index, bool on) override {
    if (on) {
      chosen.insert(index);
    } else {
      chosen.erase(index);
    }
  }
  void activate(std::size_t index) override { activated_lines.push_back(index); }
  std::optional<std::wstring> set_cell(std::size_t index, std::size_t column,
                                       std::wstring_view typed) override {
    if (typed == L"no") return L"It cannot be.";
    text = std::to_wstring(index) + L'/' + std::to_wstring(column) + L'/' + std::wstring(typed);
    return std::nullopt;
  }
  void changed(const Control& /*grid*/) override { ++changes; }
  void act(const Button& /*refresh*/) override { ++pressed_buttons; }

  LongGrid grid{L"Lines", *this};
  std::size_t count = 1'000'000;
  int width = 200;
  std::wstring text = L"t";
  std::set<std::size_t> chosen;
  mutable std::set<std::size_t> asked;
  std::vector<std::size_t> activated_lines;
  int changes = 0;
  int pressed_buttons = 0;
  bool is_in_turn = false;
  bool fails = false;
};

class LongGridTest : public testing::Test {
 protected:
  ManyLines lines_;
  ViewWindow window_{lines_, [this](const std::function<void()>& action) {
                       if (lines_.fails) throw std::bad_alloc();
                       const bool before = std::exchange(lines_.is_in_turn, true);
                       action();
                       lines_.is_in_turn = before;
                     }};
  HWND list_ = window_.child(WC_LISTVIEWW);

  void paint() const {
    InvalidateRect(list_, nullptr, TRUE);
    UpdateWindow(list_);
  }
  [[nodiscard]] bool is_checked(int row) const { return ListView_GetCheckState(list_, row) != 0; }
  [[nodiscard]] POINT label_of(int row) const {
    RECT rect{};
    ListView_GetItemRect(list_, row, &rect, LVIR_LABEL);
    return {rect.left + 4, (rect.top + rect.bottom) / 2};
  }
  [[nodiscard]] POINT box_of(int row) const {
    const POINT label = label_of(row);
    return {label.x - 12, label.y};
  }
  [[nodiscard]] POINT text_of(int row) const {
    RECT rect{};
    ListView_GetSubItemRect(list_, row, 1, LVIR_BOUNDS, &rect);
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
  }
  void highlight(int row) const {
    ListView_SetItemState(list_, row, LVIS_FOCUSED | LVIS_SELECTED, LVIS_FOCUSED | LVIS_SELECTED);
  }
};

TEST_F(LongGridTest, AsksForTheLinesInSightAlone) {
  paint();
  const auto page = static_cast<std::size_t>(ListView_GetCountPerPage(list_));
  EXPECT_EQ(ListView_GetItemCount(list_), 1'000'000);
  EXPECT_TRUE(lines_.asked.contains(0));
  EXPECT_LE(lines_.asked.size(), page + 3);
  EXPECT_EQ(ListView_GetColumnWidth(list_, 1), 200);

  lines_.asked.clear();
  ListView_EnsureVisible(list_, 999'999, FALSE);
  paint();
  EXPECT_TRUE(lines_.asked.contains(999'999));
  EXPECT_LE(lines_.asked.size(), page + 3);
  EXPECT_EQ(lines_.grid.top, static_cast<std::size_t>(ListView_GetTopIndex(list_)));
}

TEST_F(LongGridTest, ShowsTheModelWhereItHasChanged) {
  lines_.grid.top = 500;
  lines_.chosen = {501};
  lines_.width = 90;
  window_.view().refresh();
  EXPECT_EQ(ListView_GetTopIndex(list_), 500);
  EXPECT_TRUE(is_checked(501));
  EXPECT_EQ(ListView_GetColumnWidth(list_, 1), 90);
  lines_.count = 3;
  lines_.grid.top = 0;
  lines_.text = L"new";
  window_.view().refresh();
  std::array<wchar_t, 16> text{};
  ListView_GetItemText(list_, 1, 1, text.data(), 16);
  EXPECT_EQ(std::wstring(text.data()), L"new");
  EXPECT_EQ(ListView_GetItemCount(list_), 3);
  EXPECT_EQ(lines_.changes, 0);
}

TEST_F(LongGridTest, StaysWhereTheUserScrolled) {
  SendMessageW(list_, WM_SETREDRAW, FALSE, 0);  // nothing is painted before the refresh
  ListView_EnsureVisible(list_, 5000, FALSE);
  const int top = ListView_GetTopIndex(list_);
  window_.view().refresh();
  EXPECT_EQ(ListView_GetTopIndex(list_), top);
  EXPECT_EQ(lines_.grid.top, static_cast<std::size_t>(top));
}

TEST_F(LongGridTest, TakesAnyHint) {
  NMLVCACHEHINT hint{};
  hint.hdr = {list_, 0, static_cast<UINT>(LVN_ODCACHEHINT)};
  const auto give = [&](int from, int to) {
    lines_.asked.clear();
    hint.iFrom = from;
    hint.iTo = to;
    SendMessageW(window_.window(), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&hint));
    return lines_.asked.size();
  };
  EXPECT_EQ(give(7000, -1), 0u);
  EXPECT_EQ(give(7003, 7001), 0u);
  EXPECT_EQ(give(7000, 7009), 10u);
  EXPECT_EQ(give(999'998, 1'000'005), 2u);
  EXPECT_LE(give(10'000, 900'000), 1000u);
}

TEST_F(LongGridTest, GoesOnAfterAFailure) {
  lines_.fails = true;
  EXPECT_THROW(window_.view().refresh(), std::bad_alloc);
  lines_.fails = false;
  ViewWindow::click(list_, box_of(1));
  EXPECT_EQ(lines_.chosen, std::set<std::size_t>{1});
}

TEST_F(LongGridTest, ChoosesByBoxesAndSpace) {
  ViewWindow::click(list_, box_of(1));
  EXPECT_EQ(lines_.chosen, std::set<std::size_t>{1});
  EXPECT_TRUE(is_checked(1));
  ViewWindow::click(list_, label_of(3));
  EXPECT_EQ(lines_.chosen, std::set<std::size_t>{1}) << "beside the box";
  ViewWindow::click(list_, box_of(1));
  EXPECT_TRUE(lines_.chosen.empty());
  EXPECT_EQ(lines_.changes, 2);

  SetFocus(list_);
  ListView_SetItemState(list_, -1, 0, LVIS_SELECTED);
  highlight(4);
  highlight(6);
  window_.key(VK_SPACE);
  EXPECT_EQ(lines_.chosen, (std::set<std::size_t>{4, 6})) << "all that is highlighted";
  EXPECT_EQ(lines_.changes, 3) << "at once";
}

TEST_F(LongGridTest, OpensGroups) {
  ViewWindow::click(list_, label_of(2), true);
  EXPECT_EQ(lines_.activated_lines, std::vector<std::size_t>{2});
  SetFocus(list_);
  highlight(2);
  EXPECT_TRUE(window_.key(VK_RETURN));
  EXPECT_EQ(lines_.activated_lines, (std::vector<std::size_t>{2, 2}));
  EXPECT_EQ(lines_.changes, 0);
}

TEST_F(LongGridTest, EditsCells) {
  ViewWindow::click(list_, text_of(3), true);
  EXPECT_EQ(text_in(GetFocus()), L"t");
  window_.type(L"no");
  window_.key(VK_RETURN);
  EXPECT_EQ(window_.complaints, std::vector<std::wstring>{L"It cannot be."});
  EXPECT_EQ(text_in(GetFocus()), L"no") << "to be mended";
  window_.type(L"w");
  window_.key(VK_RETURN);
  EXPECT_EQ(lines_.text, L"3/1/now");
  EXPECT_EQ(lines_.changes, 1);
  EXPECT_EQ(GetFocus(), list_);

  ViewWindow::click(list_, text_of(4), true);
  window_.type(L"no");
  ViewWindow::click(window_.button(L"Refresh"), {5, 5});
  EXPECT_EQ(lines_.pressed_buttons, 1) << "the click goes where it was meant to";
  EXPECT_EQ(window_.complaints.size(), 1u);
  ViewWindow::pump();
  EXPECT_EQ(window_.complaints.size(), 2u);
  EXPECT_EQ(lines_.text, L"3/1/now");
  ViewWindow::click(list_, text_of(2), true);
  EXPECT_EQ(GetFocus(), list_) << "a group has no cells";
}

TEST_F(LongGridTest, ScrollsToTheCellThatIsEdited) {
  window_.resize({300, 300});
  ListView_SetColumnWidth(list_, 0, 400);
  SetFocus(list_);
  highlight(3);
  window_.key(VK_F2);
  RECT field{};
  GetWindowRect(GetFocus(), &field);
  MapWindowPoints(HWND_DESKTOP, list_, reinterpret_cast<POINT*>(&field), 2);
  RECT inside{};
  GetClientRect(list_, &inside);
  EXPECT_NE(GetFocus(), list_);
  EXPECT_GE(field.left, 0);
  EXPECT_LE(field.right, inside.right);
  EXPECT_GE(field.right - field.left, 190) << "all of the cell";
}

}  // namespace
}  // namespace korvel::windows::test
