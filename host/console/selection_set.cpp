#include "host/console/selection_set.h"

namespace korvel {

std::size_t SelectionSet::add(const EntityList& entities) {
  Step step;
  for (const EntityId id : entities) {
    if (!members_.insert(id).second) continue;
    entities_.push_back(id);
    ++step.added;
  }
  const std::size_t duplicates = entities.size() - step.added;
  steps_.push_back(std::move(step));
  return duplicates;
}

std::size_t SelectionSet::remove(const EntityList& entities) {
  const std::unordered_set<EntityId> unwanted(entities.begin(), entities.end());
  Step step;
  EntityList left;
  for (std::size_t place = 0; place < entities_.size(); ++place) {
    const EntityId id = entities_[place];
    if (unwanted.contains(id)) {
      step.removed.emplace_back(place, id);
      members_.erase(id);
    } else {
      left.push_back(id);
    }
  }
  entities_ = std::move(left);
  steps_.push_back(std::move(step));
  return steps_.back().removed.size();
}

bool SelectionSet::undo() {
  if (steps_.empty()) return false;
  const Step step = std::move(steps_.back());
  steps_.pop_back();
  for (std::size_t i = 0; i < step.added; ++i) {
    members_.erase(entities_.back());
    entities_.pop_back();
  }
  if (step.removed.empty()) return true;

  EntityList merged;
  merged.reserve(entities_.size() + step.removed.size());
  auto left = entities_.begin();
  for (const auto& [place, id] : step.removed) {
    while (merged.size() < place)
      merged.push_back(*left++);
    merged.push_back(id);
    members_.insert(id);
  }
  merged.insert(merged.end(), left, entities_.end());
  entities_ = std::move(merged);
  return true;
}

}  // namespace korvel
