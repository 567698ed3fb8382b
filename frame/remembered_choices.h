// What dialogs remember from one run of a command to the next.
#pragma once

namespace korvel {

// Kept while the module is loaded and never saved.
struct RememberedChoices {
  bool simultaneous = false;  // both table searches
  bool extended = false;      // the value search
};

}  // namespace korvel
