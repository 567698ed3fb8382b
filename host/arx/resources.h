// The module's resources: its own instance, and which instance's resources are the current ones.
#pragma once

#include "host/arx/sdk.h"

namespace korvel::arx {

// Of this module, from being loaded until it is unloaded.
void set_module_instance(HINSTANCE instance);
[[nodiscard]] HINSTANCE module_instance();

// While it lives, dialogs and texts come out of this module and not out of the host, which has
// resources of the same numbers.
class ModuleResources {
 public:
  ModuleResources();
  ~ModuleResources();
  ModuleResources(const ModuleResources&) = delete;
  ModuleResources& operator=(const ModuleResources&) = delete;
};

}  // namespace korvel::arx
