#include "frame/command_table.h"

#include <array>

#include "frame/command_handlers.h"

namespace korvel {
namespace {

constexpr int usual =
    command_flag::transparent | command_flag::uses_pick_set | command_flag::redraw;
constexpr int modal = 0;

constexpr std::array<Command, 38> commands = {{
    {L"KORVEL_PSEL", usual, L"asks for a point and selects the entities found around it", psel},
    {L"KORVEL_CTL", usual, L"shows the command palette", nullptr},
    {L"KORVEL_LOAD_DEFINITION", modal, L"loads table definitions from a drawing file",
     load_definition},
    {L"KORVEL_HAS_DUPLICATE_OD", usual, L"selects entities with a table attached twice or more",
     has_duplicate_od},
    {L"KORVEL_HAS_OD", usual, L"selects entities with any object data", has_od},
    {L"KORVEL_HAS_MULTIPLE_OD", usual, L"selects entities with more than one record",
     has_multiple_od},
    {L"KORVEL_HAS_SPECIFIC_OD", usual, L"selects entities with chosen tables", has_specific_od},
    {L"KORVEL_REMOVE_DUPLICATE_OD", usual, L"removes duplicated records", remove_duplicate_od},
    {L"KORVEL_HAS_NO_OD", usual, L"selects entities without object data", has_no_od},
    {L"KORVEL_HAS_SPECIFIC_VALUES", usual, L"selects entities by record values",
     has_specific_values},
    {L"KORVEL_RM", usual, L"removes chosen tables from entities", rm},
    {L"KORVEL_RM_ALL", usual, L"removes all records from entities", rm_all},
    {L"KORVEL_COPY_OD", usual, L"copies records from a reference entity", copy_od},
    {L"KORVEL_COPY_VALUE", usual, L"copies values from a reference entity", copy_value},
    {L"KORVEL_COPY_OD_VALUE", usual, L"copies records and values", copy_od_value},
    {L"KORVEL_COPY_ALL", usual, L"copies properties and records from a reference entity", copy_all},
    {L"KORVEL_COPY_ALL_VALUE", usual, L"copies properties, records and values", copy_all_value},
    {L"KORVEL_ADEATTACHDATA", usual, L"attaches and detaches records in a dialog", ade_attach_data},
    {L"KORVEL_SETTEXT", usual, L"sets values from text entities", set_text},
    {L"KORVEL_SETXYZ", usual, L"sets values from coordinates", set_xyz},
    {L"KORVEL_SETID", usual, L"generates identifiers", set_id},
    {L"KORVEL_SETPROP", usual, L"sets values from geometric properties", set_prop},
    {L"KORVEL_REPLACE", usual, L"replaces values", replace_values},
    {L"KORVEL_2POLY", usual, L"converts entities to 2D polylines", to_2d_polylines},
    {L"KORVEL_ADDVAL", usual, L"adds the values of one field into another", add_val},
    {L"KORVEL_ADDVAL_OD2OD", usual, L"adds values of one table into another", add_val_od2od},
    {L"KORVEL_23DPOLY", usual, L"converts entities to 3D polylines", to_3d_polylines},
    {L"KORVEL_RMUNUSED", usual, L"removes unused table definitions", rm_unused},
    {L"KORVEL_STAT", usual, L"shows statistics of the object data", stat},
    {L"KORVEL_HAS_NO_SPECIFIC_OD", usual, L"selects entities without chosen tables",
     has_no_specific_od},
    {L"KORVEL_TABLE", usual, L"shows the table editor", nullptr},
    {L"KORVEL_BREAK", usual, L"breaks an entity; the pieces keep its object data", break_entity},
    {L"KORVEL_ABOUT", usual, L"says what this program is", about},
    {L"KORVEL_EXPL", usual, L"exports a grouped summary of the object data", expl},
    {L"KORVEL_TRANSLATE", usual, L"renames tables, fields and values by alias files", translate},
    {L"KORVEL_LOAD_ATTRS", usual, L"copies block attributes into object data", nullptr},
    {L"KORVEL_STORE_ATTRS", usual, L"copies object data into block attributes", nullptr},
    {L"KORVEL_ATTR_TEMPLATE", usual, L"writes a template of an attribute mapping file", nullptr},
}};

}  // namespace

std::span<const Command> command_table() { return commands; }

}  // namespace korvel
