// The lines of a long grid that were looked at last, so that painting asks for each of them once.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <utility>

#include "frame/dialog.h"

namespace korvel::windows {

class ShownLines {
 public:
  // `read` runs an action in which the lines may be asked for.
  ShownLines(const GridLines& lines, std::function<void(const std::function<void()>&)> read)
      : lines_(lines), read_(std::move(read)) {}

  // Valid until the next call.
  const GridLines::Line& line(std::size_t index) {
    fetch(index, index);
    return slot_of(index).line;
  }

  // The lines that will be asked for, the last included: all of them are read in one action, as far
  // as there is room for them.
  void fetch(std::size_t first, std::size_t last) {
    last = std::min(last, first + slots_.size() - 1);
    std::size_t missing = first;
    while (missing <= last && has(missing))
      ++missing;
    if (missing > last) return;
    read_([&] {
      for (; missing <= last; ++missing) {
        if (!has(missing)) slot_of(missing) = {missing, lines_.line(missing)};
      }
    });
  }

  void forget() { slots_ = {}; }

 private:
  struct Slot {
    std::optional<std::size_t> index;
    GridLines::Line line;
  };
  [[nodiscard]] Slot& slot_of(std::size_t index) { return slots_[index % slots_.size()]; }
  [[nodiscard]] bool has(std::size_t index) { return slot_of(index).index == index; }

  const GridLines& lines_;
  std::function<void(const std::function<void()>&)> read_;
  std::array<Slot, 256> slots_;  // more lines than a window shows
};

}  // namespace korvel::windows
