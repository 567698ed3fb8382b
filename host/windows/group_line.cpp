#include "host/windows/group_line.h"

namespace korvel::windows {

void draw_group_line(HDC context, const ListWindow& list, int row, HFONT font,
                     const GroupLine& group) {
  RECT bounds{};
  ListView_GetItemRect(list.get(), row, &bounds, LVIR_BOUNDS);
  RECT text_rect{};
  ListView_GetItemRect(list.get(), row, &text_rect, LVIR_LABEL);
  const bool is_highlighted =
      list.send(LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_SELECTED) != 0;

  RECT line = bounds;
  --line.bottom;  // the grid's line
  FillRect(context, &line, GetSysColorBrush(is_highlighted ? COLOR_HIGHLIGHT : COLOR_BTNFACE));

  const auto boxes = reinterpret_cast<HIMAGELIST>(list.send(LVM_GETIMAGELIST, LVSIL_STATE));
  int width = 0;
  int height = 0;
  ImageList_GetIconSize(boxes, &width, &height);
  ImageList_Draw(boxes, group.chosen ? 1 : 0, context, text_rect.left - width,
                 bounds.top + (bounds.bottom - bounds.top - height) / 2, ILD_TRANSPARENT);

  const std::wstring shown = (group.folded ? L"\u25B8 " : L"\u25BE ") + group.heading;
  text_rect.right = bounds.right;
  text_rect.left += 2;
  const HGDIOBJ former = SelectObject(context, font);
  const COLORREF color =
      SetTextColor(context, GetSysColor(is_highlighted ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
  const int mode = SetBkMode(context, TRANSPARENT);
  DrawTextW(context, shown.c_str(), static_cast<int>(shown.size()), &text_rect,
            DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
  SetBkMode(context, mode);
  SetTextColor(context, color);
  SelectObject(context, former);
}

}  // namespace korvel::windows
