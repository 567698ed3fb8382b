// Cells of a text read as values and compared with those there are.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "frame/od_value.h"

namespace korvel {

enum class CellVerdict {
  Same,        // the cell says the value there is, or leaves it: an empty one that is no text
  Changes,     // it says another value
  Loses,       // it says another value, and more than the value can hold: 12abc for an integer
  Unreadable,  // it says no value of this type
};

class CellReader {
 public:
  [[nodiscard]] CellVerdict compare(std::string_view cell, const ODValueView& present);

  // The value of this type that the cell says, for texts the cell itself; none for an empty cell
  // that is no text and for one that cannot be read. Valid until the next call.
  [[nodiscard]] std::optional<ODValueView> value(std::string_view cell, ODType type);

 private:
  struct Reading {
    ODValueView value;
    bool whole;  // the value holds all that the cell says
  };
  [[nodiscard]] std::optional<Reading> read(std::string_view cell, ODType type);
  [[nodiscard]] std::optional<Reading> read_loosely(std::string_view cell, ODType type);

  std::wstring wide_;
  std::string exact_;
};

}  // namespace korvel
