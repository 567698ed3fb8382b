// A selection while it is being made: in order, each entity once, every step can be taken back.
#pragma once

#include <cstddef>
#include <unordered_set>
#include <utility>
#include <vector>

#include "frame/entity_id.h"

namespace korvel {

class SelectionSet {
 public:
  // How many of the entities were already in it; those do not change their place.
  std::size_t add(const EntityList& entities);
  // How many were in it and are not any more.
  std::size_t remove(const EntityList& entities);
  // Takes back the latest adding or removing; false when there is none.
  bool undo();

  [[nodiscard]] const EntityList& entities() const { return entities_; }

 private:
  struct Step {
    std::size_t added = 0;                                    // at the end
    std::vector<std::pair<std::size_t, EntityId>> removed{};  // with their places, ascending
  };

  EntityList entities_;
  std::unordered_set<EntityId> members_;
  std::vector<Step> steps_;
};

}  // namespace korvel
