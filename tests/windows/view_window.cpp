#include "tests/windows/view_window.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "frame/utf.h"

namespace korvel::windows::test {
namespace {

constexpr const wchar_t* window_class = L"KorvelViewWindow";

void register_class(WNDPROC procedure) {
  WNDCLASSW traits{};
  traits.lpfnWndProc = procedure;
  traits.hInstance = GetModuleHandleW(nullptr);
  traits.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  traits.lpszClassName = window_class;
  RegisterClassW(&traits);  // refused from the second time on
}

}  // namespace

ViewWindow::ViewWindow(Dialog& dialog, Turn turn) : turn_(std::move(turn)) {
  register_class(procedure);
  window_ = CreateWindowExW(0, window_class, dialog.title().c_str(),
                            WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_VISIBLE, 40, 40, 600, 500,
                            nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  view_ = new DialogView(window_, dialog, *this);
}

ViewWindow::~ViewWindow() { DestroyWindow(window_); }

LRESULT CALLBACK ViewWindow::procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  auto* const self = reinterpret_cast<ViewWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self != nullptr && self->view_ != nullptr) {
    const WindowMessage seen{message, wparam, lparam};
    const std::optional<std::intptr_t> answer = self->view_->on_message(seen);
    EXPECT_FALSE(answer && self->is_going_) << "message " << message;
    if (answer) return *answer;
    if (message == WM_DESTROY) self->delete_view();
  }
  if (self != nullptr && message == WM_ENTERIDLE && wparam == MSGF_MENU) {
    ++self->menus;
    EndMenu();
  }
  return DefWindowProcW(window, message, wparam, lparam);
}

// The view is forgotten after it went, so that it is handed all that comes in between.
void ViewWindow::delete_view() {
  is_going_ = true;
  delete view_;
  view_ = nullptr;
}

void ViewWindow::deliver(const std::function<void()>& action) {
  ++turns;
  if (turn_) {
    turn_(action);
  } else {
    action();
  }
}

std::optional<std::filesystem::path> ViewWindow::choose_file(std::wstring_view filter) {
  filters.emplace_back(filter);
  return file;
}

void ViewWindow::closed(bool is_accepted) {
  EXPECT_FALSE(accepted) << "closed twice";
  accepted = is_accepted;
}

void ViewWindow::resize(Size inside) {
  RECT rect{0, 0, inside.width, inside.height};
  AdjustWindowRect(&rect, static_cast<DWORD>(GetWindowLongPtrW(window_, GWL_STYLE)), FALSE);
  SetWindowPos(window_, nullptr, 0, 0, rect.right - rect.left, rect.bottom - rect.top,
               SWP_NOMOVE | SWP_NOZORDER);
}

std::vector<HWND> ViewWindow::children(std::wstring_view class_name) const {
  std::vector<HWND> found;
  for (HWND one = GetWindow(window_, GW_CHILD); one != nullptr; one = GetWindow(one, GW_HWNDNEXT)) {
    std::wstring name(64, L'\0');
    name.resize(static_cast<std::size_t>(GetClassNameW(one, name.data(), 64)));
    if (lstrcmpiW(name.c_str(), std::wstring(class_name).c_str()) == 0) found.push_back(one);
  }
  return found;
}

HWND ViewWindow::child(std::wstring_view class_name, std::size_t index) const {
  const std::vector<HWND> found = children(class_name);
  if (index < found.size()) return found[index];
  ADD_FAILURE() << "no such child: " << to_utf8(class_name) << ' ' << index;
  return nullptr;
}

HWND ViewWindow::button(std::wstring_view text) const {
  for (const HWND one : children(WC_BUTTONW)) {
    if (text_in(one) == text) return one;
  }
  ADD_FAILURE() << "no such button: " << to_utf8(text);
  return nullptr;
}

bool ViewWindow::key(WPARAM key) {
  MSG message{GetFocus(), WM_KEYDOWN, key, 1, 0, {}};
  if (view_->takes_key(&message)) return true;
  DispatchMessageW(&message);
  return false;
}

void ViewWindow::type(std::wstring_view text) {
  for (const wchar_t unit : text)
    SendMessageW(GetFocus(), WM_CHAR, unit, 1);
}

void ViewWindow::click(HWND window, POINT point, bool twice) {
  const LPARAM place = MAKELPARAM(point.x, point.y);
  // A list waits for the button to come up again; the message lies in the queue by then.
  const auto press = [&](UINT down) {
    PostMessageW(window, WM_LBUTTONUP, 0, place);
    SendMessageW(window, down, MK_LBUTTON, place);
    MSG message{};
    while (PeekMessageW(&message, window, WM_LBUTTONUP, WM_LBUTTONUP, PM_REMOVE) != FALSE)
      DispatchMessageW(&message);
  };
  press(WM_LBUTTONDOWN);
  if (twice) press(WM_LBUTTONDBLCLK);
}

void ViewWindow::pump() {
  MSG message{};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE)
    DispatchMessageW(&message);
}

std::wstring text_in(HWND window) {
  std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
  text.resize(
      static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
  return text;
}

}  // namespace korvel::windows::test
