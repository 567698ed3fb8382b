// A dialog at the console: the form that it prints and the lines that it takes.
//
//   Tables = ROADS, PARCELS   what is checked, the item of a list, the text of a field
//   Tables += PIPES           checks one more; -= unchecks; = * checks all; = nothing
//   Simultaneous = on         on/off, yes/no, 1/0
//   Value[WIDTH] = 3.5        a cell: column, then the row's first cell or its number from 1
//   Records.Value[1] = x      the same with the grid's label, where two grids share a heading
//   Criteria += NAME, *main*  a new row; Criteria -= 1 takes one away
//   ?                         the form again
//   OK                        presses a button, also one that is an item of a menu
//   3                         in a tree: activates a leaf, by its number or its label
//   Records = 1-20, 35        chooses lines of a long grid; += and -= too, * is all
//   NAME[3] = Main Street     a cell of its third line
//   NEXT, BACK, LINE 500      shows other lines of it; OPEN 7 opens or folds a group
//
// Labels and items ignore case and may be shortened while unique. An item with a comma or a blank
// at an end stands in double quotes, a quote inside doubled; a label may.
#pragma once

#include <string>
#include <string_view>

#include "frame/dialog.h"

namespace korvel {

// Title, controls, buttons; every line ends in a line feed.
[[nodiscard]] std::wstring form_text(const Dialog& dialog);

struct FormReply {
  enum class Kind {
    Done,      // the form stays; `text`: lines to print (what changed along), perhaps none
    Refused,   // nothing was changed; `text`: one sentence on what is wrong
    Accepted,  // closed by a button that accepts
    Cancelled
  };
  Kind kind = Kind::Done;
  std::wstring text;
};

// Does to the dialog what the typed line says.
[[nodiscard]] FormReply apply_line(Dialog& dialog, std::wstring_view typed);

}  // namespace korvel
