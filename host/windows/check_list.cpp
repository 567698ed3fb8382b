// Lines with a check box each.
#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "host/windows/control_view.h"
#include "host/windows/list_window.h"

namespace korvel::windows {
namespace {

class CheckListView final : public ControlView {
 public:
  CheckListView(CheckList& list, ViewSite& site)
      : ControlView(site),
        list_(list),
        window_(site.window(), LVS_NOCOLUMNHEADER | LVS_SINGLESEL, LVS_EX_CHECKBOXES) {
    window_.add_column(0, {}, 0);
  }

  [[nodiscard]] std::vector<HWND> windows() const override { return {window_.get()}; }
  [[nodiscard]] LayoutItem layout() const override {
    return {.shape = Shape::Block,
            .width = characters(30),
            .least_height = lines(3),
            .wanted_height = lines(9)};
  }
  void place(const Rect& body) override {
    ControlView::place(body);
    fit_column();
  }
  void show() override {
    const auto has_text = [](const std::wstring& text, const CheckList::Item& item) {
      return text == item.text;
    };
    if (!std::ranges::equal(shown_, list_.items, has_text)) fill();
    for (std::size_t i = 0; i < list_.items.size(); ++i) {
      const auto row = static_cast<int>(i);
      if (is_checked(row) != list_.items[i].checked)
        ListView_SetCheckState(window_.get(), row, list_.items[i].checked ? TRUE : FALSE);
    }
  }
  LRESULT on_notify(const NMHDR& header) override {
    if (header.code != LVN_ITEMCHANGED) return 0;
    const auto& changed = reinterpret_cast<const NMLISTVIEW&>(header);
    const UINT states = changed.uOldState ^ changed.uNewState;
    if ((changed.uChanged & LVIF_STATE) == 0 || (states & LVIS_STATEIMAGEMASK) == 0) return 0;
    check(changed.iItem);
    return 0;
  }

 private:
  void fill() {
    window_.send(WM_SETREDRAW, FALSE);
    ListView_DeleteAllItems(window_.get());
    shown_.clear();
    for (const CheckList::Item& item : list_.items) {
      window_.set_cell({static_cast<int>(shown_.size()), 0}, item.text);
      shown_.push_back(item.text);
    }
    window_.send(WM_SETREDRAW, TRUE);
    fit_column();
    InvalidateRect(window_.get(), nullptr, TRUE);
  }

  // The one column is as wide as the window and its longest text.
  void fit_column() const {
    window_.send(LVM_SETCOLUMNWIDTH, 0, LVSCW_AUTOSIZE);
    const int inside = window_.inside_width();
    if (window_.send(LVM_GETCOLUMNWIDTH, 0) < inside) window_.send(LVM_SETCOLUMNWIDTH, 0, inside);
  }

  [[nodiscard]] bool is_checked(int row) const {
    return ListView_GetCheckState(window_.get(), row) != 0;
  }

  void check(int row) {
    site().change(list_, [this, row] {
      CheckList::Item& item = list_.items[static_cast<std::size_t>(row)];
      const bool on = is_checked(row);
      return std::exchange(item.checked, on) != on;
    });
  }

  CheckList& list_;
  ListWindow window_;
  std::vector<std::wstring> shown_;
};

}  // namespace

std::unique_ptr<ControlView> make_view(CheckList& list, ViewSite& site) {
  return std::make_unique<CheckListView>(list, site);
}

}  // namespace korvel::windows
