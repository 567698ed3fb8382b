// Windows as children that are destroyed with their owner here, and what all of them need.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "host/windows/common_controls.h"
#include "host/windows/dialog_layout.h"

namespace korvel::windows {

struct WindowDestroyer {
  void operator()(HWND window) const { DestroyWindow(window); }
};
using OwnedWindow = std::unique_ptr<std::remove_pointer_t<HWND>, WindowDestroyer>;

struct FontDeleter {
  void operator()(HFONT font) const { DeleteObject(font); }
};
using OwnedFont = std::unique_ptr<std::remove_pointer_t<HFONT>, FontDeleter>;

// What users see and tab to; WS_CHILD and WS_VISIBLE are added.
struct ChildStyle {
  DWORD style = 0;
  DWORD extended = 0;
};

[[nodiscard]] OwnedWindow make_child(HWND parent, const wchar_t* class_name, ChildStyle style,
                                     const std::wstring& text = {});

[[nodiscard]] std::wstring text_of(HWND window);
// Leaves a window alone that has this text: the caret of what is typed stays where it is.
void show_text(HWND window, const std::wstring& text);
void show_enabled(HWND window, bool enabled);
void place(HWND window, const Rect& rect);

// For windows that take an ampersand for the mark of the letter behind it.
[[nodiscard]] std::wstring with_ampersands_doubled(std::wstring_view text);

// Of the text in one line.
[[nodiscard]] int text_width(HWND window, HFONT font, std::wstring_view text);

// The font of messages, for the resolution of the window's monitor.
[[nodiscard]] OwnedFont message_font(HWND window, bool bold);

// A font's measures, of which all distances in a dialog are made.
struct FontUnits {
  int character_width = 0;  // of the average one
  int height = 0;

  // Of dialogs' units, a quarter of a character across and an eighth of its height down.
  [[nodiscard]] int across(int units) const { return (units * character_width + 2) / 4; }
  [[nodiscard]] int down(int units) const { return (units * height + 4) / 8; }
};
[[nodiscard]] FontUnits font_units(HWND window, HFONT font);

}  // namespace korvel::windows
