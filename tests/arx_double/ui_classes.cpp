#include "tests/arx_double/ui_classes.h"

#include <utility>

#include "tests/arx_double/ed_classes.h"

namespace {

HINSTANCE current_resources = nullptr;
HINSTANCE module_resources = nullptr;
std::vector<std::wstring> tools;
std::vector<std::wstring> closed;
std::intptr_t last_window = 0;

struct Posted {
  CWnd* window;
  UINT message;
};
std::vector<Posted> posted;

korvel::StandaloneHost& host() { return korvel::arx_double::working_drawing(); }

korvel::BoxIcon icon_of(UINT type) {
  if ((type & 0xF0U) == MB_ICONQUESTION) return korvel::BoxIcon::Question;
  return (type & 0xF0U) == MB_ICONINFORMATION ? korvel::BoxIcon::Information
                                              : korvel::BoxIcon::Exclamation;
}

}  // namespace

HINSTANCE AfxGetResourceHandle() { return current_resources; }

void AfxSetResourceHandle(HINSTANCE instance) { current_resources = instance; }

void CAcExtensionModule::AttachInstance(HINSTANCE instance) { module_resources = instance; }

void InitAcUiDLL() {}

void CAcExtensionModule::DetachInstance() { module_resources = nullptr; }

void CWnd::make_window() { m_hWnd = reinterpret_cast<HWND>(++last_window); }

BOOL CWnd::DestroyWindow() {
  if (m_hWnd == nullptr) return FALSE;
  WindowProc(WM_DESTROY, 0, 0);
  std::erase_if(posted, [this](const Posted& message) { return message.window == this; });
  closed.push_back(title_);
  m_hWnd = nullptr;
  visible_ = false;
  return TRUE;
}

BOOL CWnd::PostMessage(UINT message, WPARAM /*wparam*/, LPARAM /*lparam*/) {
  posted.push_back({this, message});
  return TRUE;
}

int CWnd::MessageBox(const ACHAR* text, const ACHAR* caption, UINT type) {
  if ((type & 0x0FU) == MB_YESNO) {
    return host().ask_yes_no(caption, text, icon_of(type)) ? IDYES : IDNO;
  }
  host().print(std::wstring(text) + L'\n');
  return IDOK;
}

void CMDIFrameWnd::ShowControlBar(CControlBar* bar, BOOL show, BOOL /*delay*/) {
  auto* const set = dynamic_cast<CAdUiPaletteSet*>(bar);
  if (set == nullptr || show == FALSE) return;
  set->show();
  for (CAdUiPalette* const palette : set->palettes())
    palette->turn_to();
}

CMDIFrameWnd* acedGetAcadFrame() {
  static CMDIFrameWnd frame;
  return &frame;
}

// -1: the dialog's template is not among the current resources.
std::intptr_t CAcUiDialog::DoModal() {
  if (module_resources == nullptr || current_resources != module_resources) return -1;
  make_window();
  OnInitDialog();
  while (!ended_)
    turn_to();
  DestroyWindow();
  return result_;
}

void CAcUiDialog::EndDialog(int result) {
  ended_ = true;
  result_ = result;
}

CAcUiFileDialog::CAcUiFileDialog(BOOL opens, const ACHAR* default_extension, const ACHAR* /*file*/,
                                 DWORD flags, const ACHAR* filter, CWnd* /*parent*/)
    : opens_(opens),
      extension_(default_extension == nullptr ? L"" : default_extension),
      flags_(flags),
      filter_(filter) {}

std::intptr_t CAcUiFileDialog::DoModal() {
  const bool asks = (flags_ & OFN_OVERWRITEPROMPT) != 0;
  const korvel::FileQuestion question{filter_, extension_, asks};
  const auto path =
      opens_ != FALSE ? host().choose_file_to_open(question) : host().choose_file_to_save(question);
  if (!path) return IDCANCEL;
  path_ = path->wstring();
  return IDOK;
}

BOOL CAdUiPaletteSet::Create(const ACHAR* title, DWORD /*style*/, const CRect& /*place*/,
                             CWnd* /*parent*/, DWORD /*set_style*/) {
  title_ = title;
  make_window();
  return TRUE;
}

int CAdUiPaletteSet::AddPalette(CAdUiPalette* palette) {
  palettes_.push_back(palette);
  return static_cast<int>(palettes_.size()) - 1;
}

BOOL CAdUiPaletteSet::RestoreControlBar(UINT /*dock_bar*/) { return TRUE; }

BOOL CAdUiPalette::Create(DWORD /*style*/, const ACHAR* title, CAdUiPaletteSet* set,
                          DWORD /*palette_style*/) {
  if (set->m_hWnd == nullptr) return FALSE;
  title_ = title;
  make_window();
  WindowProc(WM_CREATE, 0, 0);
  return TRUE;
}

BOOL AdUiRegisterTool(const ACHAR* command, const ACHAR* /*group*/, GUID* /*tool*/) {
  tools.emplace_back(command);
  return TRUE;
}

#ifndef _WIN32
HRESULT CLSIDFromString(const wchar_t* text, GUID* /*id*/) {
  const std::wstring_view id(text);
  return id.size() == 38 && id.starts_with(L'{') && id.ends_with(L'}') ? S_OK : -1;
}
#endif

namespace korvel::arx_double {

void deliver_posted_messages() {
  const RunningIn between_commands(RunningIn::Application);
  for (const Posted& message : std::exchange(posted, {}))
    message.window->get(message.message);
}

const std::vector<std::wstring>& registered_tools() { return tools; }

const std::vector<std::wstring>& closed_windows() { return closed; }

}  // namespace korvel::arx_double
