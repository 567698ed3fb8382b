#include "host/arx/session.h"

#include "host/arx/arx_host.h"
#include "host/arx/command_line.h"
#include "host/arx/object_data.h"

namespace korvel::arx {
namespace {

korvel::CkorvelApp* loaded_plugin = nullptr;

}  // namespace

void set_plugin(korvel::CkorvelApp* plugin) { loaded_plugin = plugin; }

void run_guarded(std::wstring_view name, const std::function<void()>& action) try {
  const std::optional<std::wstring> failure = run_or_explain(name, action);
  if (!failure) return;
  end_progress();
  print(*failure + L'\n');
} catch (...) {  // what has no type of its own, or the telling failed
  end_progress();
}

void run_in_session(std::wstring_view name, const std::function<void(Session&)>& action) {
  if (loaded_plugin == nullptr) return;
  run_guarded(name, [&] {
    ArxHost host;
    ArxStore store;
    Session session{store, host, loaded_plugin->choices, loaded_plugin->palettes};
    action(session);
  });
}

void run_command_handler(std::wstring_view name, CommandHandler handler) {
  run_in_session(name, [handler](Session& session) { run_handler(handler, session); });
}

}  // namespace korvel::arx
