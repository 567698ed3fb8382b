// The outlines of a hatch with what curves they have.
#pragma once

#include <cstddef>
#include <span>

#include "frame/entity_geometry.h"

namespace korvel {

// One outline at a time: its vertices and bulges, and the edges that are other curves.
struct HatchLoop {
  const PolylineShape& outline;
  std::span<const CurvedEdge> curves;

  // The curve of a segment; null when it is straight or a bulge. To be asked with rising segments.
  const CurvedEdge* curve_of(std::size_t segment) {
    while (!curves.empty() && curves.front().segment < segment)
      curves = curves.subspan(1);
    return !curves.empty() && curves.front().segment == segment ? &curves.front() : nullptr;
  }
};

// Calls visit(HatchLoop) for each outline that has a vertex, in order.
template <class Visit>
void for_each_loop(const HatchShape& hatch, Visit&& visit) {
  std::span<const CurvedEdge> rest = hatch.curved_edges;
  for (std::size_t i = 0; i < hatch.loops.size(); ++i) {
    std::size_t count = 0;
    while (count < rest.size() && rest[count].loop == i)
      ++count;
    if (!hatch.loops[i].vertices.empty()) visit(HatchLoop{hatch.loops[i], rest.first(count)});
    rest = rest.subspan(count);
  }
}

}  // namespace korvel
