#include "frame/tables_in_use.h"

#include <algorithm>

#include "frame/command_frame.h"

namespace korvel {

std::vector<std::wstring> tables_in_use(ODStore& store, DrawingHost& host,
                                        const EntityList& entities) {
  const std::vector<std::wstring> used =
      store.tables_on(entities.empty() ? host.model_space() : entities, host);
  std::vector<std::wstring> names = store.table_names();
  std::erase_if(names, [&used](const std::wstring& name) {
    return !is_user_table(name) || (!used.empty() && !std::ranges::binary_search(used, name));
  });
  return names;
}

std::optional<EntityList> entities_to_set(DrawingHost& host, EntityList entities) {
  if (entities.empty()) entities = pick_first_entities(host);
  if (!entities.empty()) return entities;
  report<Message::SelectObjectsPrompt>(host);
  std::optional<EntityList> asked = asked_entities(host);
  if (asked && asked->empty()) return host.model_space();
  return asked;
}

}  // namespace korvel
