#include "host/windows/window_scroll.h"

#include <algorithm>

namespace korvel::windows {

int way_into_sight(int begin, int end, int inside) {
  return std::min(std::max(end - inside, 0), begin);
}

// A range that the page covers takes the bar off. A window that never had one is left alone.
void WindowScroll::show(int height, int inside) {
  const bool had_bar = height_ > inside_;
  height_ = height;
  inside_ = inside;
  position_ = std::clamp(position_, 0, std::max(height - inside, 0));
  if (height <= inside && !had_bar) return;
  const SCROLLINFO info{sizeof info,
                        SIF_RANGE | SIF_PAGE | SIF_POS,
                        0,
                        height - 1,
                        static_cast<UINT>(inside),
                        position_,
                        0};
  SetScrollInfo(window_, SB_VERT, &info, TRUE);
}

bool WindowScroll::on_message(UINT message, WPARAM wparam) {
  if (height_ <= inside_) return false;
  const int step = std::max(inside_ / 8, 1);
  if (message == WM_MOUSEWHEEL) {
    return move_to(position_ - GET_WHEEL_DELTA_WPARAM(wparam) * 2 * step / WHEEL_DELTA);
  }
  switch (LOWORD(wparam)) {
    case SB_LINEUP:
      return move_to(position_ - step);
    case SB_LINEDOWN:
      return move_to(position_ + step);
    case SB_PAGEUP:
      return move_to(position_ - inside_);
    case SB_PAGEDOWN:
      return move_to(position_ + inside_);
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION: {
      // The message has no room for positions beyond 65535.
      SCROLLINFO info{};
      info.cbSize = sizeof info;
      info.fMask = SIF_TRACKPOS;
      GetScrollInfo(window_, SB_VERT, &info);
      return move_to(info.nTrackPos);
    }
    default:
      return false;
  }
}

bool WindowScroll::bring(int top, int bottom) {
  return height_ > inside_ && move_to(position_ + way_into_sight(top, bottom, inside_));
}

bool WindowScroll::move_to(int position) {
  const int before = position_;
  position_ = std::clamp(position, 0, height_ - inside_);
  return position_ != before;
}

}  // namespace korvel::windows
