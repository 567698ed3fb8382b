// A window of lines with columns (a list view), as the check list and both grids need it.
#pragma once

#include <optional>
#include <string>

#include "host/windows/child_window.h"
#include "host/windows/common_controls.h"

namespace korvel::windows {

struct Cell {
  int row = 0;
  int column = 0;

  friend bool operator==(const Cell&, const Cell&) = default;
};

class ListWindow {
 public:
  // `style`: beyond what all have; `extended`: LVS_EX_...
  ListWindow(HWND parent, DWORD style, DWORD extended);

  [[nodiscard]] HWND get() const { return window_.get(); }

  [[nodiscard]] int row_count() const;
  [[nodiscard]] int column_count() const;
  [[nodiscard]] int row_height() const;  // as long as there is a row

  void add_column(int index, std::wstring heading, int width) const;
  void delete_columns() const;
  void set_cell(Cell cell, std::wstring text) const;  // column 0 of the next row adds it
  [[nodiscard]] std::wstring cell_text(Cell cell) const;
  [[nodiscard]] Rect cell_rect(Cell cell) const;

  [[nodiscard]] int inside_width() const;
  // As much of the cell as there is room for, the beginning before the end.
  void scroll_across_to(Cell cell) const;

  // The row that has the keyboard's focus; none: no row has it.
  [[nodiscard]] std::optional<int> focused_row() const;
  // The first one that is; none: no row is.
  [[nodiscard]] std::optional<int> highlighted_row() const;
  void focus_row(int row) const;

  LRESULT send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const {
    return SendMessageW(window_.get(), message, wparam, lparam);
  }

 private:
  [[nodiscard]] std::optional<int> first_row(LPARAM state) const;

  OwnedWindow window_;
};

}  // namespace korvel::windows
