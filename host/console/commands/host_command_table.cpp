// The table of the host's own commands, and how they are found in it.
#include <algorithm>

#include "frame/case_mapping.h"
#include "host/console/commands/handlers.h"
#include "host/console/typed_text.h"

namespace korvel {

const std::vector<HostCommand>& host_commands() {
  using namespace host_command;
  static const std::vector<HostCommand> commands = {
      {L"NEW", L"", L"starts a new drawing", new_drawing},
      {L"OPEN", L"", L"opens a drawing file", open},
      {L"SAVE", L"QSAVE", L"saves the drawing to its file", save},
      {L"SAVEAS", L"", L"saves the drawing to another file", save_as},
      {L"CLOSE", L"", L"closes the drawing", close},
      {L"QUIT", L"EXIT", L"ends the program", quit},
      {L"SELECT", L"", L"makes a selection, for Previous in the next one", select},
      {L"PSELECT", L"", L"makes a selection the pick-first set, for the next command",
       select_first},
      {L"ERASE", L"E", L"erases entities", erase},
      {L"BREAK", L"BR", L"cuts a piece out of an entity, or cuts it in two", break_entity},
      {L"LIST", L"LI LS", L"shows the properties and the object data of entities", list},
      {L"ZOOM", L"Z", L"says where the drawing or some entities lie", zoom},
      {L"LAYER", L"LA -LAYER", L"makes layers and changes their state", layer},
      {L"POINT", L"PO", L"draws a point", point},
      {L"LINE", L"L", L"draws lines", line},
      {L"PLINE", L"PL", L"draws a 2D polyline", polyline},
      {L"3DPOLY", L"3P", L"draws a 3D polyline", polyline_3d},
      {L"CIRCLE", L"C", L"draws a circle", circle},
      {L"TEXT", L"DT", L"draws a line of text", text},
      {L"U", L"", L"undoes the last command", undo_one},
      {L"UNDO", L"", L"undoes a number of commands", undo},
      {L"REDO", L"", L"does again what was undone last", redo},
      {L"MREDO", L"", L"does again a number of what was undone", redo_many},
      {L"SETVAR", L"SET", L"shows and changes variables of the drawing", set_variable},
      {L"HELP", L"?", L"says what commands do", help},
      {L"ADEDEFDATA", L"", L"defines, changes, renames and deletes object-data tables",
       define_data},
      {L"ADEEDITDATA", L"", L"edits, attaches and detaches records of an entity", edit_data},
  };
  return commands;
}

bool is_called(const HostCommand& command, std::wstring_view name) {
  if (equal_ignoring_case(command.name, name)) return true;
  return std::ranges::any_of(words_of(command.aliases), [name](std::wstring_view alias) {
    return equal_ignoring_case(alias, name);
  });
}

const HostCommand* find_host_command(std::wstring_view name) {
  const auto& commands = host_commands();
  const auto found = std::ranges::find_if(
      commands, [name](const HostCommand& command) { return is_called(command, name); });
  return found == commands.end() ? nullptr : &*found;
}

std::wstring_view command_name(std::wstring_view typed) {
  std::wstring_view name = trimmed(typed);
  name.remove_prefix(std::min(name.find_first_not_of(L"_'."), name.size()));
  return name;
}

}  // namespace korvel
