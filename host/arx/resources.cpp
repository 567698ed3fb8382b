#include "host/arx/resources.h"

namespace korvel::arx {
namespace {

HINSTANCE instance_of_module = nullptr;

}  // namespace

void set_module_instance(HINSTANCE instance) { instance_of_module = instance; }

HINSTANCE module_instance() { return instance_of_module; }

ModuleResources::ModuleResources() : former_(AfxGetResourceHandle()) {
  AfxSetResourceHandle(instance_of_module);
}

ModuleResources::~ModuleResources() { AfxSetResourceHandle(former_); }

}  // namespace korvel::arx
