#include "host/console/form_grid.h"

#include <algorithm>
#include <vector>

#include "frame/case_mapping.h"
#include "host/console/form_parts.h"
#include "host/console/typed_text.h"

namespace korvel {
namespace {

template <class Wanted>
Wanted* control_in(const Dialog& dialog) {
  for (const ControlPointer& control : dialog.controls()) {
    if (auto* const* found = std::get_if<Wanted*>(&control)) return *found;
  }
  return nullptr;
}

FormReply refused(std::wstring sentence) { return {FormReply::Kind::Refused, std::move(sentence)}; }

struct TreeName {
  std::wstring_view name;
  Tree::Place place;
};

// The leaves in the order of their numbers, then the groups.
std::vector<TreeName> names_in(const Tree& tree) {
  std::vector<TreeName> names;
  std::vector<TreeName> groups;
  for (std::size_t item = 0; item < tree.items.size(); ++item) {
    const Tree::Item& shown = tree.items[item];
    (shown.leaves.empty() ? names : groups).push_back({shown.label, {item, std::nullopt}});
    for (std::size_t leaf = 0; leaf < shown.leaves.size(); ++leaf)
      names.push_back({shown.leaves[leaf], {item, leaf}});
  }
  names.insert(names.end(), groups.begin(), groups.end());
  return names;
}

bool is_group(const Tree& tree, const Tree::Place& place) {
  return !place.leaf && !tree.items[place.item].leaves.empty();
}

// A line's index from the number that was typed; none when there is no such line.
std::optional<std::size_t> line_index(const LongGrid& grid, std::wstring_view typed) {
  const std::optional<std::int32_t> number = integer_of(trimmed(typed));
  if (!number || *number < 1) return std::nullopt;
  const auto index = static_cast<std::size_t>(*number) - 1;
  return index < grid.lines->line_count() ? std::optional(index) : std::nullopt;
}

std::wstring no_such_line(const LongGrid& grid, std::wstring_view typed) {
  return L"There is no line " + in_quotes(trimmed(typed)) + L"; there are " +
         std::to_wstring(grid.lines->line_count()) + L".";
}

struct LineRange {
  std::size_t first = 0;
  std::size_t last = 0;
};

// "7" or "3-9".
std::optional<LineRange> range_of(const LongGrid& grid, std::wstring_view typed) {
  const std::size_t dash = typed.find(L'-');
  const auto first = line_index(grid, typed.substr(0, dash));
  const auto last =
      dash == std::wstring_view::npos ? first : line_index(grid, typed.substr(dash + 1));
  if (!first || !last || *first > *last) return std::nullopt;
  return LineRange{*first, *last};
}

}  // namespace

std::optional<FormReply> pick_in_tree(Dialog& dialog, std::wstring_view typed) {
  Tree* const tree = control_in<Tree>(dialog);
  if (tree == nullptr) return std::nullopt;
  const std::vector<TreeName> names = names_in(*tree);
  std::vector<std::wstring_view> labels;
  labels.reserve(names.size());
  for (const TreeName& name : names)
    labels.push_back(name.name);
  const auto leaves = static_cast<std::size_t>(std::ranges::count_if(
      names, [tree](const TreeName& name) { return !is_group(*tree, name.place); }));

  NameMatch match = match_name(labels, typed);
  if (const auto number = integer_of(typed);
      number && *number >= 1 && static_cast<std::size_t>(*number) <= leaves) {
    match = {static_cast<std::size_t>(*number) - 1, false};
  }
  if (!match.index || match.ambiguous) {
    return refused((match.ambiguous ? L"There is more than one " : L"There is no ") +
                   in_quotes(typed) + L" here; pick a label, or a number from 1 to " +
                   std::to_wstring(leaves) + L".");
  }
  tree->selected = names[*match.index].place;
  dialog.activated(*tree);
  if (!is_group(*tree, *tree->selected)) return FormReply{};
  return FormReply{FormReply::Kind::Done, tree->text() + L" is a group: pick what is in it.\n"};
}

std::optional<FormReply> move_in_grid(Dialog& dialog, std::wstring_view typed) {
  auto* const grid = control_in<LongGrid>(dialog);
  const std::vector<std::wstring_view> words = words_of(typed);
  if (grid == nullptr || words.empty() || words.size() > 2) return std::nullopt;
  const auto is = [&words](std::wstring_view word, std::size_t count) {
    return words.size() == count && equal_ignoring_case(words.front(), word);
  };
  const std::size_t count = grid->lines->line_count();
  if (is(L"NEXT", 1)) {
    if (grid->top + grid_page >= count) return refused(L"These are the last lines.");
    grid->top += grid_page;
  } else if (is(L"BACK", 1)) {
    if (grid->top == 0) return refused(L"These are the first lines.");
    grid->top -= std::min(grid->top, grid_page);
  } else if (is(L"LINE", 2) || is(L"OPEN", 2)) {
    const std::optional<std::size_t> index = line_index(*grid, words.back());
    if (!index) return refused(no_such_line(*grid, words.back()));
    if (is(L"LINE", 2)) {
      grid->top = *index;
    } else if (!grid->lines->line(*index).is_group) {
      return refused(L"Line " + std::to_wstring(*index + 1) + L" is no group.");
    } else {
      grid->lines->activate(*index);
    }
  } else {
    return std::nullopt;
  }
  return FormReply{FormReply::Kind::Done, control_text(grid)};
}

FormChange choose_lines(LongGrid& grid, const FormAssignment& assignment) {
  const auto items = items_of(assignment.value);
  if (!items) return {false, L"A quote is not closed, or text follows it."};
  const std::size_t count = grid.lines->line_count();
  std::vector<LineRange> ranges;
  for (const TypedItem& item : *items) {
    if (item.text == L"*") {
      if (count > 0) ranges.push_back({0, count - 1});
      continue;
    }
    const std::optional<LineRange> range = range_of(grid, item.text);
    if (!range) return {false, no_such_line(grid, item.text)};
    ranges.push_back(*range);
  }
  if (assignment.operation == FormOperation::Set) {
    for (std::size_t index = 0; index < count; ++index)
      grid.lines->choose(index, false);
  }
  for (const LineRange& range : ranges) {
    for (std::size_t index = range.first; index <= range.last; ++index)
      grid.lines->choose(index, assignment.operation != FormOperation::Remove);
  }
  return {true, {}};
}

FormChange change_cell(LongGrid& grid, std::size_t column, const FormAssignment& assignment) {
  const GridLines::Column shown = grid.lines->columns()[column];
  if (!grid.enabled) return {false, std::wstring(label_name(grid)) + L" is disabled."};
  if (!shown.editable) return {false, shown.heading + L" cannot be changed."};
  if (assignment.operation != FormOperation::Set) return {false, L"A cell takes = alone."};
  const std::optional<std::size_t> index = line_index(grid, *assignment.row);
  if (!index) return {false, no_such_line(grid, *assignment.row)};
  const std::optional<std::wstring> refusal =
      grid.lines->set_cell(*index, column, field_text(assignment.value));
  return refusal ? FormChange{false, *refusal} : FormChange{true, {}};
}

}  // namespace korvel
