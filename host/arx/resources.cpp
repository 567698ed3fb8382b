#include "host/arx/resources.h"

namespace korvel::arx {
namespace {

HINSTANCE instance_of_module = nullptr;

// Commands of two documents may take turns, so the first to enter need not be the last to leave.
int inside = 0;
HINSTANCE of_host = nullptr;

}  // namespace

void set_module_instance(HINSTANCE instance) { instance_of_module = instance; }

HINSTANCE module_instance() { return instance_of_module; }

ModuleResources::ModuleResources() {
  if (inside++ == 0) of_host = AfxGetResourceHandle();
  AfxSetResourceHandle(instance_of_module);
}

ModuleResources::~ModuleResources() {
  if (--inside == 0) AfxSetResourceHandle(of_host);
}

}  // namespace korvel::arx
