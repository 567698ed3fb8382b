// The plug-in's life inside a host: what it registers when it is loaded, what it takes away when it
// goes.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "frame/command_table.h"
#include "frame/session.h"

namespace korvel {

// The host's register of commands. A host that refuses a registration (a name already taken) does
// so silently: the command is then simply absent.
class CommandStack {
 public:
  CommandStack() = default;
  CommandStack(const CommandStack&) = delete;
  CommandStack& operator=(const CommandStack&) = delete;
  virtual ~CommandStack() = default;

  // The local name is the one in the host's language; all views stay valid until removal.
  virtual void add_command(std::wstring_view group, std::wstring_view global_name,
                           std::wstring_view local_name, int flags, CommandHandler handler) = 0;
  virtual void remove_group(std::wstring_view group) = 0;

  // A function for the host's scripting language: takes nothing, returns the host's status.
  virtual void add_function(std::wstring_view name, int (*function)()) = 0;
  virtual void remove_function(std::wstring_view name) = 0;
};

// What every module of the host's framework does on the two notifications: it registers, and takes
// away, the entries of its command-entry table (the group "MyGroup" and a scripting function).
class ModuleApp {
 public:
  explicit ModuleApp(CommandStack& stack) : stack_(stack) {}
  ModuleApp(const ModuleApp&) = delete;
  ModuleApp& operator=(const ModuleApp&) = delete;
  virtual ~ModuleApp() = default;

  virtual void on_load();
  virtual void on_unload();

 protected:
  [[nodiscard]] CommandStack& stack() { return stack_; }

 private:
  CommandStack& stack_;
};

class CkorvelApp final : public ModuleApp {
 public:
  using ModuleApp::ModuleApp;

  void on_load() override;
  void on_unload() override;

  RememberedChoices choices;
  Palettes palettes;
};

// Runs what the command does. None: it came to its end, or the user interrupted it before it
// changed anything, which is an end like Esc. Otherwise it threw, and the sentence says why it was
// not finished.
[[nodiscard]] std::optional<std::wstring> run_or_explain(std::wstring_view command,
                                                         const std::function<void()>& action);

// Runs a handler with the module's resources current, and the former ones again on every way out,
// exceptions included.
void run_handler(CommandHandler handler, Session& session);

}  // namespace korvel
