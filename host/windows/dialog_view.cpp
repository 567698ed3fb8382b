#include "host/windows/dialog_view.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/windows/child_window.h"
#include "host/windows/common_controls.h"
#include "host/windows/control_view.h"
#include "host/windows/dialog_buttons.h"
#include "host/windows/flag_guard.h"
#include "host/windows/window_scroll.h"

namespace korvel::windows {
namespace {

// The colon that ends some labels is the way of others; here all of them have it.
std::wstring shown_label(const Control& control) {
  std::wstring label = control.label;
  if (!label.ends_with(L':')) label += L':';
  return label;
}

bool is_push_button(HWND window) {
  constexpr LRESULT kinds = DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON;
  return (SendMessageW(window, WM_GETDLGCODE, 0, 0) & kinds) != 0;
}

// A field of several lines.
bool is_text_block(HWND window) {
  constexpr LRESULT both = DLGC_HASSETSEL | DLGC_WANTALLKEYS;
  return (SendMessageW(window, WM_GETDLGCODE, 0, 0) & both) == both;
}

bool load_common_controls() {
  const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES |
                                                         ICC_TREEVIEW_CLASSES | ICC_UPDOWN_CLASS};
  return InitCommonControlsEx(&classes) != FALSE;
}

}  // namespace

class DialogView::Controls final : public ViewSite {
 public:
  Controls(HWND window, Dialog& dialog, ViewOwner& owner)
      : window_(window), dialog_(dialog), owner_(owner) {
    load_common_controls();
    take_fonts();
    for (const ControlPointer& control : dialog.controls())
      add(control);
    buttons_ = std::make_unique<DialogButtons>(window, dialog);
    use_fonts();
    refresh();
    arrange();
  }

  // --- What controls see ---

  [[nodiscard]] HWND window() const override { return window_; }
  [[nodiscard]] HFONT font() const override { return font_.get(); }
  [[nodiscard]] HFONT bold_font() const override { return bold_font_.get(); }
  [[nodiscard]] const FontUnits& units() const override { return units_; }
  [[nodiscard]] ViewOwner& owner() const override { return owner_; }

  void change(const Control& control, const std::function<bool()>& make_change) override {
    run([&] {
      if (make_change()) dialog_.changed(control);
    });
  }
  void activate(const Control& control, const std::function<void()>& select) override {
    run([&] {
      select();
      dialog_.activated(control);
    });
  }
  bool move_focus(HWND from, bool back) override {
    const HWND next = GetNextDlgTabItem(window_, from, back ? TRUE : FALSE);
    if (next == nullptr) return false;
    SendMessageW(window_, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS), 0);
    SetFocus(next);
    note_focus();
    scroll_to(next);
    if ((SendMessageW(next, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL) != 0)
      SendMessageW(next, EM_SETSEL, 0, -1);
    return true;
  }

  // --- The view ---

  void refresh() {
    const FlagGuard showing(is_showing_);
    for (const Row& row : rows_) {
      row.view->show();
      for (const HWND window : row.view->windows())
        show_enabled(window, row.control->enabled);
      if (row.label) show_enabled(row.label.get(), row.control->enabled);
    }
  }

  [[nodiscard]] Size preferred_size() const {
    return korvel::windows::preferred_size(layout_request());
  }

  std::optional<LRESULT> on_message(UINT id, WPARAM wparam, LPARAM lparam) {
    switch (id) {
      case WM_COMMAND:
        note_focus();
        return on_command(wparam, lparam);
      case WM_NOTIFY:
        note_focus();
        return on_notify(*reinterpret_cast<const NMHDR*>(lparam));
      case WM_SIZE:
        arrange();
        return 0;
      case WM_VSCROLL:
      case WM_MOUSEWHEEL:
        // With a window, the message is that of a control's own bar or arrows.
        if (id == WM_VSCROLL && lparam != 0) return std::nullopt;
        if (!scroll_.on_message(id, wparam)) return std::nullopt;
        arrange();
        return 0;
      case WM_SETFOCUS:
        take_focus();
        return 0;
      case WM_ERASEBKGND:
        erase(reinterpret_cast<HDC>(wparam));
        return 1;
      case WM_DPICHANGED:
      case WM_DPICHANGED_AFTERPARENT:
      case WM_SETTINGCHANGE:
        take_fonts();
        use_fonts();
        arrange();
        return std::nullopt;
      default:
        return std::nullopt;
    }
  }

  bool takes_key(const MSG& message) {
    // What is inside of a control, such as the field over a cell, has its own use for all keys.
    if (message.message != WM_KEYDOWN || GetParent(message.hwnd) != window_) return false;
    const WPARAM key = message.wParam;
    if (key == VK_RETURN && dialog_.swallows(DialogKey::Enter)) return true;
    if (key == VK_ESCAPE && dialog_.swallows(DialogKey::Escape)) return true;
    const auto focused = std::ranges::find_if(
        rows_, [&message](const Row& row) { return row.view->has(message.hwnd); });
    if (focused != rows_.end() && focused->view->on_key(message.hwnd, key)) return true;
    if (key == VK_TAB) return move_focus(message.hwnd, GetKeyState(VK_SHIFT) < 0);
    if (key == VK_RETURN && is_push_button(message.hwnd))
      return SendMessageW(message.hwnd, BM_CLICK, 0, 0), true;
    if (key != VK_RETURN && key != VK_ESCAPE) return false;
    const ButtonRole role = key == VK_RETURN ? ButtonRole::Accept : ButtonRole::Cancel;
    // A field of several lines would hand the key on to the window, and Esc closes that.
    return press_if(buttons_->first_of(role)) || is_text_block(message.hwnd);
  }

  [[nodiscard]] bool types_key(const MSG& message) const {
    const bool is_typed = message.message >= WM_KEYDOWN && message.message < WM_SYSKEYDOWN;
    if (!is_typed || IsChild(window_, message.hwnd) == FALSE) return false;
    const LRESULT code = SendMessageW(message.hwnd, WM_GETDLGCODE, 0, 0);
    if ((code & DLGC_WANTALLKEYS) != 0) return true;
    return (code & DLGC_HASSETSEL) != 0 && message.wParam != VK_ESCAPE;
  }

 private:
  struct Row {
    const Control* control = nullptr;
    OwnedWindow label;  // none: the control shows its label itself
    std::unique_ptr<ControlView> view;
  };

  void add(const ControlPointer& pointer) {
    Row row{&control_of(pointer), nullptr, nullptr};
    if (!std::holds_alternative<CheckBox*>(pointer) && !row.control->label.empty()) {
      row.label = make_child(window_, WC_STATICW, {.style = SS_NOPREFIX | SS_CENTERIMAGE},
                             shown_label(*row.control));
    }
    row.view = make_control_view(pointer, *this);
    rows_.push_back(std::move(row));
  }

  // --- Fonts and places ---

  void take_fonts() {
    former_fonts_ = {std::move(font_), std::move(bold_font_)};
    font_ = message_font(window_, false);
    bold_font_ = message_font(window_, true);
    units_ = font_units(window_, font_.get());
  }

  // The former fonts may go when no window has them any more.
  void use_fonts() {
    const auto use = [this](HWND window) {
      SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), TRUE);
    };
    for (const Row& row : rows_) {
      if (row.label) use(row.label.get());
      std::ranges::for_each(row.view->windows(), use);
    }
    std::ranges::for_each(buttons_->windows(), use);
    former_fonts_ = {};
  }

  [[nodiscard]] LayoutMetrics layout_metrics() const {
    return {.margin = units_.across(7),
            .gap = units_.across(4),
            .line_height = units_.down(14),
            .label_height = units_.down(11),
            .button_height = units_.down(15)};
  }

  [[nodiscard]] LayoutRequest layout_request() const {
    LayoutRequest request;
    request.metrics = layout_metrics();
    for (const Row& row : rows_) {
      LayoutItem item = row.view->layout();
      if (row.label) {
        item.label_width = text_width(window_, font_.get(), shown_label(*row.control));
      }
      request.items.push_back(item);
    }
    request.buttons = buttons_->layout(font_.get(), units_);
    return request;
  }

  void arrange() {
    const FlagGuard arranging(is_arranging_);
    if (arranging.was_on()) return;  // a scroll bar came or went
    const LayoutRequest request = layout_request();
    const auto fits = [this, &request] {
      RECT inside{};
      GetClientRect(window_, &inside);
      const Layout layout = lay_out(request, {inside.right, inside.bottom});
      scroll_.show(layout.height, inside.bottom);
      return layout;
    };
    static_cast<void>(fits());
    const Layout layout = fits();  // in the width that a scroll bar leaves
    const auto moved = [this](Rect rect) {
      rect.top -= scroll_.position();
      return rect;
    };
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      if (rows_[i].label) place(rows_[i].label.get(), moved(layout.items[i].label));
      rows_[i].view->place(moved(layout.items[i].body));
    }
    std::vector<Rect> buttons = layout.buttons;
    std::ranges::transform(buttons, buttons.begin(), moved);
    buttons_->place(buttons);
    InvalidateRect(window_, nullptr, TRUE);
  }

  // With a label above it.
  void scroll_to(HWND child) {
    RECT rect{};
    GetWindowRect(child, &rect);
    MapWindowPoints(HWND_DESKTOP, window_, reinterpret_cast<POINT*>(&rect), 2);
    const LayoutMetrics metrics = layout_metrics();
    if (scroll_.bring(rect.top - metrics.label_height, rect.bottom + metrics.gap)) arrange();
  }

  // Around the children, so that they do not flicker. A themed button, however, asks for what is
  // behind it, in a context of its own.
  void erase(HDC context) const {
    const int before = SaveDC(context);
    if (WindowFromDC(context) == window_) exclude_children(context);
    RECT inside{};
    GetClientRect(window_, &inside);
    FillRect(context, &inside, GetSysColorBrush(COLOR_BTNFACE));
    RestoreDC(context, before);
  }

  void exclude_children(HDC context) const {
    for (HWND child = GetWindow(window_, GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT)) {
      RECT rect{};
      if (IsWindowVisible(child) == FALSE || GetWindowRect(child, &rect) == FALSE) continue;
      MapWindowPoints(HWND_DESKTOP, window_, reinterpret_cast<POINT*>(&rect), 2);
      ExcludeClipRect(context, rect.left, rect.top, rect.right, rect.bottom);
    }
  }

  // --- What the user does ---

  std::optional<LRESULT> on_command(WPARAM wparam, LPARAM lparam) {
    const auto sender = reinterpret_cast<HWND>(lparam);
    for (const Row& row : rows_) {
      if (sender == nullptr || !row.view->has(sender)) continue;
      row.view->on_command(sender, HIWORD(wparam));
      return 0;
    }
    const std::optional<std::size_t> button = buttons_->pressed(wparam, lparam);
    if (button) press(*button);
    const bool is_ours = button || std::ranges::count(buttons_->windows(), sender) > 0;
    return is_ours ? std::optional<LRESULT>(0) : std::nullopt;
  }

  std::optional<LRESULT> on_notify(const NMHDR& header) {
    for (const Row& row : rows_) {
      if (row.view->has(header.hwndFrom)) return row.view->on_notify(header);
    }
    return std::nullopt;
  }

  // Controls that get the focus say something to the window, then or when they are used.
  void note_focus() {
    for (HWND window = GetFocus(); window != nullptr;) {
      const HWND parent = GetAncestor(window, GA_PARENT);
      if (parent == window_) last_focus_ = window;
      window = parent;
    }
  }

  // The child that had it last has it again.
  void take_focus() const {
    const bool is_usable =
        IsWindowVisible(last_focus_) != FALSE && IsWindowEnabled(last_focus_) != FALSE;
    const HWND next = is_usable ? last_focus_ : GetNextDlgTabItem(window_, nullptr, FALSE);
    if (next != nullptr) SetFocus(next);
  }

  // What the user did. The text of an open cell comes first; nothing is shown before all is done,
  // or the user's change would be shown away before it is in the model.
  void run(const std::function<void()>& action) {
    if (is_showing_) return;
    const FlagGuard running(is_running_);
    for (const Row& row : rows_)
      row.view->finish_typing();
    owner_.deliver(action);
    if (!running.was_on()) refresh();
  }

  bool press_if(std::optional<std::size_t> button) {
    if (button) press(*button);
    return button.has_value();
  }

  // Nothing of the view is touched after `closed`, which may have destroyed it.
  void press(std::size_t button) {
    bool closes = false;
    run([&] { closes = dialog_.press(button); });
    if (closes) owner_.closed(dialog_.buttons()[button].role == ButtonRole::Accept);
  }

  HWND window_;
  Dialog& dialog_;
  ViewOwner& owner_;
  OwnedFont font_;
  OwnedFont bold_font_;
  std::pair<OwnedFont, OwnedFont> former_fonts_;
  FontUnits units_;
  std::vector<Row> rows_;
  std::unique_ptr<DialogButtons> buttons_;
  WindowScroll scroll_{window_};
  HWND last_focus_ = nullptr;
  bool is_showing_ = false;
  bool is_running_ = false;  // something that the user did
  bool is_arranging_ = false;
};

DialogView::DialogView(WindowHandle window, Dialog& dialog, ViewOwner& owner)
    : controls_(std::make_unique<Controls>(static_cast<HWND>(window), dialog, owner)) {}

// Windows tell their parent that they go; nothing is there any more to take it.
DialogView::~DialogView() { const std::unique_ptr<Controls> gone = std::move(controls_); }

void DialogView::refresh() { controls_->refresh(); }

Size DialogView::preferred_size() const { return controls_->preferred_size(); }

std::optional<std::intptr_t> DialogView::on_message(const WindowMessage& message) {
  if (!controls_) return std::nullopt;
  return controls_->on_message(message.id, message.wparam, message.lparam);
}

bool DialogView::takes_key(void* message) {
  return controls_->takes_key(*static_cast<const MSG*>(message));
}

bool DialogView::types_key(void* message) {
  const MSG& key = *static_cast<const MSG*>(message);
  if (!controls_->types_key(key)) return false;
  TranslateMessage(&key);
  DispatchMessageW(&key);
  return true;
}

}  // namespace korvel::windows
