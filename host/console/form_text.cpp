// What a form looks like.
#include <algorithm>

#include "frame/text_file.h"
#include "host/console/form.h"
#include "host/console/form_parts.h"
#include "host/console/typed_text.h"

namespace korvel {
namespace {

constexpr std::size_t line_width = 79;
constexpr std::wstring_view indent = L"  ";
constexpr std::wstring_view deep_indent = L"      ";

// A text of object data may hold line breaks and tabs, a line of the form may not.
std::wstring on_one_line(std::wstring text) {
  std::ranges::replace_if(
      text, [](wchar_t unit) { return unit == L'\n' || unit == L'\r' || unit == L'\t'; }, L' ');
  return text;
}

std::wstring shown_item(std::wstring_view text) { return on_one_line(quoted_if_needed(text)); }

// The parts behind the beginning, on as many lines as they need.
std::wstring flowing(std::wstring line, const std::vector<std::wstring>& parts) {
  std::wstring text;
  for (const std::wstring& part : parts) {
    if (line.size() + 2 + part.size() > line_width && line.size() > deep_indent.size()) {
      text += line + L'\n';
      line = std::wstring(deep_indent) + part;
    } else {
      line += (line.ends_with(L' ') ? L"" : L"  ") + part;
    }
  }
  return text + line + L'\n';
}

std::wstring beginning(const Control& control) {
  return std::wstring(indent) + std::wstring(label_name(control)) +
         (control.enabled ? L" = " : L" (disabled) = ");
}

std::wstring shown(const CheckList& list) {
  std::vector<std::wstring> parts;
  for (const CheckList::Item& item : list.items) {
    parts.push_back((item.checked ? L"[x] " : L"[ ] ") + shown_item(item.text));
  }
  return flowing(beginning(list), parts);
}

std::wstring shown(const ListBox& list) {
  std::vector<std::wstring> parts;
  for (std::size_t i = 0; i < list.items.size(); ++i) {
    parts.push_back((list.selected == i ? L"(*) " : L"( ) ") + shown_item(list.items[i]));
  }
  return flowing(beginning(list), parts);
}

std::wstring shown(const CheckBox& box) { return beginning(box) + (box.on ? L"on\n" : L"off\n"); }

std::wstring shown(const Edit& edit) { return beginning(edit) + on_one_line(edit.text) + L'\n'; }

std::wstring shown(const FileChooser& chooser) {
  return beginning(chooser) + path_text(chooser.path) + L'\n';
}

std::wstring shown(const ReadOnlyText& control) {
  std::wstring text = std::wstring(indent) + std::wstring(label_name(control)) + L':';
  const bool one_line = control.text.find(L'\n') == std::wstring::npos;
  if (one_line) return text + L' ' + on_one_line(control.text) + L'\n';
  std::wstring_view rest = control.text;
  while (!rest.empty()) {
    const std::wstring_view line = rest.substr(0, rest.find(L'\n'));
    text += L'\n' + std::wstring(deep_indent) + on_one_line(std::wstring(line));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
  }
  return text + L'\n';
}

std::wstring cells_line(const std::vector<std::wstring>& cells) {
  std::wstring line;
  for (const std::wstring& cell : cells) {
    if (!line.empty()) line += L" | ";
    line += shown_item(cell);
  }
  return line;
}

std::wstring shown(const Grid& grid) {
  std::vector<std::wstring> headings;
  for (const Grid::Column& column : grid.columns)
    headings.push_back(column.heading);
  std::wstring text = std::wstring(indent) + std::wstring(label_name(grid)) +
                      (grid.enabled ? L": " : L" (disabled): ") + cells_line(headings) + L'\n';
  for (std::size_t row = 0; row < grid.rows.size(); ++row) {
    text += std::wstring(deep_indent) + std::to_wstring(row + 1) + L": " +
            cells_line(grid.rows[row]) + L'\n';
  }
  return text;
}

std::wstring shown(const Tree& tree) {
  std::wstring text;
  std::size_t number = 0;
  const auto add_leaf = [&](std::wstring_view margin, const std::wstring& label) {
    const std::wstring digits = std::to_wstring(++number);
    text.append(margin).append(digits.size() < 2 ? 1 : 0, L' ');
    text += digits + L"  " + on_one_line(label) + L'\n';
  };
  for (const Tree::Item& item : tree.items) {
    if (item.leaves.empty()) {
      add_leaf(indent, item.label);
      continue;
    }
    text += std::wstring(indent) + on_one_line(item.label) + L'\n';
    for (const std::wstring& leaf : item.leaves)
      add_leaf(L"    ", leaf);
  }
  return text;
}

std::wstring shown(const LongGrid& grid) {
  std::vector<std::wstring> headings;
  for (const GridLines::Column& column : grid.lines->columns())
    headings.push_back(column.heading);
  std::wstring text = std::wstring(indent) + std::wstring(label_name(grid)) +
                      (grid.enabled ? L": " : L" (disabled): ") + cells_line(headings) + L'\n';
  const std::size_t count = grid.lines->line_count();
  const std::size_t end = std::min(grid.top + grid_page, count);
  for (std::size_t index = grid.top; index < end; ++index) {
    const GridLines::Line line = grid.lines->line(index);
    text += std::wstring(line.chosen ? L"    * " : deep_indent) + std::to_wstring(index + 1) +
            (line.is_group ? L"  " : L": ") + cells_line(line.cells) + L'\n';
  }
  if (count <= grid_page) return text;
  return text + std::wstring(deep_indent) + L"Lines " + std::to_wstring(grid.top + 1) + L" to " +
         std::to_wstring(end) + L" of " + std::to_wstring(count) + L": NEXT, BACK, LINE n\n";
}

// The buttons of each menu on a line of their own, those of none last.
std::wstring shown_buttons(const std::vector<Button>& buttons) {
  std::vector<std::wstring> menus;
  for (const Button& button : buttons) {
    if (std::ranges::find(menus, button.menu) == menus.end()) menus.push_back(button.menu);
  }
  std::stable_partition(menus.begin(), menus.end(),
                        [](const std::wstring& menu) { return !menu.empty(); });
  std::wstring text;
  for (const std::wstring& menu : menus) {
    std::vector<std::wstring> labels;
    for (const Button& button : buttons) {
      if (button.menu == menu) labels.push_back(L'[' + button.label + L']');
    }
    text += flowing(std::wstring(indent) + (menu.empty() ? L"" : menu + L": "), labels);
  }
  return text;
}

}  // namespace

std::wstring_view label_name(const Control& control) {
  std::wstring_view name = trimmed(control.label);
  if (name.ends_with(L':')) name.remove_suffix(1);
  return name;
}

std::wstring control_text(const ControlPointer& pointer) {
  return std::visit([](const auto* control) { return shown(*control); }, pointer);
}

std::wstring form_text(const Dialog& dialog) {
  std::wstring text = dialog.title() + L'\n';
  for (const ControlPointer& control : dialog.controls())
    text += control_text(control);
  return text + shown_buttons(dialog.buttons());
}

}  // namespace korvel
