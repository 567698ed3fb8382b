// Extents of entities, kept from when they were first asked for until the entity changes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "frame/entity_geometry.h"

namespace korvel {

// Reading an entity's groups anew takes a hundred times longer than looking here. Entities are
// known by the drawing's index.
class ExtentsCache {
 public:
  // What `work_out` gives, asked once. `count` is how many entities there are.
  template <class WorkOut>
  [[nodiscard]] std::optional<Extents> of(std::uint32_t entity, std::size_t count,
                                          WorkOut&& work_out) {
    if (entity >= states_.size()) {
      states_.resize(count);
      boxes_.resize(count);
    }
    State& state = states_[entity];
    if (state == State::Unknown) {
      const std::optional<Extents> extents = work_out();
      state = extents ? State::Known : State::None;
      boxes_[entity] = extents.value_or(Extents{});
    }
    return state == State::Known ? std::optional(boxes_[entity]) : std::nullopt;
  }

  void forget(std::uint32_t entity) {
    if (entity < states_.size()) states_[entity] = State::Unknown;
  }
  void forget_all() { states_.clear(); }

 private:
  enum class State : std::uint8_t { Unknown, None, Known };

  std::vector<State> states_;
  std::vector<Extents> boxes_;
};

}  // namespace korvel
