// What a line does to a form.
#include "host/console/form.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <span>
#include <vector>

#include "host/console/form_change.h"
#include "host/console/form_grid.h"
#include "host/console/form_line.h"
#include "host/console/form_parts.h"
#include "host/console/typed_text.h"

namespace korvel {
namespace {

using Names = std::vector<std::wstring_view>;

// --- Finding what is meant --------------------------------------------------------------------

Names control_names(const Dialog& dialog) {
  Names names;
  for (const ControlPointer& control : dialog.controls()) {
    names.push_back(label_name(control_of(control)));
  }
  return names;
}

Names button_names(const Dialog& dialog) {
  Names names;
  for (const Button& button : dialog.buttons())
    names.emplace_back(button.label);
  return names;
}

struct CellColumn {
  std::size_t control = 0;
  std::size_t column = 0;
  std::wstring grid;  // its label
  std::wstring heading;
  bool editable = false;
};
using CellColumns = std::vector<CellColumn>;

CellColumns cell_columns(const Dialog& dialog) {
  CellColumns columns;
  const auto add_all = [&](std::size_t control, const auto& headings) {
    const std::wstring grid(label_name(control_of(dialog.controls()[control])));
    for (std::size_t column = 0; column < headings.size(); ++column) {
      columns.push_back(
          {control, column, grid, headings[column].heading, headings[column].editable});
    }
  };
  for (std::size_t control = 0; control < dialog.controls().size(); ++control) {
    const ControlPointer& pointer = dialog.controls()[control];
    if (const auto* grid = std::get_if<Grid*>(&pointer)) add_all(control, (*grid)->columns);
    if (const auto* grid = std::get_if<LongGrid*>(&pointer)) {
      add_all(control, (*grid)->lines->columns());
    }
  }
  return columns;
}

// The columns that this text of theirs names, which may be shortened; of one that the form repeats
// and one that a person may change, the latter.
CellColumns named(const CellColumns& columns, std::wstring CellColumn::*text,
                  std::wstring_view typed) {
  Names texts;
  for (const CellColumn& column : columns) {
    const std::wstring& one = column.*text;
    if (std::ranges::find(texts, one) == texts.end()) texts.emplace_back(one);
  }
  const NameMatch match = match_name(texts, typed);
  CellColumns found;
  std::ranges::copy_if(columns, std::back_inserter(found), [&](const CellColumn& column) {
    return match.ambiguous ? begins_with(column.*text, typed)
                           : match.index && column.*text == texts[*match.index];
  });
  const bool can_change = std::ranges::any_of(found, &CellColumn::editable);
  if (can_change) std::erase_if(found, [](const CellColumn& column) { return !column.editable; });
  return found;
}

// The columns of this heading, in front of which a grid's label and a full stop may stand.
CellColumns columns_meant(const CellColumns& columns, std::wstring_view typed) {
  const CellColumns plain = named(columns, &CellColumn::heading, typed);
  const bool whole = !plain.empty() && plain.front().heading.size() == typed.size();
  for (std::size_t stop = typed.find(L'.'); !whole && stop != std::wstring_view::npos;
       stop = typed.find(L'.', stop + 1)) {
    const CellColumns of_grid = named(columns, &CellColumn::grid, typed.substr(0, stop));
    CellColumns found = named(of_grid, &CellColumn::heading, typed.substr(stop + 1));
    if (!found.empty()) return found;
  }
  return plain;
}

// The heading, with its grid's label where that alone tells it from another.
std::wstring name_of(const CellColumn& column, const CellColumns& columns) {
  const bool is_shared = std::ranges::any_of(columns, [&column](const CellColumn& other) {
    return other.control != column.control && other.heading == column.heading;
  });
  return is_shared ? column.grid + L'.' + column.heading : column.heading;
}

std::wstring what_there_is(const Dialog& dialog) {
  Names names = control_names(dialog);
  const CellColumns columns = cell_columns(dialog);
  std::vector<std::wstring> cells;
  for (const CellColumn& column : columns) {
    if (column.editable) cells.push_back(name_of(column, columns));
  }
  names.insert(names.end(), cells.begin(), cells.end());
  return listed(names) + L"; buttons: " + listed(button_names(dialog)) + L".";
}

FormReply no_such_label(const Dialog& dialog, std::wstring_view typed, bool ambiguous) {
  return {FormReply::Kind::Refused, (ambiguous ? L"There is more than one " : L"There is no ") +
                                        in_quotes(typed) + L" here; there is: " +
                                        what_there_is(dialog)};
}

// A control's label alone is half a line.
FormReply no_such_button(const Dialog& dialog, std::wstring_view typed, bool ambiguous) {
  const Names controls = control_names(dialog);
  const NameMatch control = match_name(controls, typed);
  if (!control.index || control.ambiguous) return no_such_label(dialog, typed, ambiguous);
  const std::wstring label = listed(std::span(controls).subspan(*control.index, 1));
  return {FormReply::Kind::Refused, label + L" is no button; it is set by: " + label + L" = ..."};
}

// --- The whole line ---------------------------------------------------------------------------

std::vector<std::wstring> control_texts(const Dialog& dialog) {
  std::vector<std::wstring> texts;
  for (const ControlPointer& control : dialog.controls())
    texts.push_back(control_text(control));
  return texts;
}

// The controls other than `own` that do not look as they did before.
std::wstring changed_along(const Dialog& dialog, const std::vector<std::wstring>& before,
                           std::optional<std::size_t> own) {
  const std::vector<std::wstring> after = control_texts(dialog);
  std::wstring text;
  for (std::size_t i = 0; i < after.size(); ++i) {
    if (i != own && after[i] != before[i]) text += after[i];
  }
  return text;
}

FormReply press(Dialog& dialog, std::size_t button) {
  const std::vector<std::wstring> before = control_texts(dialog);
  const ButtonRole role = dialog.buttons()[button].role;
  if (!dialog.press(button)) {
    return {FormReply::Kind::Done, changed_along(dialog, before, std::nullopt)};
  }
  return {role == ButtonRole::Cancel ? FormReply::Kind::Cancelled : FormReply::Kind::Accepted, {}};
}

FormReply set_control(Dialog& dialog, std::size_t index, const auto& make_change) {
  const ControlPointer& pointer = dialog.controls()[index];
  const std::vector<std::wstring> before = control_texts(dialog);
  const FormChange outcome = make_change(pointer);
  if (!outcome.refusal.empty()) return {FormReply::Kind::Refused, outcome.refusal};
  if (!outcome.changed) return {};
  dialog.changed(control_of(pointer));
  return {FormReply::Kind::Done, changed_along(dialog, before, index)};
}

FormReply set_cell(Dialog& dialog, const FormAssignment& assignment) {
  const std::wstring heading = field_text(assignment.label);
  const CellColumns meant = columns_meant(cell_columns(dialog), heading);
  if (meant.size() != 1) return no_such_label(dialog, heading, !meant.empty());
  const CellColumn& cell = meant.front();
  return set_control(dialog, cell.control, [&](const ControlPointer& pointer) {
    if (auto* const* grid = std::get_if<LongGrid*>(&pointer)) {
      return change_cell(**grid, cell.column, assignment);
    }
    return change_cell(*std::get<Grid*>(pointer), cell.column, assignment);
  });
}

}  // namespace

FormReply apply_line(Dialog& dialog, std::wstring_view typed) {
  const std::wstring_view line = trimmed(typed);
  if (line.empty()) return {};
  if (line == L"?") return {FormReply::Kind::Done, form_text(dialog)};

  if (std::optional<FormReply> reply = pick_in_tree(dialog, line)) return *reply;
  if (std::optional<FormReply> reply = move_in_grid(dialog, line)) return *reply;

  const Names buttons = button_names(dialog);
  const NameMatch button = match_name(buttons, line);
  const std::optional<FormAssignment> assignment = read_assignment(line);
  const bool whole_label = button.index && buttons[*button.index].size() == line.size();
  if (!assignment || whole_label) {
    if (button.index && !button.ambiguous) return press(dialog, *button.index);
    return no_such_button(dialog, line, button.ambiguous);
  }

  const std::wstring label = field_text(assignment->left);
  const NameMatch control = match_name(control_names(dialog), label);
  if (control.index && !control.ambiguous) {
    return set_control(dialog, *control.index, [&](const ControlPointer& pointer) {
      return change_control(pointer, *assignment);
    });
  }
  if (assignment->row) return set_cell(dialog, *assignment);
  return no_such_label(dialog, label, control.ambiguous);
}

}  // namespace korvel
