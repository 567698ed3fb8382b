// Single entities by what a person types.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/console/console.h"

namespace korvel {

// The newest entity of model space that is neither on a frozen layer nor on one that is off.
[[nodiscard]] std::optional<EntityId> last_entity(const Drawing& drawing);

// The entity of model or paper space with this handle.
[[nodiscard]] std::optional<EntityId> entity_with_handle(const Drawing& drawing,
                                                         std::wstring_view digits);

// "There is no entity with the handle ZZZ."
[[nodiscard]] std::wstring no_entity_with(std::wstring_view handle);

// The entity nearest to the point within the pick box. There is no screen: the box reaches three
// pixels in a picture of the whole model space that is 1,000 pixels wide or high.
[[nodiscard]] std::optional<EntityId> entity_at(const Drawing& drawing, Point3 at);

struct Pick {
  bool understood = false;
  std::optional<EntityId> entity;                   // none: it hit nothing
  std::optional<std::wstring_view> unknown_handle;  // as typed: no handle, or nothing has it
};
// LAST, HANDLE with a handle, or a point.
[[nodiscard]] Pick pick_entity(const Drawing& drawing, std::wstring_view typed);

struct PickedEntity {
  EntityId entity;
  std::optional<Point3> at;  // where it was picked; none: it was named
};
// Asks until the answer is one of those; none for Esc, Enter, or a pick that hit nothing.
[[nodiscard]] std::optional<PickedEntity> ask_picked_entity(ConsoleHost& host,
                                                            std::wstring_view prompt);

}  // namespace korvel
