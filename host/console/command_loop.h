// Takes commands from the console, one after the other, and runs them.
#pragma once

#include <string>
#include <string_view>

#include "frame/tracing_host.h"
#include "host/console/command_stack.h"
#include "host/console/terminal_host.h"

namespace korvel {

class CommandLoop {
 public:
  CommandLoop(TerminalHost& host, LineSource& lines, const ConsoleCommandStack& plugin,
              CkorvelApp& app)
      : host_(host), lines_(lines), plugin_(plugin), app_(app) {}

  // From now on every call that the plug-in's commands make of their host goes to the sink.
  void trace_to(TraceSink sink) { trace_ = std::move(sink); }

  // Until the host takes no more commands.
  void run();

 private:
  void run_line(std::wstring_view line);
  void run_plugin_command(const ConsoleCommandStack::Entry& command);
  void run_traced(CommandHandler handler, ODStore& store);

  TerminalHost& host_;
  LineSource& lines_;
  const ConsoleCommandStack& plugin_;
  CkorvelApp& app_;
  std::wstring last_command_;
  TraceSink trace_;
};

}  // namespace korvel
