// Large drawings for measurements, written as text without a drawing in memory.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace korvel::bench {

struct DrawingSize {
  std::uint64_t entities = 100'000;
  std::uint64_t vertices = 8;  // of a polyline; at least 2
  double records = 1.5;        // an entity, on the average
  std::uint64_t seed = 1;
  bool references = false;               // block references in place of the lines
  std::uint64_t further_attributes = 0;  // of a reference
};

// Writes an ASCII R2018 drawing, in pieces and in order. Half of the entities are lightweight
// polylines, a quarter lines, a quarter points, on ten layers. The first record of an entity is of
// the table Roads (LANES Integer, WIDTH Real, NAME Character), every further one of the table
// Surveys (YEAR Integer, NOTE Character). The references are of the block SIGN, which is not
// defined, with the attributes NAME, LANES and WIDTH, and A0, A1 and so on if there are to be
// further ones. The same size gives the same bytes.
void make_drawing(const DrawingSize& size, const std::function<void(std::string_view)>& sink);

// The same, in one piece.
[[nodiscard]] std::string drawing_text(const DrawingSize& size);

}  // namespace korvel::bench
