#include "host/arx/editor_reactor.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "host/arx/documents.h"
#include "host/arx/sdk.h"

namespace korvel::arx {
namespace {

using Notification = void (EditorReactor::*)(std::wstring_view name);

// A reactor, and the document in which it was added: the editor tells of the commands of all.
struct Known {
  EditorReactor* reactor;
  AcApDocument* document;
};
std::vector<Known> reactors;  // in the order of adding
int notifications = 0;        // being passed on

bool is_known(EditorReactor* reactor) {
  return std::ranges::find(reactors, reactor, &Known::reactor) != reactors.end();
}

void tell_one(EditorReactor& reactor, Notification notification, std::wstring_view name) {
  try {
    (reactor.*notification)(name);
  } catch (...) {  // the others are told all the same
  }
}

void tell(Notification notification, const ACHAR* name) {
  ++notifications;
  try {
    const AcApDocument* const current = current_document();
    for (const Known& known : std::vector(reactors)) {
      if (known.document != current || !is_known(known.reactor)) continue;
      tell_one(*known.reactor, notification, name == nullptr ? L"" : name);
    }
  } catch (...) {  // no memory for the list
  }
  --notifications;
}

// The one reactor of ours that the host knows. Unconfirmed: the types of the notifications.
class HostReactor final : public AcEditorReactor {
 public:
  void commandEnded(const ACHAR* name) override { tell(&EditorReactor::command_ended, name); }
  void commandCancelled(const ACHAR* name) override {
    tell(&EditorReactor::command_cancelled, name);
  }
  void commandFailed(const ACHAR* name) override { tell(&EditorReactor::command_failed, name); }
};

std::unique_ptr<HostReactor> known_to_host;

// Unconfirmed: the name by which the editor is reached.

void enter_editor(HostReactor& reactor) { acedEditor->addReactor(&reactor); }

void leave_editor(HostReactor& reactor) { acedEditor->removeReactor(&reactor); }

}  // namespace

void add_reactor(EditorReactor& reactor) {
  if (is_known(&reactor)) return;
  reactors.push_back({&reactor, current_document()});
  if (known_to_host) return;
  known_to_host = std::make_unique<HostReactor>();
  enter_editor(*known_to_host);
}

void remove_reactor(EditorReactor& reactor) {
  std::erase_if(reactors, [&reactor](const Known& known) { return known.reactor == &reactor; });
  leave_idle_editor();
}

void leave_idle_editor() {
  if (!known_to_host || !reactors.empty() || notifications > 0) return;
  leave_editor(*known_to_host);
  known_to_host.reset();
}

}  // namespace korvel::arx
