// Takes commands from the console, one after the other, and runs them.
#pragma once

#include <string>
#include <string_view>

#include "host/console/loaded_plugin.h"

namespace korvel {

class CommandLoop {
 public:
  CommandLoop(TerminalHost& host, LineSource& lines, LoadedPlugin& plugin)
      : host_(host), lines_(lines), plugin_(plugin) {}

  // Until the host takes no more commands.
  void run();

 private:
  void run_line(std::wstring_view line);
  void run_plugin_command(const ConsoleCommandStack::Entry& command);

  TerminalHost& host_;
  LineSource& lines_;
  LoadedPlugin& plugin_;
  std::wstring last_command_;
};

}  // namespace korvel
