#include "host/windows/cell_editor.h"

#include <algorithm>
#include <utility>

#include "host/windows/flag_guard.h"

namespace korvel::windows {
namespace {

// The list's message to itself.
constexpr UINT complain_message = WM_APP;

}  // namespace

CellEditor::CellEditor(const ListWindow& list, ViewSite& site, EditedCells& cells)
    : list_(list), site_(site), cells_(cells) {
  SetWindowSubclass(list.get(), list_procedure, 0, reinterpret_cast<DWORD_PTR>(this));
}

CellEditor::~CellEditor() {
  is_giving_ = true;  // nobody is there to take what was typed
  field_.reset();
  RemoveWindowSubclass(list_.get(), list_procedure, 0);
}

void CellEditor::open(Cell cell) {
  finish();
  if (is_open()) return;
  list_.focus_row(cell.row);
  list_.scroll_across_to(cell);
  cell_ = cell;
  field_ = make_child(list_.get(), WC_EDITW, {.style = ES_AUTOHSCROLL | WS_BORDER},
                      list_.cell_text(cell));
  before_ = text_of(field_.get());
  SetWindowSubclass(field_.get(), field_procedure, 0, reinterpret_cast<DWORD_PTR>(this));
  SendMessageW(field_.get(), EM_SETLIMITTEXT, 0, 0);
  SendMessageW(field_.get(), WM_SETFONT, reinterpret_cast<WPARAM>(site_.font()), FALSE);
  Rect rect = list_.cell_rect(cell);
  rect.width = std::min(rect.width, list_.inside_width() - rect.left);
  place(field_.get(), rect);
  SendMessageW(field_.get(), EM_SETSEL, 0, -1);
  SetFocus(field_.get());
}

void CellEditor::cancel() {
  if (is_open() && !is_giving_) close(CellLeft::Escape);
}

void CellEditor::finish(CellLeft how) {
  if (is_open() && !is_giving_) site_.owner().deliver([this, how] { give(how); });
}

// A text that is refused stays in the field to be mended, unless the user is elsewhere already.
// What was not changed is not given: a field of one line may not have shown all of it.
void CellEditor::give(CellLeft how) {
  std::optional<std::wstring> refusal;
  {
    const FlagGuard giving(is_giving_);
    const std::wstring typed = text_of(field_.get());
    if (typed != before_) refusal = cells_.take(cell_, typed);
    if (refusal && how != CellLeft::Elsewhere) site_.owner().complain(*refusal);
  }
  if (!refusal) return close(how);
  if (how != CellLeft::Elsewhere) {
    SetFocus(field_.get());
  } else {
    complain_later(std::move(*refusal));
    close(how);
  }
}

// A box that comes up while the focus is on its way would take the user's click from where it went.
void CellEditor::complain_later(std::wstring sentence) {
  complaint_ = std::move(sentence);
  PostMessageW(list_.get(), complain_message, 0, 0);
}

void CellEditor::complain() {
  const std::wstring sentence = std::exchange(complaint_, {});
  if (!sentence.empty()) site_.owner().complain(sentence);
}

void CellEditor::close(CellLeft how) {
  const OwnedWindow closing = std::move(field_);
  if (GetFocus() == closing.get()) SetFocus(list_.get());
  ShowWindow(closing.get(), SW_HIDE);
  cells_.left(cell_, how);
}

LRESULT CellEditor::on_field_message(UINT message, WPARAM wparam, LPARAM lparam) {
  const HWND field = field_.get();
  switch (message) {
    case WM_GETDLGCODE:
      return DLGC_WANTALLKEYS;
    case WM_KEYDOWN:
      if (wparam == VK_RETURN) return finish(CellLeft::Enter), 0;
      if (wparam == VK_ESCAPE) return cancel(), 0;
      if (wparam == VK_TAB) {
        finish(GetKeyState(VK_SHIFT) < 0 ? CellLeft::ShiftTab : CellLeft::Tab);
        return 0;
      }
      break;
    case WM_CHAR:
      // The keys above would make the field beep.
      if (wparam == L'\r' || wparam == L'\x1B' || wparam == L'\t') return 0;
      break;
    case WM_KILLFOCUS: {
      const LRESULT answer = DefSubclassProc(field, message, wparam, lparam);
      finish();
      return answer;
    }
    default:
      break;
  }
  return DefSubclassProc(field, message, wparam, lparam);
}

LRESULT CALLBACK CellEditor::field_procedure(HWND window, UINT message, WPARAM wparam,
                                             LPARAM lparam, UINT_PTR /*id*/, DWORD_PTR editor) {
  auto& self = *reinterpret_cast<CellEditor*>(editor);
  // A field that is closing has given its text.
  if (self.field_.get() != window) return DefSubclassProc(window, message, wparam, lparam);
  return self.on_field_message(message, wparam, lparam);
}

// Moving the lines or the columns under the field ends it; what the field says is nothing to the
// list, which would take it for a field of its own.
LRESULT CALLBACK CellEditor::list_procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam,
                                            UINT_PTR /*id*/, DWORD_PTR editor) {
  auto& self = *reinterpret_cast<CellEditor*>(editor);
  switch (message) {
    case WM_VSCROLL:
    case WM_HSCROLL:
    case WM_MOUSEWHEEL:
    case WM_MOUSEHWHEEL:
    case WM_SIZE:
      self.finish();
      break;
    case WM_NOTIFY: {
      const UINT code = reinterpret_cast<const NMHDR*>(lparam)->code;
      if (code == HDN_BEGINTRACKW || code == HDN_BEGINTRACKA) self.finish();
      break;
    }
    case WM_COMMAND:
      return 0;
    case complain_message:
      return self.complain(), 0;
    default:
      break;
  }
  return DefSubclassProc(window, message, wparam, lparam);
}

}  // namespace korvel::windows
