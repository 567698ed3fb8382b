// The host's command stack, on which the module's commands are registered.
#pragma once

#include "frame/plugin.h"

namespace korvel::arx {

// The host starts a command by a function without arguments. Each command therefore gets one of a
// fixed number of such functions, which hands its handler to the runner.
class ArxCommandStack final : public CommandStack {
 public:
  // Runs a handler for the current document. Nothing it throws may leave it: the host would not
  // survive that.
  using Runner = void (*)(CommandHandler handler);
  explicit ArxCommandStack(Runner runner);

  // A command that the host refuses, or for which there is no function left, is silently absent.
  void add_command(std::wstring_view group, std::wstring_view global_name,
                   std::wstring_view local_name, int flags, CommandHandler handler) override;
  void remove_group(std::wstring_view group) override;
  void add_function(std::wstring_view name, int (*function)()) override;
  void remove_function(std::wstring_view name) override;
};

}  // namespace korvel::arx
