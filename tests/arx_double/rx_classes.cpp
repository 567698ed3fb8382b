#include "tests/arx_double/rx_classes.h"

#include <algorithm>
#include <map>

#include "tests/arx_double/windows_types.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);

namespace {

// Its address stands for where the module lies in memory.
HINSTANCE module_instance() {
  static char image = 0;
  return reinterpret_cast<HINSTANCE>(&image);
}

std::map<std::wstring, short, std::less<>> function_codes;
std::map<short, int (*)()> functions;

}  // namespace

Acad::ErrorStatus AcEdCommandStack::addCommand(const ACHAR* group, const ACHAR* global_name,
                                               const ACHAR* local_name, Adesk::Int32 flags,
                                               AcRxFunctionPtr function) {
  const bool taken = std::ranges::any_of(commands, [&](const Command& command) {
    return command.group == group &&
           (command.global_name == global_name || command.local_name == local_name);
  });
  if (taken) return Acad::eError;
  commands.push_back({group, global_name, local_name, flags, function});
  return Acad::eOk;
}

Acad::ErrorStatus AcEdCommandStack::removeGroup(const ACHAR* group) {
  const auto removed =
      std::erase_if(commands, [group](const Command& command) { return command.group == group; });
  return removed > 0 ? Acad::eOk : Acad::eError;
}

extern "C" void acrxGetApiVersion() {}

AcRx::AppRetCode AcRxArxApp::On_kInitAppMsg(void* packet) {
  *static_cast<bool*>(packet) = true;
  return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxArxApp::EntryPoint(AcRx::AppMsgCode message, void* packet) {
  switch (message) {
    case AcRx::kInitAppMsg:
      return On_kInitAppMsg(packet);
    case AcRx::kUnloadAppMsg:
      return On_kUnloadAppMsg(packet);
    case AcRx::kLoadDwgMsg:
      return On_kLoadDwgMsg(packet);
    default:
      return AcRx::kRetOK;
  }
}

AcEdCommandStack* the_command_stack() {
  static AcEdCommandStack stack;
  return &stack;
}

int acedDefun(const ACHAR* name, short code) {
  function_codes[name] = code;
  return 5100;
}

int acedUndef(const ACHAR* name, short /*code*/) {
  function_codes.erase(name);
  return 5100;
}

int acedRegFunc(int (*function)(), short code) {
  functions[code] = function;
  return 5100;
}

namespace korvel::arx_double {

bool load_module() {
  DllMain(module_instance(), DLL_PROCESS_ATTACH, nullptr);
  bool knows_documents = false;
  const bool taken = acrxEntryPoint(AcRx::kInitAppMsg, &knows_documents) == AcRx::kRetOK;
  return taken && knows_documents && acrxEntryPoint(AcRx::kLoadDwgMsg, nullptr) == AcRx::kRetOK;
}

bool unload_module() {
  const bool gone = acrxEntryPoint(AcRx::kUnloadDwgMsg, nullptr) == AcRx::kRetOK &&
                    acrxEntryPoint(AcRx::kUnloadAppMsg, nullptr) == AcRx::kRetOK;
  DllMain(module_instance(), DLL_PROCESS_DETACH, nullptr);
  return gone;
}

int call_function(std::wstring_view name) {
  const auto code = function_codes.find(name);
  return code == function_codes.end() ? 0 : functions.at(code->second)();
}

}  // namespace korvel::arx_double
