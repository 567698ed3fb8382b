#include "frame/plugin.h"

#include <exception>
#include <new>

#include "frame/utf.h"
#include "frame/walk.h"

namespace korvel {
namespace {

// The entries of the module's command-entry table. They came with the framework the module was
// begun from; no feature rests on them and they are kept as they stand.
constexpr std::wstring_view entry_group = L"MyGroup";
constexpr std::wstring_view entry_function = L"MyLispFunction";
constexpr int normal_status = 5100;

void do_nothing(Session&) {}

void take_pick_first(Session& session) { (void)session.host.pick_first(); }

int my_lisp_function() { return normal_status; }

class ResourceContext {
 public:
  explicit ResourceContext(DrawingHost& host) : host_(host) { host_.enter_resources(); }
  ~ResourceContext() { host_.leave_resources(); }
  ResourceContext(const ResourceContext&) = delete;
  ResourceContext& operator=(const ResourceContext&) = delete;

 private:
  DrawingHost& host_;
};

}  // namespace

void ModuleApp::on_load() {
  stack_.add_command(entry_group, L"MyCommand", L"MyCommandLocal", 0, do_nothing);
  stack_.add_command(entry_group, L"MyPickFirst", L"MyPickFirstLocal", command_flag::uses_pick_set,
                     take_pick_first);
  stack_.add_command(entry_group, L"MySessionCmd", L"MySessionCmdLocal", command_flag::session,
                     do_nothing);
  stack_.add_function(entry_function, my_lisp_function);
}

void ModuleApp::on_unload() {
  stack_.remove_function(entry_function);
  stack_.remove_group(entry_group);
}

void CkorvelApp::on_load() {
  ModuleApp::on_load();
  for (const Command& command : command_table) {
    stack().add_command(command_group, command.name, command.name, command.flags, command.handler);
  }
}

void CkorvelApp::on_unload() {
  palettes.table_editor.reset();
  palettes.commands.reset();
  choices = {};
  stack().remove_group(command_group);
  ModuleApp::on_unload();
}

std::optional<std::wstring> run_or_explain(std::wstring_view command,
                                           const std::function<void()>& action) try {
  action();
  return std::nullopt;
} catch (const Interrupted&) {
  return std::nullopt;
} catch (const std::bad_alloc&) {
  return std::wstring(command) + L" was not finished: there is not enough memory.";
} catch (const std::exception& error) {
  return std::wstring(command) + L" was not finished: " + from_utf8(error.what()) + L".";
}

void run_handler(CommandHandler handler, Session& session) {
  const ResourceContext resources(session.host);
  handler(session);
}

}  // namespace korvel
