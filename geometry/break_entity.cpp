// Breaks an entity so that the new pieces carry what it carries.
#include "geometry/break_entity.h"

#include <unordered_set>
#include <utility>

#include "frame/case_mapping.h"
#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"

namespace korvel {

namespace detail {

void command::watch(std::wstring_view name, Callback callback) {
  name_ = lower(name);
  callback_ = std::move(callback);
  snapshot_ = host_.model_space();
  if (!std::exchange(active_, true)) host_.add_reactor(*this);
}

bool command::is_watched(std::wstring_view name) const { return active_ && lower(name) == name_; }

void command::stop() {
  if (std::exchange(active_, false)) host_.remove_reactor(*this);
}

void command::command_ended(std::wstring_view name) {
  if (!is_watched(name)) return;
  stop();
  callback_(snapshot_);
}

void command::command_cancelled(std::wstring_view name) {
  if (is_watched(name)) stop();
}

void command::command_failed(std::wstring_view name) {
  if (is_watched(name)) stop();
}

}  // namespace detail

void store_on_new_entities(DrawingHost& host, const EntityList& snapshot,
                           const std::vector<ExtensionEntry>& entries) {
  const std::unordered_set<EntityId> known(snapshot.begin(), snapshot.end());
  for (const EntityId entity : host.model_space()) {
    if (known.contains(entity)) continue;
    for (const ExtensionEntry& entry : entries)
      host.store_extension_entry(entity, entry);
  }
}

void break_carrying_data(DrawingHost& host, EntityId entity, std::vector<ExtensionEntry>& saved) {
  saved = host.extension_entries(entity);
  detail::command watcher(host);
  // The break and what the pieces are given are one step of UNDO.
  const DocumentLock lock(host);
  watcher.watch(L"break", [&](const EntityList& snapshot) {
    store_on_new_entities(host, snapshot, std::exchange(saved, {}));
  });
  (void)host.run_command(L"_.break", entity);
}

void break_entity(Session& session) {
  DrawingHost& host = session.host;
  const EntityList chosen = pick_first_entities(host);
  const std::optional<EntityId> entity = chosen.size() == 1
                                             ? std::optional(chosen.front())
                                             : host.ask_entity(text(Message::SelectObjectPrompt));
  if (entity) break_carrying_data(host, *entity, session.choices.entries_of_broken);
}

}  // namespace korvel
