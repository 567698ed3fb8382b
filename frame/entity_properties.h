// How an entity looks, apart from its shape.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace korvel {

struct EntityProperties {
  std::wstring layer = L"0";
  std::wstring linetype = L"ByLayer";
  int color = 256;  // index; 0 by block, 256 by layer
  // 0x00RRGGBB; a host may then choose the index itself.
  std::optional<std::int32_t> true_color = std::nullopt;
  double linetype_scale = 1;
  int lineweight = -1;  // hundredths of a millimetre; -1 by layer, -2 by block, -3 default
  // Part of the colour: its name in a colour book as BOOK$COLOUR; empty: it is of none.
  std::wstring book_color = {};

  friend bool operator==(const EntityProperties&, const EntityProperties&) = default;
};

}  // namespace korvel
