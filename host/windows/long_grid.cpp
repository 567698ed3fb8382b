// The grid of a great many lines. The list window knows their number alone; it asks for the texts
// and the check boxes of those that it shows. What a box shows and changes is whether the line is
// chosen; the lines that are highlighted are those that Space chooses together.
#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/windows/cell_editor.h"
#include "host/windows/control_view.h"
#include "host/windows/group_line.h"
#include "host/windows/list_window.h"
#include "host/windows/shown_lines.h"

namespace korvel::windows {
namespace {

bool same(const GridLines::Column& a, const GridLines::Column& b) {
  return a.heading == b.heading && a.editable == b.editable && a.width == b.width;
}

class LongGridView final : public ControlView, private EditedCells {
 public:
  LongGridView(LongGrid& grid, ViewSite& site)
      : ControlView(site),
        grid_(grid),
        list_(site.window(), LVS_OWNERDATA | LVS_NOSORTHEADER, LVS_EX_CHECKBOXES),
        editor_(list_, site, *this),
        lines_(*grid.lines,
               [&site](const std::function<void()>& action) { site.owner().deliver(action); }) {
    list_.send(LVM_SETCALLBACKMASK, LVIS_STATEIMAGEMASK);
  }

  [[nodiscard]] std::vector<HWND> windows() const override { return {list_.get()}; }
  [[nodiscard]] LayoutItem layout() const override {
    return {.shape = Shape::Block,
            .width = characters(90),
            .least_height = lines(4),
            .wanted_height = lines(18),
            .weight = 4};
  }
  void show() override {
    editor_.cancel();
    std::vector<GridLines::Column> columns;
    std::size_t count = 0;
    site().owner().deliver([&] {
      columns = grid_.lines->columns();
      count = grid_.lines->line_count();
    });
    lines_.forget();
    if (!std::ranges::equal(columns, columns_, same)) show_columns(std::move(columns));
    if (count != static_cast<std::size_t>(list_.row_count()))
      list_.send(LVM_SETITEMCOUNT, count, LVSICF_NOSCROLL);
    show_position();
    InvalidateRect(list_.get(), nullptr, FALSE);
  }

  LRESULT on_notify(const NMHDR& header) override {
    switch (header.code) {
      case LVN_ODCACHEHINT: {
        const auto& hint = reinterpret_cast<const NMLVCACHEHINT&>(header);
        const int last = std::min(hint.iTo, list_.row_count() - 1);
        if (hint.iFrom >= 0 && hint.iFrom <= last)
          lines_.fetch(static_cast<std::size_t>(hint.iFrom), static_cast<std::size_t>(last));
        return 0;
      }
      case LVN_GETDISPINFOW:
        tell(const_cast<LVITEMW&>(reinterpret_cast<const NMLVDISPINFOW&>(header).item));
        return 0;
      case NM_CUSTOMDRAW:
        return on_draw(reinterpret_cast<const NMLVCUSTOMDRAW&>(header));
      case NM_CLICK:
        on_click(reinterpret_cast<const NMITEMACTIVATE&>(header).ptAction);
        return 0;
      case NM_DBLCLK:
        on_double_click(reinterpret_cast<const NMITEMACTIVATE&>(header).ptAction);
        return 0;
      default:
        return 0;
    }
  }
  bool on_key(HWND focus, WPARAM key) override {
    const std::optional<int> row = list_.focused_row();
    if (focus != list_.get() || !row) return false;
    if (key == VK_RETURN) return activate(*row), true;
    if (key == VK_SPACE) return toggle(*row, true), true;
    if (key == VK_F2) return edit_from({*row, 0}), true;
    return false;
  }
  void finish_typing() override { editor_.finish(); }

 private:
  // --- What is shown ---

  [[nodiscard]] const GridLines::Line& line(int row) {
    return lines_.line(static_cast<std::size_t>(row));
  }

  void show_columns(std::vector<GridLines::Column> columns) {
    columns_ = std::move(columns);
    list_.delete_columns();
    const int dpi = static_cast<int>(GetDpiForWindow(list_.get()));
    for (const GridLines::Column& column : columns_) {
      const int width =
          column.width == 0 ? characters(16) : MulDiv(column.width, dpi, USER_DEFAULT_SCREEN_DPI);
      list_.add_column(list_.column_count(), column.heading, width);
    }
  }

  [[nodiscard]] std::size_t top() const {
    return static_cast<std::size_t>(list_.send(LVM_GETTOPINDEX));
  }
  // A model that says what it said before knows nothing of what the user scrolled meanwhile.
  void show_position() {
    if (list_.row_count() == 0) return;
    if (grid_.top == seen_top_) return note_position();
    const auto rows = static_cast<int>(grid_.top) - static_cast<int>(top());
    list_.send(LVM_SCROLL, 0, rows * list_.row_height());
    seen_top_ = grid_.top;
  }
  void note_position() { grid_.top = seen_top_ = top(); }

  void tell(LVITEMW& item) {
    if (item.iItem < 0 || item.iItem >= list_.row_count()) return;
    const GridLines::Line& asked = line(item.iItem);
    if ((item.mask & LVIF_TEXT) != 0 && item.cchTextMax > 0) {
      const auto column = static_cast<std::size_t>(item.iSubItem);
      const std::wstring text = column < asked.cells.size() ? asked.cells[column] : std::wstring();
      const std::size_t length =
          text.copy(item.pszText, static_cast<std::size_t>(item.cchTextMax) - 1);
      item.pszText[length] = L'\0';
    }
    if ((item.mask & LVIF_STATE) != 0 && (item.stateMask & LVIS_STATEIMAGEMASK) != 0) {
      item.state &= ~static_cast<UINT>(LVIS_STATEIMAGEMASK);
      item.state |= INDEXTOSTATEIMAGEMASK(asked.chosen ? 2 : 1);
    }
  }

  // A group's heading goes across all columns. However the user came to where the lines are by now,
  // they are painted there.
  LRESULT on_draw(const NMLVCUSTOMDRAW& draw) {
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) {
      note_position();
      return CDRF_NOTIFYITEMDRAW;
    }
    const auto row = static_cast<int>(draw.nmcd.dwItemSpec);
    if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT || row >= list_.row_count())
      return CDRF_DODEFAULT;
    const GridLines::Line asked = line(row);
    if (!asked.is_group) return CDRF_DODEFAULT;
    const bool folded = row + 1 == list_.row_count() || line(row + 1).is_group;
    draw_group_line(draw.nmcd.hdc, list_, row, site().bold_font(),
                    {asked.cells.front(), folded, asked.chosen});
    return CDRF_SKIPDEFAULT;
  }

  // --- What the user does ---

  [[nodiscard]] LVHITTESTINFO hit_at(POINT point) const {
    LVHITTESTINFO hit{};
    hit.pt = point;
    ListView_SubItemHitTest(list_.get(), &hit);
    return hit;
  }

  void on_click(POINT point) {
    const LVHITTESTINFO hit = hit_at(point);
    const bool on_box = (hit.flags & LVHT_ONITEM) == LVHT_ONITEMSTATEICON;
    if (hit.iItem >= 0 && on_box) toggle(hit.iItem, false);
  }

  void on_double_click(POINT point) {
    const LVHITTESTINFO hit = hit_at(point);
    if (hit.iItem < 0) return;
    const bool on_box = (hit.flags & LVHT_ONITEM) == LVHT_ONITEMSTATEICON;
    if (on_box) {
      toggle(hit.iItem, false);
    } else if (!edit({hit.iItem, hit.iSubItem})) {
      activate(hit.iItem);
    }
  }

  // The line and, if wanted, all that are highlighted with it.
  void toggle(int row, bool with_highlighted) {
    const bool on = !line(row).chosen;
    std::vector<std::size_t> rows = {static_cast<std::size_t>(row)};
    const bool is_highlighted =
        list_.send(LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_SELECTED) != 0;
    if (with_highlighted && is_highlighted) rows = highlighted();
    site().change(grid_, [&] {
      for (const std::size_t one : rows)
        grid_.lines->choose(one, on);
      return true;
    });
  }

  [[nodiscard]] std::vector<std::size_t> highlighted() const {
    std::vector<std::size_t> rows;
    LRESULT row = -1;
    while ((row = list_.send(LVM_GETNEXTITEM, static_cast<WPARAM>(row), LVNI_SELECTED)) >= 0)
      rows.push_back(static_cast<std::size_t>(row));
    return rows;
  }

  void activate(int row) {
    if (!line(row).is_group) return;
    site().owner().deliver([this, row] { grid_.lines->activate(static_cast<std::size_t>(row)); });
    show();
  }

  // --- Editing ---

  bool edit(Cell cell) {
    const bool can = grid_.enabled && cell.column >= 0 &&
                     columns_[static_cast<std::size_t>(cell.column)].editable &&
                     !line(cell.row).is_group;
    if (can) editor_.open(cell);
    return can;
  }

  bool edit_from(Cell cell) {
    for (; cell.column < list_.column_count(); ++cell.column) {
      if (edit(cell)) return true;
    }
    return false;
  }

  std::optional<std::wstring> take(Cell cell, const std::wstring& text) override {
    std::optional<std::wstring> refusal;
    site().change(grid_, [&] {
      refusal = grid_.lines->set_cell(static_cast<std::size_t>(cell.row),
                                      static_cast<std::size_t>(cell.column), text);
      return !refusal;
    });
    return refusal;
  }

  void left(Cell cell, CellLeft how) override {
    if (how == CellLeft::Tab) edit_from({cell.row, cell.column + 1});
    if (how != CellLeft::ShiftTab) return;
    while (--cell.column >= 0 && !edit(cell)) {
    }
  }

  LongGrid& grid_;
  ListWindow list_;
  CellEditor editor_;
  ShownLines lines_;
  std::vector<GridLines::Column> columns_;
  std::size_t seen_top_ = 0;  // what the model's top was when it was looked at last
};

}  // namespace

std::unique_ptr<ControlView> make_view(LongGrid& grid, ViewSite& site) {
  return std::make_unique<LongGridView>(grid, site);
}

}  // namespace korvel::windows
