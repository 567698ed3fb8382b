// The buttons of a dialog; those of a menu are items of one button that unfolds it.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "frame/dialog.h"
#include "host/windows/child_window.h"
#include "host/windows/common_controls.h"
#include "host/windows/dialog_layout.h"

namespace korvel::windows {

// A menu reports its items to the window by this number and the button's index.
inline constexpr UINT first_menu_item = 0x100;

class DialogButtons {
 public:
  DialogButtons(HWND window, const Dialog& dialog);

  // In the order of the Tab key: the menus, then the others.
  [[nodiscard]] std::vector<HWND> windows() const;
  [[nodiscard]] std::vector<LayoutButton> layout(HFONT font, const FontUnits& units) const;
  void place(const std::vector<Rect>& rects) const;

  // The dialog's button that a WM_COMMAND means; opens a menu when it is one's button.
  [[nodiscard]] std::optional<std::size_t> pressed(WPARAM wparam, LPARAM lparam) const;

  // The first of the role; none: the dialog has no such button.
  [[nodiscard]] std::optional<std::size_t> first_of(ButtonRole role) const;

 private:
  struct Entry {
    std::wstring label;
    bool is_menu = false;
    std::size_t button = 0;  // a menu's first
    OwnedWindow window;
  };
  [[nodiscard]] const Entry* entry_of(HWND window) const;
  void unfold(const Entry& menu) const;

  HWND window_;
  const Dialog& dialog_;
  std::vector<Entry> entries_;
};

}  // namespace korvel::windows
