#include "frame/command_frame.h"

#include <algorithm>
#include <unordered_set>

namespace korvel {

EntityList pick_first_entities(DrawingHost& host) { return host.pick_first(); }

std::optional<EntityList> asked_entities(DrawingHost& host) { return host.ask_selection(); }

EntityList model_space_entities(DrawingHost& host) {
  EntityList entities = host.model_space();
  ReadWalk walk(host, entities.size());
  std::erase_if(entities, [&](EntityId id) {
    walk.step();
    return !host.opens(id, OpenMode::Read);
  });
  return entities;
}

void usable_filter(DrawingHost& host, EntityList& entities) {
  std::unordered_set<EntityId> usable_layers;
  for (const Layer& layer : host.layers()) {
    if (!layer.frozen && !layer.hidden && !layer.locked && !layer.off) {
      usable_layers.insert(layer.id);
    }
  }
  ReadWalk walk(host, entities.size());
  for (std::size_t i = 0; i < entities.size();) {
    walk.step();
    if (host.opens(entities[i], OpenMode::Read) &&
        usable_layers.contains(host.layer_of(entities[i]))) {
      ++i;
    } else {
      entities[i] = entities.back();
      entities.pop_back();
    }
  }
}

void drop_repeated(EntityList& entities) {
  std::unordered_set<EntityId> seen;
  seen.reserve(entities.size());
  std::erase_if(entities, [&seen](EntityId entity) { return !seen.insert(entity).second; });
}

Gathered gather(DrawingHost& host) {
  Gathered gathered{pick_first_entities(host), false};
  if (gathered.entities.empty()) {
    std::optional<EntityList> asked = asked_entities(host);
    if (!asked) return {{}, true};
    gathered.entities = std::move(*asked);
  }
  if (gathered.entities.empty()) gathered.entities = model_space_entities(host);
  usable_filter(host, gathered.entities);
  return gathered;
}

EntityList selected_entities(DrawingHost& host) {
  EntityList selected = pick_first_entities(host);
  if (selected.empty()) selected = asked_entities(host).value_or(EntityList{});
  return selected;
}

void report_unread(DrawingHost& host, const TextFileError& error,
                   const std::filesystem::path& path) {
  using enum TextFileErrorKind;
  const bool unread = error.kind == CannotOpen || error.kind == CannotRead;
  host.print_error(unread ? format_text(L"Error: unable to read '%s'\n", path_text(path))
                          : format_text(L"Error: %s\n", error.message));
  host.report_failed_file({path, FileDirection::Read, error.reason, true});
}

void report_unwritten(DrawingHost& host, FailedFile file) {
  host.print_error(format_text(L"Error: %s\n", sentence_of(file)));
  file.announced = true;
  host.report_failed_file(file);
}

void leave_selected(DrawingHost& host, const EntityList& entities) {
  host.set_pick_first({});
  host.set_pick_first(entities);
}

void leave_found(DrawingHost& host, const EntityList& found) {
  leave_selected(host, found);
  report<Message::Selected>(host, found.size());
}

}  // namespace korvel
