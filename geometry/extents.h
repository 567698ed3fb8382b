// Extents of entities.
#pragma once

#include <optional>

#include "frame/entity_geometry.h"

namespace korvel {

// The box of the curve itself, not of its control points: lines, arcs, bulges and ellipses exactly
// but for rounding, splines by a search that comes as close. Text takes the estimated box, a hatch
// its outlines, a multiline its vertices without the offset lines. Thickness goes along the normal
// of the shape; shapes without a normal take the world's z axis.
//
// nullopt for unknown shapes, block references (only the host knows their contents), shapes without
// any point, and coordinates that are not finite.
[[nodiscard]] std::optional<Extents> extents_of(const EntityGeometry& geometry);

// The smallest box that holds both.
[[nodiscard]] Extents united(const Extents& a, const Extents& b);

}  // namespace korvel
