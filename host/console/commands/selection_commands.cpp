// SELECT, PSELECT, ERASE.
#include <utility>

#include "frame/command_frame.h"
#include "host/console/commands/handlers.h"
#include "host/console/commands/questions.h"

namespace korvel::host_command {

void select(ConsoleHost& host) {
  // A pick-first set given to SELECT becomes the previous selection, as an answer does.
  (void)selected_entities(host);
}

void select_first(ConsoleHost& host) {
  const auto entities = host.ask_selection_with(L"Select objects: ");
  if (!entities) return;
  host.set_pick_first(*entities);
  report<Message::Selected>(host, entities->size());
}

void erase(ConsoleHost& host) {
  const std::optional<EntityList> entities = selected_entities(host);
  if (!entities || entities->empty()) return;
  std::size_t locked = 0;
  std::size_t erased = 0;
  bool stopped = false;
  {
    const DocumentLock lock(host);
    WriteWalk walk(host, entities->size());
    for (const EntityId id : *entities) {
      stopped = !walk.step();
      if (stopped) break;
      if (host.drawing().on_locked_layer(id)) {
        ++locked;
      } else if (host.drawing().erase(id)) {
        ++erased;
      }
    }
  }
  if (locked > 0) {
    host.print(counted(locked, L"was on a locked layer.\n", L"were on a locked layer.\n"));
  }
  host.print(counted(erased, L"erased.\n", L"erased.\n"));
  if (stopped) host.print(cancel_line);
}

}  // namespace korvel::host_command
