// What the CAD host's classes take from Windows: the real thing there, elsewhere as much of it as
// the binding uses.
#pragma once

#ifdef _WIN32
// The first is the ground of the others.
// clang-format off
#include <windows.h>
#include <commdlg.h>
#include <objbase.h>
// clang-format on
#else
#include <cstdint>

using BOOL = int;
using UINT = unsigned int;
using DWORD = std::uint32_t;
using LPVOID = void*;
using HWND = void*;
using HINSTANCE = void*;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using HRESULT = std::int32_t;

struct MSG {
  HWND hwnd;
  UINT message;
  WPARAM wParam;
  LPARAM lParam;
};

struct GUID {
  std::uint32_t Data1;
  std::uint16_t Data2;
  std::uint16_t Data3;
  std::uint8_t Data4[8];
};

#define WINAPI
inline constexpr BOOL TRUE = 1;
inline constexpr BOOL FALSE = 0;
inline constexpr HRESULT S_OK = 0;
inline constexpr DWORD DLL_PROCESS_ATTACH = 1;
inline constexpr DWORD DLL_PROCESS_DETACH = 0;

inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;
inline constexpr int IDYES = 6;
inline constexpr int IDNO = 7;
inline constexpr UINT MB_OK = 0x00;
inline constexpr UINT MB_YESNO = 0x04;
inline constexpr UINT MB_ICONQUESTION = 0x20;
inline constexpr UINT MB_ICONEXCLAMATION = 0x30;
inline constexpr UINT MB_ICONINFORMATION = 0x40;

inline constexpr UINT WM_CREATE = 0x0001;
inline constexpr UINT WM_DESTROY = 0x0002;
inline constexpr UINT WM_SIZE = 0x0005;
inline constexpr UINT WM_NOTIFY = 0x004E;
inline constexpr UINT WM_KEYFIRST = 0x0100;
inline constexpr UINT WM_KEYLAST = 0x0109;
inline constexpr UINT WM_COMMAND = 0x0111;
inline constexpr UINT WM_APP = 0x8000;
inline constexpr DWORD WS_CHILD = 0x40000000;
inline constexpr DWORD WS_VISIBLE = 0x10000000;
inline constexpr DWORD WS_DLGFRAME = 0x00400000;
inline constexpr DWORD WS_OVERLAPPED = 0;

inline constexpr DWORD OFN_OVERWRITEPROMPT = 0x0002;
inline constexpr DWORD OFN_HIDEREADONLY = 0x0004;
inline constexpr DWORD OFN_FILEMUSTEXIST = 0x1000;

HRESULT CLSIDFromString(const wchar_t* text, GUID* id);
#endif
