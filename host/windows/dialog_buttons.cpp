#include "host/windows/dialog_buttons.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <type_traits>
#include <utility>

#include "host/windows/common_controls.h"

namespace korvel::windows {
namespace {

struct MenuDestroyer {
  void operator()(HMENU menu) const { DestroyMenu(menu); }
};
using OwnedMenu = std::unique_ptr<std::remove_pointer_t<HMENU>, MenuDestroyer>;

constexpr DWORD button_style = WS_TABSTOP | BS_PUSHBUTTON;

}  // namespace

DialogButtons::DialogButtons(HWND window, const Dialog& dialog) : window_(window), dialog_(dialog) {
  std::vector<Entry> others;
  const std::optional<std::size_t> preset = first_of(ButtonRole::Accept);
  for (std::size_t i = 0; i < dialog.buttons().size(); ++i) {
    const Button& button = dialog.buttons()[i];
    if (button.menu.empty()) {
      const DWORD style = preset == i ? button_style | BS_DEFPUSHBUTTON : button_style;
      others.push_back({button.label, false, i,
                        make_child(window, WC_BUTTONW, {.style = style},
                                   with_ampersands_doubled(button.label))});
    } else if (std::ranges::find(entries_, button.menu, &Entry::label) == entries_.end()) {
      const std::wstring label = with_ampersands_doubled(button.menu) + L" \u25BE";
      entries_.push_back(
          {button.menu, true, i, make_child(window, WC_BUTTONW, {.style = button_style}, label)});
    }
  }
  std::ranges::move(others, std::back_inserter(entries_));
}

std::vector<HWND> DialogButtons::windows() const {
  std::vector<HWND> windows;
  for (const Entry& entry : entries_)
    windows.push_back(entry.window.get());
  return windows;
}

std::vector<LayoutButton> DialogButtons::layout(HFONT font, const FontUnits& units) const {
  std::vector<LayoutButton> buttons;
  for (const Entry& entry : entries_) {
    const int text = text_width(entry.window.get(), font, text_of(entry.window.get()));
    const bool closes = dialog_.buttons()[entry.button].role != ButtonRole::Act;
    const int least = units.across(entry.is_menu ? 36 : 50);
    buttons.push_back({.width = std::max(text + units.across(12), least),
                       .place = entry.is_menu ? ButtonPlace::Top
                                : closes      ? ButtonPlace::Corner
                                              : ButtonPlace::Bottom});
  }
  return buttons;
}

void DialogButtons::place(const std::vector<Rect>& rects) const {
  for (std::size_t i = 0; i < entries_.size(); ++i)
    korvel::windows::place(entries_[i].window.get(), rects[i]);
}

std::optional<std::size_t> DialogButtons::pressed(WPARAM wparam, LPARAM lparam) const {
  if (lparam == 0) {
    const std::size_t item = LOWORD(wparam) - std::size_t{first_menu_item};
    const bool is_ours = item < dialog_.buttons().size() && !dialog_.buttons()[item].menu.empty();
    return is_ours ? std::optional(item) : std::nullopt;
  }
  const Entry* const entry = entry_of(reinterpret_cast<HWND>(lparam));
  if (entry == nullptr || HIWORD(wparam) != BN_CLICKED) return std::nullopt;
  if (!entry->is_menu) return entry->button;
  unfold(*entry);
  return std::nullopt;
}

// The item that is picked comes as a WM_COMMAND of its own.
void DialogButtons::unfold(const Entry& menu) const {
  const OwnedMenu items(CreatePopupMenu());
  for (std::size_t i = 0; i < dialog_.buttons().size(); ++i) {
    const Button& button = dialog_.buttons()[i];
    if (button.menu != menu.label) continue;
    AppendMenuW(items.get(), MF_STRING, first_menu_item + i,
                with_ampersands_doubled(button.label).c_str());
  }
  RECT rect{};
  GetWindowRect(menu.window.get(), &rect);
  TPMPARAMS beside{sizeof beside, rect};
  TrackPopupMenuEx(items.get(), TPM_LEFTALIGN | TPM_TOPALIGN | TPM_VERTICAL, rect.left, rect.bottom,
                   window_, &beside);
}

std::optional<std::size_t> DialogButtons::first_of(ButtonRole role) const {
  const std::vector<Button>& buttons = dialog_.buttons();
  const auto found = std::ranges::find(buttons, role, &Button::role);
  if (found == buttons.end()) return std::nullopt;
  return static_cast<std::size_t>(found - buttons.begin());
}

const DialogButtons::Entry* DialogButtons::entry_of(HWND window) const {
  const auto found = std::ranges::find_if(
      entries_, [window](const Entry& entry) { return entry.window.get() == window; });
  return found == entries_.end() ? nullptr : &*found;
}

}  // namespace korvel::windows
