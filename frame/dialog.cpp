#include "frame/dialog.h"

#include <algorithm>

namespace korvel {

std::vector<std::wstring> CheckList::checked() const {
  std::vector<std::wstring> texts;
  for (const Item& item : items) {
    if (item.checked) texts.push_back(item.text);
  }
  return texts;
}

void CheckList::check_all(bool on) {
  for (Item& item : items)
    item.checked = on;
}

void CheckList::toggle_all() { check_all(!std::ranges::all_of(items, &Item::checked)); }

void CheckList::fill(const std::vector<std::wstring>& texts) {
  items.clear();
  for (const std::wstring& text : texts)
    items.push_back({text, false});
}

std::wstring ListBox::text() const { return selected ? items[*selected] : std::wstring{}; }

void ListBox::select(std::wstring_view text) {
  const auto found = std::ranges::find(items, text);
  selected.reset();
  if (found != items.end()) selected = static_cast<std::size_t>(found - items.begin());
}

std::wstring Tree::text() const {
  if (!selected) return {};
  const Item& item = items[selected->item];
  return selected->leaf ? item.leaves[*selected->leaf] : item.label;
}

bool Dialog::press(std::size_t button) {
  const Button& chosen = buttons_.at(button);
  if (chosen.role == ButtonRole::Act) {
    act(chosen);
    return false;
  }
  pressed_ = chosen.label;
  return true;
}

void Dialog::cancel() {
  const auto button = std::ranges::find(buttons_, ButtonRole::Cancel, &Button::role);
  if (button != buttons_.end()) press(static_cast<std::size_t>(button - buttons_.begin()));
}

Control& control_of(const ControlPointer& pointer) {
  return std::visit([](auto* control) -> Control& { return *control; }, pointer);
}

}  // namespace korvel
