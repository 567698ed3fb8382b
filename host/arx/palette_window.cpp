#include "host/arx/palette_window.h"

#include "host/arx/dialogs.h"
#include "host/arx/resources.h"
#include "host/arx/session.h"

namespace korvel::arx {
namespace {

constexpr UINT show_anew_message = WM_APP + 100;  // of our own, to the palette's window

// Notices of the controls: of what the user did, and of lines of the drawing that have to be drawn.
bool needs_session(UINT message) { return message == WM_COMMAND || message == WM_NOTIFY; }

}  // namespace

// Unconfirmed: the form of the call.
bool PaletteWindow::make_in(CAdUiPaletteSet& set) {
  const std::wstring& title = content_.title();
  return Create(WS_CHILD | WS_VISIBLE, title.c_str(), &set, 0) != FALSE;
}

void PaletteWindow::show_anew() {
  deliver([this] {
    content_.shown();
    if (view_) view_->refresh();
  });
}

void PaletteWindow::show_anew_later() { PostMessage(show_anew_message, 0, 0); }

void PaletteWindow::clear() {
  run_guarded(content_.title(), [this] {
    content_.drawing_closes();
    if (view_) view_->refresh();
  });
}

BOOL PaletteWindow::PreTranslateMessage(MSG* message) {
  bool taken = false;
  const bool is_key = message->message >= WM_KEYFIRST && message->message <= WM_KEYLAST;
  if (view_ && is_key) deliver([&] { taken = view_->takes_key(message); });
  if (view_ && is_key && !taken) taken = view_->types_key(message);
  return taken || CAdUiPalette::PreTranslateMessage(message) ? TRUE : FALSE;
}

LRESULT PaletteWindow::WindowProc(UINT id, WPARAM wparam, LPARAM lparam) {
  // Unconfirmed: that the host asks its modeless windows by this message, and takes the keyboard
  // away from those that do not answer it.
  if (id == WM_ACAD_KEEPFOCUS) return TRUE;
  if (id == WM_DESTROY) forget_view();
  if (id == show_anew_message) {
    show_anew();
    return 0;
  }
  if (const std::optional<LRESULT> answer = answer_of_view({id, wparam, lparam})) return *answer;
  const LRESULT result = CAdUiPalette::WindowProc(id, wparam, lparam);
  if (id == WM_CREATE) deliver([this] { make_view(); });
  return result;
}

void PaletteWindow::make_view() {
  view_ = std::make_unique<windows::DialogView>(m_hWnd, content_, *this);
}

// The controls send messages as they go: the view is away before they do.
void PaletteWindow::forget_view() { const auto gone = std::move(view_); }

std::optional<LRESULT> PaletteWindow::answer_of_view(const windows::WindowMessage& message) {
  if (!view_) return std::nullopt;
  std::optional<LRESULT> answer;
  const auto ask_view = [&] { answer = view_->on_message(message); };
  if (needs_session(message.id)) {
    deliver(ask_view);
  } else {
    run_guarded(content_.title(), ask_view);
  }
  return answer;
}

void PaletteWindow::deliver(const std::function<void()>& action) {
  run_in_session(content_.title(), [&](Session& session) {
    const ModuleResources resources;
    const Palette::Turn turn(content_, session);
    action();
  });
}

std::optional<std::filesystem::path> PaletteWindow::choose_file(std::wstring_view filter) {
  return choose_file_to_open({filter, L""});
}

void PaletteWindow::complain(std::wstring_view sentence) {
  run_guarded(content_.title(), [sentence] { arx::complain(sentence); });
}

// A palette has no buttons that close it.
void PaletteWindow::closed(bool /*accepted*/) {}

}  // namespace korvel::arx
