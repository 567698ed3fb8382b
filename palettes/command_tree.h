// The tree of the command palette: which command stands under which label in which group.
#pragma once

#include <array>
#include <string_view>

#include "frame/command_table.h"

namespace korvel {

struct CommandLeaf {
  std::wstring_view group;  // empty: at the top level
  std::wstring_view label;
  const Command& command;
};

// In the order shown; the leaves of a group stand together. "Covert" is spelled so on purpose: it
// is the label that users and their macros know.
// NOLINTNEXTLINE(*-avoid-c-arrays): its length is that of the list
inline constexpr CommandLeaf command_tree[] = {
    {L"OD management", L"Copy definitions from file", command_named(L"KORVEL_LOAD_DEFINITION")},
    {L"OD management", L"Usage stats", command_named(L"KORVEL_STAT")},
    {L"OD management", L"Translate", command_named(L"KORVEL_TRANSLATE")},
    {L"OD management", L"Remove unused", command_named(L"KORVEL_RMUNUSED")},
    {L"Search OD", L"Find entities with no OD", command_named(L"KORVEL_HAS_NO_OD")},
    {L"Search OD", L"Find entities with OD", command_named(L"KORVEL_HAS_OD")},
    {L"Search OD", L"Find entities with duplicate OD", command_named(L"KORVEL_HAS_DUPLICATE_OD")},
    {L"Search OD", L"Find entities with multiple OD", command_named(L"KORVEL_HAS_MULTIPLE_OD")},
    {L"Search OD", L"Find entities with no specific OD",
     command_named(L"KORVEL_HAS_NO_SPECIFIC_OD")},
    {L"Search OD", L"Find entities with specific OD", command_named(L"KORVEL_HAS_SPECIFIC_OD")},
    {L"Search OD", L"Find entities with specific OD values",
     command_named(L"KORVEL_HAS_SPECIFIC_VALUES")},
    {L"Attach/detach OD", L"Attach/detach", command_named(L"KORVEL_ADEATTACHDATA")},
    {L"Attach/detach OD", L"Detach all", command_named(L"KORVEL_RM_ALL")},
    {L"Attach/detach OD", L"Detach specified", command_named(L"KORVEL_RM")},
    {L"Attach/detach OD", L"Detach duplicate", command_named(L"KORVEL_REMOVE_DUPLICATE_OD")},
    {L"Copy OD", L"Copy OD from reference", command_named(L"KORVEL_COPY_OD")},
    {L"Copy OD", L"Copy OD/values from reference", command_named(L"KORVEL_COPY_OD_VALUE")},
    {L"Copy OD", L"Copy properties/OD from reference", command_named(L"KORVEL_COPY_ALL")},
    {L"Copy OD", L"Copy properties/OD/values from reference",
     command_named(L"KORVEL_COPY_ALL_VALUE")},
    {L"Copy OD", L"Copy values from reference", command_named(L"KORVEL_COPY_VALUE")},
    {L"Set/edit OD values", L"Set from XYZ", command_named(L"KORVEL_SETXYZ")},
    {L"Set/edit OD values", L"Set from geometric properties", command_named(L"KORVEL_SETPROP")},
    {L"Set/edit OD values", L"Set from text", command_named(L"KORVEL_SETTEXT")},
    {L"Set/edit OD values", L"Set from attributes", command_named(L"KORVEL_LOAD_ATTRS")},
    {L"Set/edit OD values", L"Upload to attributes", command_named(L"KORVEL_STORE_ATTRS")},
    {L"Set/edit OD values", L"Create IDs", command_named(L"KORVEL_SETID")},
    {L"Set/edit OD values", L"Replace", command_named(L"KORVEL_REPLACE")},
    {L"Set/edit OD values", L"Add from field in field", command_named(L"KORVEL_ADDVAL")},
    {L"Set/edit OD values", L"Add values from OD to OD", command_named(L"KORVEL_ADDVAL_OD2OD")},
    {L"Modify entities", L"Covert to 2D polylines", command_named(L"KORVEL_2POLY")},
    {L"Modify entities", L"Convert to 3D polylines", command_named(L"KORVEL_23DPOLY")},
    {L"Modify entities", L"Break", command_named(L"KORVEL_BREAK")},
    {L"Export/import", L"Explication", command_named(L"KORVEL_EXPL")},
    {L"", L"OD table", command_named(L"KORVEL_TABLE")},
    {L"", L"About", command_named(L"KORVEL_ABOUT")},
};

}  // namespace korvel
