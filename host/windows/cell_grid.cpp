// The grid of a few rows. A new row comes into the model with the first text of its cells; until
// then it is the window's alone.
#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/windows/cell_editor.h"
#include "host/windows/control_view.h"
#include "host/windows/list_window.h"

namespace korvel::windows {
namespace {

constexpr ChildStyle button_style = {WS_TABSTOP | BS_PUSHBUTTON, 0};

class CellGridView final : public ControlView, private EditedCells {
 public:
  CellGridView(Grid& grid, ViewSite& site)
      : ControlView(site),
        grid_(grid),
        list_(site.window(), LVS_SINGLESEL | LVS_NOSORTHEADER, LVS_EX_GRIDLINES),
        editor_(list_, site, *this) {
    for (const Grid::Column& column : grid.columns)
      list_.add_column(list_.column_count(), column.heading, characters(16));
    if (!grid.user_rows) return;
    add_ = make(WC_BUTTONW, button_style, L"Add");
    remove_ = make(WC_BUTTONW, button_style, L"Remove");
  }

  [[nodiscard]] std::vector<HWND> windows() const override {
    if (!grid_.user_rows) return {list_.get()};
    return {list_.get(), add_.get(), remove_.get()};
  }
  [[nodiscard]] LayoutItem layout() const override {
    return {.shape = Shape::Block,
            .width = static_cast<int>(grid_.columns.size()) * characters(20) + buttons_width(),
            .least_height = lines(4),
            .wanted_height = lines(9)};
  }
  void place(const Rect& body) override {
    const int left = std::max(body.right() - buttons_width(), body.left);
    windows::place(list_.get(), {body.left, body.top, left - body.left, body.height});
    if (grid_.user_rows) {
      const int width = body.right() - left - gap();
      const int height = site().units().down(14);
      windows::place(add_.get(), {left + gap(), body.top, width, height});
      windows::place(remove_.get(), {left + gap(), body.top + height + gap(), width, height});
    }
    fit_columns();
    fit_columns();  // a scroll bar may have gone
  }
  void show() override {
    editor_.cancel();
    drop_new_row();
    for (; shown_.size() > grid_.rows.size(); shown_.pop_back())
      ListView_DeleteItem(list_.get(), list_.row_count() - 1);
    for (std::size_t row = 0; row < grid_.rows.size(); ++row) {
      if (row == shown_.size()) add_row();
      for (std::size_t column = 0; column < grid_.columns.size(); ++column)
        show_cell(row, column);
    }
    fit_columns();
  }
  void on_command(HWND sender, int code) override {
    if (code != BN_CLICKED) return;
    if (sender == add_.get()) begin_row();
    if (sender == remove_.get()) remove_row();
  }
  LRESULT on_notify(const NMHDR& header) override {
    if (header.code == NM_KILLFOCUS && !editor_.is_open()) drop_new_row();
    if (header.code == NM_CLICK || header.code == NM_DBLCLK)
      on_click(reinterpret_cast<const NMITEMACTIVATE&>(header).ptAction);
    return 0;
  }
  bool on_key(HWND focus, WPARAM key) override {
    if (focus != list_.get()) return false;
    const std::optional<int> row = list_.focused_row();
    if ((key == VK_F2 || key == VK_SPACE) && row) return edit_from({*row, 0}), true;
    if (key == VK_INSERT && grid_.user_rows) return begin_row(), true;
    if (key == VK_DELETE && grid_.user_rows) return remove_row(), true;
    return false;
  }
  void finish_typing() override { editor_.finish(); }

 private:
  [[nodiscard]] int gap() const { return site().units().across(4); }
  // Of the buttons at the right, with the gap before them.
  [[nodiscard]] int buttons_width() const {
    return grid_.user_rows ? site().units().across(40) + gap() : 0;
  }

  // --- What is shown ---

  // Widths that the user gave the columns stay until there is another width to share.
  void fit_columns() {
    int left = list_.inside_width();
    if (std::exchange(fitted_width_, left) == left) return;
    for (int column = 0; column < list_.column_count(); ++column) {
      const int width = left / (list_.column_count() - column);
      if (list_.send(LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column)) != width)
        list_.send(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), width);
      left -= width;
    }
  }

  // The row that was the list's alone is the model's by now, if there is one.
  void add_row() {
    if (list_.row_count() == static_cast<int>(shown_.size()))
      list_.set_cell({list_.row_count(), 0}, {});
    shown_.emplace_back(grid_.columns.size());
  }

  void show_cell(std::size_t row, std::size_t column) {
    std::wstring& shown = shown_[row][column];
    if (shown == grid_.rows[row][column]) return;
    shown = grid_.rows[row][column];
    list_.set_cell({static_cast<int>(row), static_cast<int>(column)}, shown);
  }

  // --- Editing ---

  void on_click(POINT point) {
    LVHITTESTINFO hit{};
    hit.pt = point;
    if (ListView_SubItemHitTest(list_.get(), &hit) >= 0) {
      edit({hit.iItem, hit.iSubItem});
    } else {
      drop_new_row();
    }
  }

  void edit(Cell cell) {
    if (static_cast<std::size_t>(cell.row) < shown_.size()) drop_new_row();
    const bool can = grid_.enabled && grid_.columns[static_cast<std::size_t>(cell.column)].editable;
    if (can) editor_.open(cell);
  }

  // The first cell at or behind this one that can be edited.
  bool edit_from(Cell cell) {
    for (; cell.row < list_.row_count(); cell = {cell.row + 1, 0}) {
      for (; cell.column < list_.column_count(); ++cell.column) {
        if (!grid_.columns[static_cast<std::size_t>(cell.column)].editable) continue;
        edit(cell);
        return true;
      }
    }
    return false;
  }

  bool edit_back_from(Cell cell) {
    for (; cell.row >= 0; cell = {cell.row - 1, list_.column_count() - 1}) {
      for (; cell.column >= 0; --cell.column) {
        if (!grid_.columns[static_cast<std::size_t>(cell.column)].editable) continue;
        edit(cell);
        return true;
      }
    }
    return false;
  }

  std::optional<std::wstring> take(Cell cell, const std::wstring& text) override {
    site().change(grid_, [this, cell, &text] {
      const auto row = static_cast<std::size_t>(cell.row);
      if (row >= grid_.rows.size()) {
        grid_.rows.emplace_back(grid_.columns.size());
        has_new_row_ = false;
      }
      std::wstring& model = grid_.rows[row][static_cast<std::size_t>(cell.column)];
      return std::exchange(model, text) != text;
    });
    return std::nullopt;
  }

  void left(Cell cell, CellLeft how) override {
    if (how == CellLeft::Tab && edit_from({cell.row, cell.column + 1})) return;
    if (how == CellLeft::ShiftTab && edit_back_from({cell.row, cell.column - 1})) return;
    // Into the list: perhaps to another cell of the new row.
    if (how != CellLeft::Elsewhere || GetFocus() != list_.get()) drop_new_row();
    if (how == CellLeft::Tab || how == CellLeft::ShiftTab)
      site().move_focus(list_.get(), how == CellLeft::ShiftTab);
  }

  // --- Rows of the user's ---

  void begin_row() {
    drop_new_row();
    has_new_row_ = true;
    list_.set_cell({list_.row_count(), 0}, {});
    if (!edit_from({list_.row_count() - 1, 0})) drop_new_row();
  }

  bool drop_new_row() {
    if (!std::exchange(has_new_row_, false)) return false;
    ListView_DeleteItem(list_.get(), list_.row_count() - 1);
    return true;
  }

  // The one that is highlighted: the focus falls on another one when a new row is dropped.
  void remove_row() {
    if (drop_new_row()) return;
    const std::optional<int> row = list_.highlighted_row();
    if (!row) return;
    site().change(grid_, [this, row] {
      grid_.rows.erase(grid_.rows.begin() + *row);
      return true;
    });
    if (list_.row_count() > 0) list_.focus_row(std::min(*row, list_.row_count() - 1));
  }

  Grid& grid_;
  ListWindow list_;
  CellEditor editor_;
  OwnedWindow add_;
  OwnedWindow remove_;
  std::vector<std::vector<std::wstring>> shown_;  // without a new row
  bool has_new_row_ = false;                      // the list's last, which the model has not
  int fitted_width_ = -1;                         // that the columns share
};

}  // namespace

std::unique_ptr<ControlView> make_view(Grid& grid, ViewSite& site) {
  return std::make_unique<CellGridView>(grid, site);
}

}  // namespace korvel::windows
