// The plug-in as a console has loaded it.
#pragma once

#include <functional>
#include <memory>

#include "host/console/command_stack.h"
#include "host/console/terminal_host.h"

namespace korvel {

// Unloaded by destroying it.
class LoadedPlugin {
 public:
  LoadedPlugin() = default;
  LoadedPlugin(const LoadedPlugin&) = delete;
  LoadedPlugin& operator=(const LoadedPlugin&) = delete;
  virtual ~LoadedPlugin() = default;

  // What it has registered; an entry's handler is the plug-in's own affair.
  [[nodiscard]] virtual const ConsoleCommandStack& commands() const = 0;

  // Runs the command for the drawing of the console. Whatever the command throws comes out.
  virtual void run(const ConsoleCommandStack::Entry& command) = 0;
};

// Loads the plug-in into a console; the host must outlive the result.
using PluginLoader = std::function<std::unique_ptr<LoadedPlugin>(TerminalHost& host)>;

}  // namespace korvel
