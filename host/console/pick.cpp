#include "host/console/pick.h"

#include <algorithm>
#include <unordered_set>

#include "frame/case_mapping.h"
#include "host/console/typed_text.h"
#include "host/standalone/spatial_query.h"

namespace korvel {
namespace {

constexpr double pick_box_pixels = 3;
constexpr double picture_pixels = 1000;

double size_of_model_space(const Drawing& drawing) {
  std::optional<Extents> all;
  for (const EntityId id : drawing.entities(Space::Model)) {
    const std::optional<Extents> one = drawing.extents_of(id);
    if (!one) continue;
    if (!all) all = one;
    all->min = {std::min(all->min.x, one->min.x), std::min(all->min.y, one->min.y), 0};
    all->max = {std::max(all->max.x, one->max.x), std::max(all->max.y, one->max.y), 0};
  }
  if (!all) return 0;
  return std::max(all->max.x - all->min.x, all->max.y - all->min.y);
}

}  // namespace

std::optional<EntityId> last_entity(const Drawing& drawing) {
  std::unordered_set<EntityId> unseen;
  for (const Layer& layer : drawing.layers()) {
    if (layer.frozen || layer.off) unseen.insert(layer.id);
  }
  const EntityList entities = drawing.entities(Space::Model);
  const auto newest = std::find_if(entities.rbegin(), entities.rend(), [&](EntityId id) {
    return !unseen.contains(drawing.layer_of(id));
  });
  return newest == entities.rend() ? std::nullopt : std::optional(*newest);
}

std::optional<EntityId> entity_with_handle(const Drawing& drawing, std::wstring_view digits) {
  const std::optional<std::uint64_t> handle = handle_from(digits);
  if (!handle) return std::nullopt;
  const std::optional<EntityId> id = drawing.by_handle(*handle);
  if (!id || !drawing.exists(*id) || drawing.space_of(*id) == Space::Block) return std::nullopt;
  return id;
}

std::wstring no_entity_with(std::wstring_view handle) {
  return L"There is no entity with the handle " + std::wstring(handle) + L".";
}

std::optional<EntityId> entity_at(const Drawing& drawing, Point3 at) {
  const double reach = size_of_model_space(drawing) * pick_box_pixels / picture_pixels;
  return nearest_entity(drawing, at, reach);
}

Pick pick_entity(const Drawing& drawing, std::wstring_view typed) {
  const std::vector<std::wstring_view> words = words_of(typed);
  if (words.size() == 1 &&
      (equal_ignoring_case(words[0], L"LAST") || equal_ignoring_case(words[0], L"L"))) {
    return {true, last_entity(drawing), std::nullopt};
  }
  if (words.size() == 2 && equal_ignoring_case(words[0], L"HANDLE")) {
    const std::optional<EntityId> entity = entity_with_handle(drawing, words[1]);
    if (!entity) return {true, std::nullopt, words[1]};
    return {true, entity, std::nullopt};
  }
  if (const std::optional<Point3> point = point_of(typed)) {
    return {true, entity_at(drawing, *point), std::nullopt};
  }
  return {};
}

std::optional<PickedEntity> ask_picked_entity(ConsoleHost& host, std::wstring_view prompt) {
  while (const std::optional<std::wstring> line = host.ask_line(prompt)) {
    const std::wstring_view typed = trimmed(*line);
    if (typed.empty()) return std::nullopt;
    const Pick pick = pick_entity(host.drawing(), typed);
    if (pick.unknown_handle) {
      host.refuse(no_entity_with(*pick.unknown_handle));
      return std::nullopt;
    }
    if (pick.understood) {
      host.print(pick.entity ? L"1 found\n" : L"0 found\n");
      if (!pick.entity) return std::nullopt;
      return PickedEntity{*pick.entity, point_of(typed)};
    }
    host.refuse(L"Expects a point, LAST or HANDLE with the handle of an entity.");
  }
  return std::nullopt;
}

}  // namespace korvel
