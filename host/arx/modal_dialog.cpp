#include "host/arx/modal_dialog.h"

#include <string>
#include <utility>

#include "host/arx/dialogs.h"
#include "host/arx/resource_ids.h"

namespace korvel::arx {
namespace {

// The pattern of the host's: module, colon, dialog.
std::wstring dialog_name(const Dialog& dialog) { return L"korvel:" + dialog.title(); }

CWnd* dialog_in_front = nullptr;

// While it lives, the dialog is the one in front.
class InFront {
 public:
  explicit InFront(CWnd& dialog) : former_(std::exchange(dialog_in_front, &dialog)) {}
  ~InFront() { dialog_in_front = former_; }
  InFront(const InFront&) = delete;
  InFront& operator=(const InFront&) = delete;

 private:
  CWnd* former_;
};

}  // namespace

ModalDialog::ModalDialog(Dialog& dialog, std::optional<windows::Size> inside)
    : CAcUiDialog(IDD_KORVEL_DIALOG, window_in_front()), dialog_(dialog), inside_(inside) {
  SetDialogName(dialog_name(dialog).c_str());
}

bool ModalDialog::run() {
  const bool accepted = is_accepted();
  if (thrown_) std::rethrow_exception(thrown_);
  if (!accepted) dialog_.cancel();
  return accepted;
}

bool ModalDialog::is_accepted() {
  const InFront in_front(*this);
  return DoModal() == IDOK;
}

BOOL ModalDialog::OnInitDialog() {
  SetWindowText(dialog_.title().c_str());
  catching([this] {
    view_ = std::make_unique<windows::DialogView>(m_hWnd, dialog_, *this);
    windows::give_inside(m_hWnd, inside_.value_or(view_->preferred_size()));
  });
  CAcUiDialog::OnInitDialog();  // gives the window the place and the size that the user gave it
  return FALSE;                 // the focus is where the view put it
}

BOOL ModalDialog::PreTranslateMessage(MSG* message) {
  bool taken = false;
  catching([&] { taken = view_ && view_->takes_key(message); });
  return taken || CAcUiDialog::PreTranslateMessage(message) ? TRUE : FALSE;
}

LRESULT ModalDialog::WindowProc(UINT id, WPARAM wparam, LPARAM lparam) {
  std::optional<std::intptr_t> answer;
  catching([&] {
    if (view_) answer = view_->on_message({id, wparam, lparam});
  });
  if (id == WM_DESTROY) forget_view();
  const bool is_for_both = id == WM_SIZE;  // the host's framework keeps the size
  return answer && !is_for_both ? *answer : CAcUiDialog::WindowProc(id, wparam, lparam);
}

// The controls send messages as they go: the view is away before they do.
void ModalDialog::forget_view() { const auto gone = std::move(view_); }

// Enter is the view's; what comes here is no button of the dialog's.
void ModalDialog::OnOK() {}

void ModalDialog::OnCancel() { closed(false); }

void ModalDialog::deliver(const std::function<void()>& action) { catching(action); }

std::optional<std::filesystem::path> ModalDialog::choose_file(std::wstring_view filter) {
  return choose_file_to_open({filter, L""});
}

void ModalDialog::complain(std::wstring_view sentence) {
  catching([sentence] { arx::complain(sentence); });
}

void ModalDialog::closed(bool accepted) { EndDialog(accepted ? IDOK : IDCANCEL); }

// Nothing may be thrown through a procedure of a window.
void ModalDialog::catching(const std::function<void()>& action) try { action(); } catch (...) {
  if (!thrown_) thrown_ = std::current_exception();
  EndDialog(IDCANCEL);
}

CWnd* window_in_front() {
  return dialog_in_front != nullptr ? dialog_in_front : acedGetAcadFrame();
}

}  // namespace korvel::arx
