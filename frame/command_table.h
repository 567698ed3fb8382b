// The 38 commands, one row each, in the order in which the host lists them. Registration, the
// console's help and the palette are derived from this table.
#pragma once

#include <array>
#include <string_view>

#include "frame/command_handlers.h"

namespace korvel {

// Bits of the host's command flags.
namespace command_flag {
inline constexpr int transparent = 1;     // may run inside another command
inline constexpr int uses_pick_set = 2;   // sees the selection made before it was typed
inline constexpr int redraw = 4;          // and keeps it
inline constexpr int session = 0x200000;  // runs in the host's application context
inline constexpr int usual = transparent | uses_pick_set | redraw;
inline constexpr int modal = 0;
}  // namespace command_flag

using CommandHandler = void (*)(Session&);

struct Command {
  std::wstring_view name;
  int flags;
  std::wstring_view summary;  // one line of help: what it does
  CommandHandler handler;
};

inline constexpr std::wstring_view command_group = L"KORVEL";

inline constexpr std::array<Command, 38> command_table = {{
    {L"KORVEL_PSEL", command_flag::usual,
     L"asks for a point and selects the entities found around it", psel},
    {L"KORVEL_CTL", command_flag::usual, L"shows the command palette", show_commands},
    {L"KORVEL_LOAD_DEFINITION", command_flag::modal, L"loads table definitions from a drawing file",
     load_definition},
    {L"KORVEL_HAS_DUPLICATE_OD", command_flag::usual,
     L"selects entities with a table attached twice or more", has_duplicate_od},
    {L"KORVEL_HAS_OD", command_flag::usual, L"selects entities with any object data", has_od},
    {L"KORVEL_HAS_MULTIPLE_OD", command_flag::usual, L"selects entities with more than one record",
     has_multiple_od},
    {L"KORVEL_HAS_SPECIFIC_OD", command_flag::usual, L"selects entities with chosen tables",
     has_specific_od},
    {L"KORVEL_REMOVE_DUPLICATE_OD", command_flag::usual, L"removes duplicated records",
     remove_duplicate_od},
    {L"KORVEL_HAS_NO_OD", command_flag::usual, L"selects entities without object data", has_no_od},
    {L"KORVEL_HAS_SPECIFIC_VALUES", command_flag::usual, L"selects entities by record values",
     has_specific_values},
    {L"KORVEL_RM", command_flag::usual, L"removes chosen tables from entities", rm},
    {L"KORVEL_RM_ALL", command_flag::usual, L"removes all records from entities", rm_all},
    {L"KORVEL_COPY_OD", command_flag::usual, L"copies records from a reference entity", copy_od},
    {L"KORVEL_COPY_VALUE", command_flag::usual, L"copies values from a reference entity",
     copy_value},
    {L"KORVEL_COPY_OD_VALUE", command_flag::usual, L"copies records and values", copy_od_value},
    {L"KORVEL_COPY_ALL", command_flag::usual,
     L"copies properties and records from a reference entity", copy_all},
    {L"KORVEL_COPY_ALL_VALUE", command_flag::usual, L"copies properties, records and values",
     copy_all_value},
    {L"KORVEL_ADEATTACHDATA", command_flag::usual, L"attaches and detaches records in a dialog",
     ade_attach_data},
    {L"KORVEL_SETTEXT", command_flag::usual, L"sets values from text entities", set_text},
    {L"KORVEL_SETXYZ", command_flag::usual, L"sets values from coordinates", set_xyz},
    {L"KORVEL_SETID", command_flag::usual, L"generates identifiers", set_id},
    {L"KORVEL_SETPROP", command_flag::usual, L"sets values from geometric properties", set_prop},
    {L"KORVEL_REPLACE", command_flag::usual, L"replaces values", replace_values},
    {L"KORVEL_2POLY", command_flag::usual, L"converts entities to 2D polylines", to_2d_polylines},
    {L"KORVEL_ADDVAL", command_flag::usual, L"adds the values of one field into another", add_val},
    {L"KORVEL_ADDVAL_OD2OD", command_flag::usual, L"adds values of one table into another",
     add_val_od2od},
    {L"KORVEL_23DPOLY", command_flag::usual, L"converts entities to 3D polylines", to_3d_polylines},
    {L"KORVEL_RMUNUSED", command_flag::usual, L"removes unused table definitions", rm_unused},
    {L"KORVEL_STAT", command_flag::usual, L"shows statistics of the object data", stat},
    {L"KORVEL_HAS_NO_SPECIFIC_OD", command_flag::usual, L"selects entities without chosen tables",
     has_no_specific_od},
    {L"KORVEL_TABLE", command_flag::usual, L"shows the table editor", show_table_editor},
    {L"KORVEL_BREAK", command_flag::usual, L"breaks an entity; the pieces keep its object data",
     break_entity},
    {L"KORVEL_ABOUT", command_flag::usual, L"says what this program is", about},
    {L"KORVEL_EXPL", command_flag::usual, L"exports a grouped summary of the object data", expl},
    {L"KORVEL_TRANSLATE", command_flag::usual, L"renames tables, fields and values by alias files",
     translate},
    {L"KORVEL_LOAD_ATTRS", command_flag::usual, L"copies block attributes into object data",
     load_attrs},
    {L"KORVEL_STORE_ATTRS", command_flag::usual, L"copies object data into block attributes",
     store_attrs},
    {L"KORVEL_ATTR_TEMPLATE", command_flag::usual,
     L"writes a template of an attribute mapping file", attr_template},
}};

// The row of the command, found while compiling: what names a command that is not there does not
// compile.
consteval const Command& command_named(std::wstring_view name) {
  for (const Command& command : command_table) {
    if (command.name == name) return command;
  }
  throw "there is no such command";
}

}  // namespace korvel
