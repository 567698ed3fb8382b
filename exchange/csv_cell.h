// Cells of a text read as values and compared with those there are.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "frame/od_value.h"

namespace korvel {

// What the cell says when it is no text.
[[nodiscard]] std::string_view without_blanks(std::string_view cell);

enum class CellVerdict {
  Same,     // the cell says the value there is, or leaves it: an empty one that is no text
  Changes,  // it says another value
  Refused,  // it does not say exactly one value of the type: 12abc, 7.5 for an integer
};

class CellReader {
 public:
  // The decimal sign of integers and reals; coordinates of points always have a full stop.
  explicit CellReader(char decimal_sign) : decimal_sign_(decimal_sign) {}

  [[nodiscard]] CellVerdict compare(std::string_view cell, const ODValueView& present);

  // The value of this type that the cell says, for texts the cell itself; none for an empty cell
  // that is no text and for one that is refused. Valid until the next call.
  [[nodiscard]] std::optional<ODValueView> value(std::string_view cell, ODType type);

 private:
  [[nodiscard]] std::optional<ODValueView> number(std::string_view cell, ODType type);

  char decimal_sign_;
  std::wstring wide_;
  std::string narrow_;
};

}  // namespace korvel
