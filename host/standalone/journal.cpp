#include "host/standalone/journal.h"

namespace korvel {

void Journal::open() { ++depth_; }

void Journal::close() {
  if (depth_ == 0 || --depth_ > 0 || current_.changes.empty()) return;
  current_.number = ++steps_made_;
  current_.name = name_;
  undo_.push_back(std::move(current_));
  current_ = {};
  redo_.clear();
}

void Journal::add(Change change) {
  open();
  current_.changes.push_back(std::move(change));
  close();
}

std::optional<Journal::Step> Journal::take(std::vector<Step>& steps) {
  if (steps.empty()) return std::nullopt;
  Step step = std::move(steps.back());
  steps.pop_back();
  return step;
}

std::optional<Journal::Step> Journal::take_undo() { return take(undo_); }

std::optional<Journal::Step> Journal::take_redo() { return take(redo_); }

}  // namespace korvel
