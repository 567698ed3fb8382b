#include "host/console/linked_plugin.h"

#include <utility>

#include "host/console/output.h"
#include "host/standalone/standalone_store.h"

namespace korvel {

LinkedPlugin::LinkedPlugin(TerminalHost& host, TraceSink trace)
    : host_(host), trace_(std::move(trace)) {
  app_.on_load();
}

LinkedPlugin::~LinkedPlugin() { app_.on_unload(); }

void LinkedPlugin::run(const ConsoleCommandStack::Entry& command) {
  StandaloneStore store(host_.drawing());
  run_over(command.handler, store);
  if (store.lacked_place()) complain(host_.drawing().why_no_object_data().value_or(""));
}

void LinkedPlugin::run_over(CommandHandler handler, ODStore& store) {
  if (trace_) return run_traced(handler, store);
  Session session{store, host_, app_.choices, app_.palettes};
  run_handler(handler, session);
}

void LinkedPlugin::run_traced(CommandHandler handler, ODStore& store) {
  const std::unique_ptr<ODStore> traced_store = tracing_store(store, trace_);
  const std::unique_ptr<DrawingHost> traced_host = tracing_host(host_, trace_);
  Session session{*traced_store, *traced_host, app_.choices, app_.palettes};
  run_handler(handler, session);
}

}  // namespace korvel
