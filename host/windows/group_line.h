// The line of a list window that is the heading of a group.
#pragma once

#include <string>

#include "host/windows/common_controls.h"
#include "host/windows/list_window.h"

namespace korvel::windows {

struct GroupLine {
  std::wstring heading;
  bool folded = false;
  bool chosen = false;
};

void draw_group_line(HDC context, const ListWindow& list, int row, HFONT font,
                     const GroupLine& group);

}  // namespace korvel::windows
