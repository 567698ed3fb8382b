// The first size and place of a dialog's window.
#include <algorithm>

#include "host/windows/common_controls.h"
#include "host/windows/dialog_view.h"

namespace korvel::windows {
namespace {

// Of all that is round the inside.
Size frame_around(HWND window, Size inside) {
  RECT frame{0, 0, inside.width, inside.height};
  AdjustWindowRectExForDpi(&frame, static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE)), FALSE,
                           static_cast<DWORD>(GetWindowLongPtrW(window, GWL_EXSTYLE)),
                           GetDpiForWindow(window));
  return {frame.right - frame.left, frame.bottom - frame.top};
}

RECT work_area(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return monitor.rcWork;
}

// Where a stretch begins that is centred on another and stays inside of a third.
int centred(int length, LONG on_begin, LONG on_end, LONG least, LONG most) {
  const LONG wanted = (on_begin + on_end - length) / 2;
  return static_cast<int>(std::max(std::min(wanted, most - length), least));
}

}  // namespace

void give_inside(WindowHandle handle, Size inside) {
  const auto window = static_cast<HWND>(handle);
  const HWND owner = GetWindow(window, GW_OWNER);
  const RECT area = work_area(owner == nullptr ? window : owner);
  RECT on = area;
  if (owner != nullptr && IsIconic(owner) == FALSE) GetWindowRect(owner, &on);
  Size size = frame_around(window, inside);
  size.width = std::min(size.width, static_cast<int>(area.right - area.left));
  size.height = std::min(size.height, static_cast<int>(area.bottom - area.top));
  SetWindowPos(window, nullptr, centred(size.width, on.left, on.right, area.left, area.right),
               centred(size.height, on.top, on.bottom, area.top, area.bottom), size.width,
               size.height, SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace korvel::windows
