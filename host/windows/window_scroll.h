// The scroll bar of a window that is lower than what is in it.
#pragma once

#include "host/windows/common_controls.h"

namespace korvel::windows {

// How far to scroll for as much of it in sight as there is room for, the beginning before the end.
[[nodiscard]] int way_into_sight(int begin, int end, int inside);

class WindowScroll {
 public:
  explicit WindowScroll(HWND window) : window_(window) {}

  // Shows the bar if it is needed. Heights in pixels, of all and of the window's inside.
  void show(int height, int inside);

  // How far what is shown is moved up.
  [[nodiscard]] int position() const { return position_; }

  // WM_VSCROLL of the window itself or WM_MOUSEWHEEL. True: the position is another one.
  bool on_message(UINT message, WPARAM wparam);

  // Brings what is shown there now into sight. True: the position is another one.
  bool bring(int top, int bottom);

 private:
  bool move_to(int position);

  HWND window_;
  int height_ = 0;
  int inside_ = 0;
  int position_ = 0;
};

}  // namespace korvel::windows
