// A double of the CAD host's run-time classes, see db_classes.h: the command stack and the
// functions of its scripting language.
//
// What the real ones are known to do, these do: the first command makes its group, a name that is
// taken in the group is refused, a group goes as a whole.
#pragma once

#include <string>
#include <vector>

#include "tests/arx_double/db_classes.h"

using AcRxFunctionPtr = void (*)();

class AcEdCommandStack {
 public:
  Acad::ErrorStatus addCommand(const ACHAR* group, const ACHAR* global_name,
                               const ACHAR* local_name, Adesk::Int32 flags,
                               AcRxFunctionPtr function);
  Acad::ErrorStatus removeGroup(const ACHAR* group);

  struct Command {
    std::wstring group;
    std::wstring global_name;
    std::wstring local_name;
    Adesk::Int32 flags;
    AcRxFunctionPtr function;
  };
  std::vector<Command> commands;
};

// The one stack of the session.
AcEdCommandStack* the_command_stack();
#define acedRegCmds the_command_stack()

namespace AcRx {
enum AppRetCode { kRetOK = 0, kRetError = 3 };
enum AppMsgCode { kInitAppMsg = 1, kUnloadAppMsg = 2, kLoadDwgMsg = 3, kUnloadDwgMsg = 4 };
}  // namespace AcRx

class AcRxArxApp {
 public:
  AcRxArxApp() = default;
  AcRxArxApp(const AcRxArxApp&) = delete;
  AcRxArxApp& operator=(const AcRxArxApp&) = delete;
  virtual ~AcRxArxApp() = default;

  // Makes the module one that may be unloaded and that knows of several documents.
  virtual AcRx::AppRetCode On_kInitAppMsg(void* packet);
  virtual AcRx::AppRetCode On_kUnloadAppMsg(void* /*packet*/) { return AcRx::kRetOK; }
  virtual AcRx::AppRetCode On_kLoadDwgMsg(void* /*packet*/) { return AcRx::kRetOK; }
  virtual void RegisterServerComponents() = 0;

  AcRx::AppRetCode EntryPoint(AcRx::AppMsgCode message, void* packet);
};

extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet);
#define IMPLEMENT_ARX_ENTRYPOINT(Class)                                                \
  extern "C" AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet) { \
    static Class app;                                                                  \
    return app.EntryPoint(message, packet);                                            \
  }

extern "C" void acrxGetApiVersion();  // of the kit's own library; the module exports it

int acedDefun(const ACHAR* name, short code);
int acedUndef(const ACHAR* name, short code);
int acedRegFunc(int (*function)(), short code);

namespace korvel::arx_double {

// What the host does when it loads the module with a drawing open, and when it unloads it. False:
// the module is none that the host would take.
bool load_module();
bool unload_module();

// Calls the function of the scripting language; 0 when there is none of this name.
int call_function(std::wstring_view name);

}  // namespace korvel::arx_double
