// What a line does to a tree or to a long grid of a form.
#pragma once

#include <optional>
#include <string_view>

#include "frame/dialog.h"
#include "host/console/form.h"
#include "host/console/form_change.h"
#include "host/console/form_line.h"

namespace korvel {

// Activates the leaf of this number or label, or the group of this label. None: the dialog has no
// tree.
[[nodiscard]] std::optional<FormReply> pick_in_tree(Dialog& dialog, std::wstring_view typed);

// Shows other lines of the dialog's long grid, or opens a group of it. None: there is no such grid,
// or the line says something else.
[[nodiscard]] std::optional<FormReply> move_in_grid(Dialog& dialog, std::wstring_view typed);

// Chooses lines: numbers and ranges of numbers.
[[nodiscard]] FormChange choose_lines(LongGrid& grid, const FormAssignment& assignment);

// The cell of this column in the line that the assignment names by its number.
[[nodiscard]] FormChange change_cell(LongGrid& grid, std::size_t column,
                                     const FormAssignment& assignment);

}  // namespace korvel
