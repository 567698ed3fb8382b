// The plug-in that is a part of the program, over the stand-alone store and host.
#pragma once

#include "frame/tracing_host.h"
#include "host/console/loaded_plugin.h"

namespace korvel {

class LinkedPlugin final : public LoadedPlugin {
 public:
  // With a sink, every call that the commands make of their host goes to it.
  explicit LinkedPlugin(TerminalHost& host, TraceSink trace = {});
  ~LinkedPlugin() override;
  LinkedPlugin(const LinkedPlugin&) = delete;
  LinkedPlugin& operator=(const LinkedPlugin&) = delete;

  [[nodiscard]] const ConsoleCommandStack& commands() const override { return commands_; }
  void run(const ConsoleCommandStack::Entry& command) override;

 private:
  void run_over(CommandHandler handler, ODStore& store);
  void run_traced(CommandHandler handler, ODStore& store);

  TerminalHost& host_;
  TraceSink trace_;
  ConsoleCommandStack commands_;
  CkorvelApp app_{commands_};
};

}  // namespace korvel
