#include "host/windows/list_window.h"

#include "host/windows/window_scroll.h"

namespace korvel::windows {

ListWindow::ListWindow(HWND parent, DWORD style, DWORD extended)
    : window_(make_child(parent, WC_LISTVIEWW,
                         {style | WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS, WS_EX_CLIENTEDGE})) {
  ListView_SetExtendedListViewStyle(window_.get(),
                                    extended | LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
}

int ListWindow::row_count() const { return static_cast<int>(send(LVM_GETITEMCOUNT)); }

int ListWindow::column_count() const {
  return Header_GetItemCount(ListView_GetHeader(window_.get()));
}

int ListWindow::row_height() const {
  RECT rect{};
  ListView_GetItemRect(window_.get(), 0, &rect, LVIR_BOUNDS);
  return rect.bottom - rect.top;
}

void ListWindow::add_column(int index, std::wstring heading, int width) const {
  LVCOLUMNW column{};
  column.mask = LVCF_TEXT | LVCF_WIDTH;
  column.cx = width;
  column.pszText = heading.data();
  ListView_InsertColumn(window_.get(), index, &column);
}

void ListWindow::delete_columns() const {
  while (ListView_DeleteColumn(window_.get(), 0) != FALSE) {
  }
}

void ListWindow::set_cell(Cell cell, std::wstring text) const {
  LVITEMW item{};
  item.mask = LVIF_TEXT;
  item.iItem = cell.row;
  item.iSubItem = cell.column;
  item.pszText = text.data();
  const bool is_new = cell.column == 0 && cell.row == row_count();
  send(is_new ? LVM_INSERTITEMW : LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

std::wstring ListWindow::cell_text(Cell cell) const {
  std::wstring text(256, L'\0');
  for (;;) {
    LVITEMW item{};
    item.iSubItem = cell.column;
    item.pszText = text.data();
    item.cchTextMax = static_cast<int>(text.size());
    const LRESULT length =
        send(LVM_GETITEMTEXTW, static_cast<WPARAM>(cell.row), reinterpret_cast<LPARAM>(&item));
    const auto copied = static_cast<std::size_t>(length);
    if (copied + 1 < text.size()) return text.substr(0, copied);
    text.resize(2 * text.size());
  }
}

Rect ListWindow::cell_rect(Cell cell) const {
  RECT rect{};
  if (cell.column == 0) {
    // The bounds of the first column are those of the row; its label is what a check box leaves.
    ListView_GetItemRect(window_.get(), cell.row, &rect, LVIR_LABEL);
  } else {
    ListView_GetSubItemRect(window_.get(), cell.row, cell.column, LVIR_BOUNDS, &rect);
  }
  return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

int ListWindow::inside_width() const {
  RECT inside{};
  GetClientRect(window_.get(), &inside);
  return inside.right;
}

void ListWindow::scroll_across_to(Cell cell) const {
  const Rect rect = cell_rect(cell);
  const int by = way_into_sight(rect.left, rect.right(), inside_width());
  if (by != 0) send(LVM_SCROLL, static_cast<WPARAM>(by));
}

std::optional<int> ListWindow::focused_row() const { return first_row(LVNI_FOCUSED); }

std::optional<int> ListWindow::highlighted_row() const { return first_row(LVNI_SELECTED); }

std::optional<int> ListWindow::first_row(LPARAM state) const {
  const auto row = static_cast<int>(send(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), state));
  return row < 0 ? std::nullopt : std::optional(row);
}

void ListWindow::focus_row(int row) const {
  const bool is_selected = send(LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_SELECTED) != 0;
  // Deselecting all can take long where there are many.
  if (!is_selected || send(LVM_GETSELECTEDCOUNT) != 1)
    ListView_SetItemState(window_.get(), -1, 0, LVIS_SELECTED);
  ListView_SetItemState(window_.get(), row, LVIS_FOCUSED | LVIS_SELECTED,
                        LVIS_FOCUSED | LVIS_SELECTED);
  ListView_EnsureVisible(window_.get(), row, FALSE);
}

}  // namespace korvel::windows
