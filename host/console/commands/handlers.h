// The host's own commands, a function each.
#pragma once

#include "host/console/console.h"

namespace korvel::host_command {

void new_drawing(ConsoleHost& host);
void open(ConsoleHost& host);
void save(ConsoleHost& host);
void save_as(ConsoleHost& host);
void close(ConsoleHost& host);
void quit(ConsoleHost& host);

void select(ConsoleHost& host);
void select_first(ConsoleHost& host);
void erase(ConsoleHost& host);
void break_entity(ConsoleHost& host);
void list(ConsoleHost& host);
void zoom(ConsoleHost& host);

void layer(ConsoleHost& host);

void point(ConsoleHost& host);
void line(ConsoleHost& host);
void polyline(ConsoleHost& host);
void polyline_3d(ConsoleHost& host);
void circle(ConsoleHost& host);
void text(ConsoleHost& host);

void undo_one(ConsoleHost& host);
void undo(ConsoleHost& host);
void redo(ConsoleHost& host);
void redo_many(ConsoleHost& host);

void set_variable(ConsoleHost& host);
void help(ConsoleHost& host);

void define_data(ConsoleHost& host);
void edit_data(ConsoleHost& host);

}  // namespace korvel::host_command
