// The list box and the drop-down list: lines of which one may be selected.
#include <cstddef>
#include <utility>

#include "host/windows/control_view.h"

namespace korvel::windows {
namespace {

// What the two classes of windows call the same things.
struct ListMessages {
  UINT reset;
  UINT add;
  UINT select;
  UINT selected;
  int changed;  // the notification
};

constexpr ListMessages of_list_box = {LB_RESETCONTENT, LB_ADDSTRING, LB_SETCURSEL, LB_GETCURSEL,
                                      LBN_SELCHANGE};
constexpr ListMessages of_drop_down = {CB_RESETCONTENT, CB_ADDSTRING, CB_SETCURSEL, CB_GETCURSEL,
                                       CBN_SELCHANGE};

class ListView : public ControlView {
 public:
  ListView(ListBox& list, ViewSite& site, const ListMessages& messages, OwnedWindow window)
      : ControlView(site), list_(list), messages_(messages), window_(std::move(window)) {}

  [[nodiscard]] std::vector<HWND> windows() const override { return {window_.get()}; }
  void show() override {
    if (shown_ != list_.items) {
      shown_ = list_.items;
      SendMessageW(window_.get(), WM_SETREDRAW, FALSE, 0);
      send(messages_.reset);
      for (const std::wstring& item : shown_)
        send(messages_.add, 0, reinterpret_cast<LPARAM>(item.c_str()));
      SendMessageW(window_.get(), WM_SETREDRAW, TRUE, 0);
      InvalidateRect(window_.get(), nullptr, TRUE);
    }
    if (selected() != list_.selected)
      send(messages_.select, list_.selected ? *list_.selected : static_cast<WPARAM>(-1));
  }
  void on_command(HWND /*sender*/, int code) override {
    if (code != messages_.changed) return;
    site().change(list_, [this] {
      const std::optional<std::size_t> before = list_.selected;
      list_.selected = selected();
      return list_.selected != before;
    });
  }

 protected:
  [[nodiscard]] HWND window() const { return window_.get(); }

 private:
  LRESULT send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const {
    return SendMessageW(window_.get(), message, wparam, lparam);
  }
  [[nodiscard]] std::optional<std::size_t> selected() const {
    const LRESULT index = send(messages_.selected);
    return index < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(index));
  }

  ListBox& list_;
  const ListMessages& messages_;
  OwnedWindow window_;
  std::vector<std::wstring> shown_;
};

class ListBoxView final : public ListView {
 public:
  ListBoxView(ListBox& list, ViewSite& site)
      : ListView(list, site, of_list_box,
                 make_child(site.window(), WC_LISTBOXW,
                            {WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT,
                             WS_EX_CLIENTEDGE})) {}

  [[nodiscard]] LayoutItem layout() const override {
    return {.shape = Shape::Block,
            .width = characters(30),
            .least_height = lines(3),
            .wanted_height = lines(9)};
  }
};

class DropDownView final : public ListView {
 public:
  DropDownView(DropDown& list, ViewSite& site)
      : ListView(list, site, of_drop_down,
                 make_child(site.window(), WC_COMBOBOXW,
                            {.style = WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST})) {
    SetWindowSubclass(window(), pass_wheel, 0, 0);
  }

  [[nodiscard]] LayoutItem layout() const override {
    return {.shape = Shape::Line, .width = characters(32), .stretches = true};
  }
  // The window is as high as it is when it is unfolded.
  void place(const Rect& body) override {
    const int edges = 2 * GetSystemMetrics(SM_CYEDGE) + 2;
    SendMessageW(window(), CB_SETITEMHEIGHT, static_cast<WPARAM>(-1), body.height - edges);
    windows::place(window(), {body.left, body.top, body.width, body.height + lines(12)});
  }
  // An unfolded list has its own use for both keys.
  bool on_key(HWND focus, WPARAM key) override {
    const bool unfolded = SendMessageW(window(), CB_GETDROPPEDSTATE, 0, 0) != FALSE;
    if (!unfolded || (key != VK_RETURN && key != VK_ESCAPE)) return false;
    SendMessageW(focus, WM_KEYDOWN, key, 0);
    return true;
  }

 private:
  // The wheel selects something else only where the user is; elsewhere it scrolls the dialog.
  static LRESULT CALLBACK pass_wheel(HWND window, UINT message, WPARAM wparam, LPARAM lparam,
                                     UINT_PTR /*id*/, DWORD_PTR /*data*/) {
    if (message == WM_MOUSEWHEEL && GetFocus() != window)
      return SendMessageW(GetParent(window), message, wparam, lparam);
    return DefSubclassProc(window, message, wparam, lparam);
  }
};

}  // namespace

std::unique_ptr<ControlView> make_view(ListBox& list, ViewSite& site) {
  return std::make_unique<ListBoxView>(list, site);
}

std::unique_ptr<ControlView> make_view(DropDown& list, ViewSite& site) {
  return std::make_unique<DropDownView>(list, site);
}

}  // namespace korvel::windows
