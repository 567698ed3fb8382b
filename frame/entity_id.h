// The identifier by which everything outside a host names an object of the drawing.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <vector>

namespace korvel {

// Names an entity or a layer of the active drawing. The value is the host's own and means nothing
// outside it; identifiers of one kind order as the host orders its objects. It stays valid while
// the drawing is open, also across erasing and undoing. Zero is the null identifier.
struct EntityId {
  std::uint64_t value = 0;

  [[nodiscard]] bool is_null() const { return value == 0; }
  friend auto operator<=>(const EntityId&, const EntityId&) = default;  // NOLINT
};

using EntityList = std::vector<EntityId>;

}  // namespace korvel

template <>
struct std::hash<korvel::EntityId> {
  std::size_t operator()(korvel::EntityId id) const noexcept {
    return std::hash<std::uint64_t>{}(id.value);
  }
};
