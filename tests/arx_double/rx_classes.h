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

int acedDefun(const ACHAR* name, short code);
int acedUndef(const ACHAR* name, short code);
int acedRegFunc(int (*function)(), short code);

namespace korvel::arx_double {

// Calls the function of the scripting language; 0 when there is none of this name.
int call_function(std::wstring_view name);

}  // namespace korvel::arx_double
