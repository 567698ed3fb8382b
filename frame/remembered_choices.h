// What commands remember from one run to the next.
#pragma once

#include <string>
#include <vector>

#include "frame/object_copy.h"

namespace korvel {

// Kept while the module is loaded and never saved.
struct RememberedChoices {
  bool simultaneous = false;  // both table searches
  bool extended = false;      // the value search
  // KORVEL_BREAK: what the entity in work carried, for its new pieces; a break that was cancelled
  // leaves it until the next.
  std::vector<ExtensionEntry> entries_of_broken;
  std::wstring table_of_measures;  // KORVEL_SETPROP
  std::wstring table_of_texts;     // KORVEL_SETTEXT
  std::wstring text_tolerance = L"0";
};

}  // namespace korvel
