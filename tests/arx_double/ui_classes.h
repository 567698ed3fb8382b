// A double of the CAD host's user interface, see db_classes.h: windows, modal boxes, file choosers,
// palette sets, and the module's resources. Windows are not drawn; what a person would do in them
// is asked of the stand-alone host.
//
// What the real ones are known to do, these do: a module's dialog is found only while the module's
// resources are the current ones; a palette set that was shown again is the same one.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/arx_double/db_classes.h"
#include "tests/arx_double/windows_types.h"

namespace korvel {
class Palette;
}

HINSTANCE AfxGetResourceHandle();
void AfxSetResourceHandle(HINSTANCE instance);

class CAcExtensionModule {
 public:
  void AttachInstance(HINSTANCE instance);
  void DetachInstance();
};
#define AC_IMPLEMENT_EXTENSION_MODULE(name) static CAcExtensionModule name;
extern HINSTANCE _hdllInstance;
void InitAcUiDLL();

class CString {
 public:
  explicit CString(std::wstring text) : text_(std::move(text)) {}
  operator const ACHAR*() const { return text_.c_str(); }  // NOLINT: as the real one

 private:
  std::wstring text_;
};

class CRect {
 public:
  CRect(int /*left*/, int /*top*/, int /*right*/, int /*bottom*/) {}
};

// A window exists from its creation to DestroyWindow, or the end of its object.
class CWnd {
 public:
  CWnd() = default;
  CWnd(const CWnd&) = delete;
  CWnd& operator=(const CWnd&) = delete;
  virtual ~CWnd() = default;

  BOOL DestroyWindow();
  void SetWindowText(const ACHAR* text) { title_ = text; }
  [[nodiscard]] BOOL IsWindowVisible() const { return visible_ ? TRUE : FALSE; }
  int MessageBox(const ACHAR* text, const ACHAR* caption, UINT type);
  BOOL PostMessage(UINT message, WPARAM wparam, LPARAM lparam);

  // The user turns to this window.
  void turn_to() { get(WM_COMMAND); }
  void get(UINT message) { WindowProc(message, 0, 0); }

  HWND m_hWnd = nullptr;

 protected:
  virtual BOOL PreTranslateMessage(MSG* /*message*/) { return FALSE; }
  virtual LRESULT WindowProc(UINT /*message*/, WPARAM /*wparam*/, LPARAM /*lparam*/) { return 0; }

  void make_window();

  std::wstring title_;
  bool visible_ = false;
};

class CControlBar : public CWnd {};

class CMDIFrameWnd : public CWnd {
 public:
  void ShowControlBar(CControlBar* bar, BOOL show, BOOL delay);
};
CMDIFrameWnd* acedGetAcadFrame();

class CAcUiDialog : public CWnd {
 public:
  CAcUiDialog(UINT id, CWnd* parent) : id_(id), parent_(parent) {}
  std::intptr_t DoModal();
  void EndDialog(int result);

 protected:
  void SetDialogName(const ACHAR* name) { name_ = name; }
  virtual BOOL OnInitDialog() { return TRUE; }
  virtual void OnOK() {}
  virtual void OnCancel() {}

 private:
  UINT id_;
  CWnd* parent_;
  std::wstring name_;
  int result_ = 0;
  bool ended_ = false;
};

class CAcUiFileDialog {
 public:
  CAcUiFileDialog(BOOL opens, const ACHAR* default_extension, const ACHAR* file, DWORD flags,
                  const ACHAR* filter, CWnd* parent);
  std::intptr_t DoModal();
  [[nodiscard]] CString GetPathName() const { return CString(path_); }

 private:
  BOOL opens_;
  std::wstring extension_;
  DWORD flags_;
  std::wstring filter_;
  std::wstring path_;
};

inline constexpr UINT WM_ACAD_KEEPFOCUS = 0x6D01;
inline constexpr DWORD CBRS_ALIGN_ANY = 0xF000;
inline constexpr UINT AFX_IDW_DOCKBAR_LEFT = 0xE81C;

class CAdUiPalette;

class CAdUiPaletteSet : public CControlBar {
 public:
  BOOL Create(const ACHAR* title, DWORD style, const CRect& place, CWnd* parent, DWORD set_style);
  void SetToolID(GUID* tool) { tool_ = *tool; }
  int AddPalette(CAdUiPalette* palette);
  void EnableDocking(DWORD sides) { sides_ = sides; }
  BOOL RestoreControlBar(UINT dock_bar);

  [[nodiscard]] const std::vector<CAdUiPalette*>& palettes() const { return palettes_; }
  void show() { visible_ = true; }

 private:
  GUID tool_{};
  DWORD sides_ = 0;
  std::vector<CAdUiPalette*> palettes_;
};

class CAdUiPalette : public CWnd {
 public:
  BOOL Create(DWORD style, const ACHAR* title, CAdUiPaletteSet* set, DWORD palette_style);
};

BOOL AdUiRegisterTool(const ACHAR* command, const ACHAR* group, GUID* tool);

namespace korvel::arx_double {

// In this session, in order: the tools registered, and the titles of the windows closed.
[[nodiscard]] const std::vector<std::wstring>& registered_tools();
[[nodiscard]] const std::vector<std::wstring>& closed_windows();

// Lets the windows have the messages that were posted to them.
void deliver_posted_messages();

// What the user does in a palette when it is shown. While there is nobody, nothing is done.
void set_palette_user(std::function<void(Palette&)> user);

}  // namespace korvel::arx_double
