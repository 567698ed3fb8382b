// The console with the CAD host's module in it instead of the plug-in that is linked in: every
// command goes through the binding and the double of the host's classes before it comes to the
// stand-alone drawing.
#include <utility>

#include "frame/utf.h"
#include "host/console/output.h"
#include "host/console/program.h"
#include "tests/arx_double/db_classes.h"
#include "tests/arx_double/ed_classes.h"
#include "tests/arx_double/map_classes.h"
#include "tests/arx_double/rx_classes.h"
#include "tests/arx_double/ui_classes.h"

namespace korvel {
namespace {

// What the host would not get back.
struct Leaks {
  int map_objects = arx_double::undeleted_map_objects();
  int objects = arx_double::open_objects();
  int sets = arx_double::open_selection_sets();
  HINSTANCE resources = AfxGetResourceHandle();
  friend bool operator==(const Leaks&, const Leaks&) = default;
};

class ModuleInDouble final : public LoadedPlugin {
 public:
  explicit ModuleInDouble(TerminalHost& host) : host_(host), database_(host) {
    arx_double::set_palette_user([&host](Palette& palette) { host.converse_with(palette); });
    if (!arx_double::load_module()) complain("the module was not loaded");
    for (const AcEdCommandStack::Command& command : acedRegCmds->commands) {
      commands_.add_command(command.group, command.global_name, command.local_name, command.flags,
                            nullptr);
    }
  }
  ~ModuleInDouble() override {
    if (!arx_double::unload_module() || !acedRegCmds->commands.empty()) {
      complain("the module was not unloaded");
    }
    tell_leaks("the module", Leaks{0, 0, 0, nullptr});
    if (arx_double::free_objects() != 0) complain("the module left copies behind");
  }

  [[nodiscard]] const ConsoleCommandStack& commands() const override { return commands_; }

  void run(const ConsoleCommandStack::Entry& command) override {
    StandaloneStore store(host_.drawing());
    const arx_double::MapOverStore map(store);
    if (std::exchange(known_drawing_, &host_.drawing()) != &host_.drawing()) {
      AcApDocManager& documents = *acDocManagerPtr();
      documents.close_document(documents.curDocument());
      documents.make_current(documents.other_document());
      arx_double::deliver_posted_messages();
    }
    const Leaks before;
    const arx_double::RunningIn command_turn(arx_double::RunningIn::Command);
    for (const AcEdCommandStack::Command& registered : acedRegCmds->commands) {
      if (registered.global_name == command.name) registered.function();
    }
    tell_leaks(to_utf8(command.name), before);
  }

 private:
  static void tell_leaks(const std::string& who, const Leaks& before) {
    if (Leaks() != before) complain(who + " did not give back all that it had of the host");
  }

  TerminalHost& host_;
  arx_double::DatabaseOver database_;
  ConsoleCommandStack commands_;
  const Drawing* known_drawing_ = &host_.drawing();
};

}  // namespace
}  // namespace korvel

int main(int argc, char** argv) {
  return korvel::run_program(argc, argv, [](korvel::TerminalHost& host) {
    return std::make_unique<korvel::ModuleInDouble>(host);
  });
}
