#include "host/console/form_change.h"

#include <charconv>
#include <optional>
#include <utility>
#include <vector>

#include "frame/case_mapping.h"
#include "frame/file_bytes.h"
#include "frame/utf.h"
#include "host/console/form_grid.h"
#include "host/console/form_parts.h"
#include "host/console/typed_text.h"

namespace korvel {
namespace {

using Names = std::vector<std::wstring_view>;

FormChange refused(std::wstring sentence) { return {false, std::move(sentence)}; }

std::wstring no_such(std::wstring_view what, std::wstring_view typed, bool ambiguous,
                     std::span<const std::wstring_view> names) {
  return std::wstring(what) + (ambiguous ? L" has more than one " : L" has no ") +
         in_quotes(typed) + L"; it has: " + listed(names) + L".";
}

FormChange change(CheckList& list, FormOperation operation, std::wstring_view value) {
  const auto items = items_of(value);
  if (!items) return refused(L"A quote is not closed, or text follows it.");
  Names names;
  for (const CheckList::Item& item : list.items)
    names.emplace_back(item.text);
  std::vector<bool> named(list.items.size(), false);
  for (const TypedItem& item : *items) {
    if (item.text == L"*" && !item.quoted) {
      named.assign(named.size(), true);
      continue;
    }
    const NameMatch match = match_name(names, item.text);
    if (!match.index || match.ambiguous) {
      return refused(no_such(label_name(list), item.text, match.ambiguous, names));
    }
    named[*match.index] = true;
  }
  FormChange outcome;
  for (std::size_t i = 0; i < named.size(); ++i) {
    bool& checked = list.items[i].checked;
    const bool wanted = operation == FormOperation::Set   ? named[i]
                        : operation == FormOperation::Add ? checked || named[i]
                                                          : checked && !named[i];
    outcome.changed |= checked != wanted;
    checked = wanted;
  }
  return outcome;
}

FormChange change(ListBox& list, std::wstring_view value) {
  const std::wstring item = field_text(value);
  const Names names(list.items.begin(), list.items.end());
  const NameMatch match = match_name(names, item);
  const bool nothing = value.empty() && !match.index;
  if (!nothing && (!match.index || match.ambiguous)) {
    return refused(no_such(label_name(list), item, match.ambiguous, names));
  }
  const bool changed = list.selected != match.index;
  list.selected = match.index;
  return {changed, {}};
}

FormChange change(CheckBox& box, std::wstring_view value) {
  const auto is = [value](std::wstring_view word) { return equal_ignoring_case(value, word); };
  const bool on = is(L"on") || is(L"yes") || value == L"1";
  const bool off = is(L"off") || is(L"no") || value == L"0";
  if (!on && !off) return refused(std::wstring(label_name(box)) + L" is on or off.");
  const bool changed = box.on != on;
  box.on = on;
  return {changed, {}};
}

FormChange change(Edit& edit, std::wstring_view value) {
  std::wstring text = field_text(value);
  const bool changed = edit.text != text;
  edit.text = std::move(text);
  return {changed, {}};
}

FormChange change(FileChooser& chooser, std::wstring_view value) {
  std::filesystem::path path = path_of(field_text(value));
  const bool changed = chooser.path != path;
  chooser.path = std::move(path);
  return {changed, {}};
}

FormChange change(ReadOnlyText& control, std::wstring_view /*value*/) {
  return refused(std::wstring(label_name(control)) + L" cannot be changed.");
}

struct RowMatch {
  std::optional<std::size_t> row;
  std::wstring refusal;
};

// A row by the text of its first cell, by its number, by how its first cell begins.
RowMatch find_row(const Grid& grid, std::wstring_view typed) {
  const std::optional<std::wstring> in_its_quotes = unquoted(typed);
  const std::wstring name = in_its_quotes.value_or(std::wstring(typed));
  Names labels;
  for (const auto& cells : grid.rows)
    labels.emplace_back(cells.front());
  const NameMatch match = match_name(labels, name);
  const bool whole = match.index && labels[*match.index].size() == name.size();
  if (!whole && !in_its_quotes) {
    std::size_t number = 0;
    const std::string digits = to_utf8(typed);
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    if (error == std::errc{} && stop == end && number >= 1 && number <= labels.size()) {
      return {number - 1, {}};
    }
  }
  if (match.index && !match.ambiguous) return {match.index, {}};
  return {std::nullopt, (match.ambiguous ? L"There is more than one row " : L"There is no row ") +
                            in_quotes(name) + L"; the rows are: " + listed(labels) + L"."};
}

FormChange change(Grid& grid, FormOperation operation, std::wstring_view value) {
  if (!grid.user_rows || operation == FormOperation::Set) {
    return refused(std::wstring(label_name(grid)) +
                   (grid.user_rows ? L" takes += and -=, a cell takes Column[row] = text."
                                   : L" is changed cell by cell: Column[row] = text."));
  }
  if (operation == FormOperation::Remove) {
    const RowMatch match = find_row(grid, value);
    if (!match.row) return refused(match.refusal);
    grid.rows.erase(grid.rows.begin() + static_cast<std::ptrdiff_t>(*match.row));
    return {true, {}};
  }
  const auto items = items_of(value);
  if (!items) return refused(L"A quote is not closed, or text follows it.");
  if (items->empty() || items->size() > grid.columns.size()) {
    return refused(L"A row has from 1 to " + std::to_wstring(grid.columns.size()) + L" cells.");
  }
  std::vector<std::wstring> cells(grid.columns.size());
  for (std::size_t i = 0; i < items->size(); ++i)
    cells[i] = (*items)[i].text;
  grid.rows.push_back(std::move(cells));
  return {true, {}};
}

}  // namespace

std::wstring listed(std::span<const std::wstring_view> names) {
  if (names.empty()) return L"none";
  std::wstring text;
  for (const std::wstring_view name : names) {
    if (!text.empty()) text += L", ";
    text += quoted_if_needed(name);
  }
  return text;
}

std::wstring in_quotes(std::wstring_view text) { return L'"' + std::wstring(text) + L'"'; }

FormChange change_control(const ControlPointer& pointer, const FormAssignment& assignment) {
  const Control& control = control_of(pointer);
  if (!control.enabled) {
    return refused(std::wstring(label_name(control)) + L" is disabled.");
  }
  if (auto* const* list = std::get_if<CheckList*>(&pointer)) {
    return change(**list, assignment.operation, assignment.value);
  }
  if (auto* const* grid = std::get_if<Grid*>(&pointer)) {
    return change(**grid, assignment.operation, assignment.value);
  }
  if (auto* const* grid = std::get_if<LongGrid*>(&pointer)) {
    return choose_lines(**grid, assignment);
  }
  if (assignment.operation != FormOperation::Set) {
    return refused(std::wstring(label_name(control)) + L" takes = alone.");
  }
  return std::visit(
      [&assignment](auto* one) -> FormChange {
        if constexpr (requires { change(*one, assignment.value); }) {
          return change(*one, assignment.value);
        } else {
          return {};  // handled above
        }
      },
      pointer);
}

FormChange change_cell(Grid& grid, std::size_t column, const FormAssignment& assignment) {
  const std::wstring& heading = grid.columns[column].heading;
  if (!grid.enabled) return refused(std::wstring(label_name(grid)) + L" is disabled.");
  if (!grid.columns[column].editable) return refused(heading + L" cannot be changed.");
  if (assignment.operation != FormOperation::Set) return refused(L"A cell takes = alone.");
  const RowMatch match = find_row(grid, *assignment.row);
  if (!match.row) return refused(match.refusal);
  std::wstring text = field_text(assignment.value);
  std::wstring& cell = grid.rows[*match.row][column];
  const bool changed = cell != text;
  cell = std::move(text);
  return {changed, {}};
}

}  // namespace korvel
