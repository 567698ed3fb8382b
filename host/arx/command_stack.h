// The host's command stack, on which the module's commands are registered.
#pragma once

#include <string>
#include <vector>

#include "frame/plugin.h"

namespace korvel::arx {

// The host starts a command by a function without arguments. Each command therefore gets one of a
// fixed number of such functions, which hands its handler to the runner.
class ArxCommandStack final : public CommandStack {
 public:
  // Runs the handler of the command of this name for the current document. Nothing may be thrown
  // out of it: the host would not survive that.
  using Runner = void (*)(std::wstring_view name, CommandHandler handler);
  explicit ArxCommandStack(Runner runner);

  // A command that the host refuses, or for which there is no function left, is silently absent.
  void add_command(std::wstring_view group, std::wstring_view global_name,
                   std::wstring_view local_name, int flags, CommandHandler handler) override;
  void remove_group(std::wstring_view group) override;
  void add_function(std::wstring_view name, int (*function)()) override;
  void remove_function(std::wstring_view name) override;

  // The host forgets the functions of its scripting language with every drawing and has to be told
  // them again for the next.
  void define_functions() const;

 private:
  struct Function {
    std::wstring name;
    int (*function)();
  };
  std::vector<Function> functions_;
};

}  // namespace korvel::arx
