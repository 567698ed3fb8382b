// What commands remember from one run to the next.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "frame/object_copy.h"

namespace korvel {

// KORVEL_SETXYZ.
struct CoordinateChoices {
  std::wstring table;
  std::size_t plan_rule = 2;       // index of First, Last, Center
  std::size_t elevation_rule = 2;  // index of Min, Max, Average
};

// The form of a table's text in a file.
struct CsvChoices {
  std::wstring separator = L",";
  bool tabs = false;  // instead of the separator
  bool decimal_comma = false;
};

// Kept while the module is loaded and never saved.
struct RememberedChoices {
  bool simultaneous = false;  // both table searches
  bool extended = false;      // the value search
  // KORVEL_BREAK: what the entity in work carried, for its new pieces; a break that was cancelled
  // leaves it until the next.
  std::vector<ExtensionEntry> entries_of_broken;
  CoordinateChoices coordinates;
  std::int32_t first_number = 0;   // KORVEL_SETID; -1 after an invalid one
  std::wstring table_of_measures;  // KORVEL_SETPROP
  std::wstring table_of_texts;     // KORVEL_SETTEXT
  std::wstring text_tolerance = L"0";
  CsvChoices csv;  // export and import of a table
};

}  // namespace korvel
