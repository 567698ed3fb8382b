#include "host/windows/control_view.h"

#include <algorithm>

namespace korvel::windows {

bool ControlView::has(HWND window) const {
  return std::ranges::any_of(
      windows(), [window](HWND own) { return own == window || IsChild(own, window) != FALSE; });
}

std::unique_ptr<ControlView> make_control_view(const ControlPointer& control, ViewSite& site) {
  return std::visit([&site](auto* one) { return make_view(*one, site); }, control);
}

}  // namespace korvel::windows
