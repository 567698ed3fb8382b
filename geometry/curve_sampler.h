// Points along the curve of an entity.
#pragma once

#include <numbers>

#include "frame/entity_geometry.h"
#include "geometry/path.h"

namespace korvel {

// How finely curves are divided. The default serves hit tests: the chords of a circle stay within
// 0.0003 of its radius.
struct SamplingRule {
  // Above 0: number of pieces of every arc, circle, ellipse, bulge and spline span.
  int pieces_per_curve = 0;
  // Otherwise: the most that one piece may turn, radians above 0. A spline span is divided by the
  // turn of its control polygon.
  double max_angle = std::numbers::pi / 64;
};

// Replaces `out` by the curve of the entity in world coordinates, `out` keeping its capacity.
//
// The first and the last point of a curve are exact, as are the vertices of polylines; no two
// neighbouring points are equal. A circle has three pieces at least. Text gives the outline of its
// box, a hatch all its outlines. A spline whose knots or weights are senseless gives its fit
// points, or else its control points, joined straight; so do the fit points of one that has nothing
// else. Where a knot repeats so often that the curve jumps, a straight piece bridges the jump.
// Thickness is ignored. The path is empty when the entity has no curve (an unknown shape, a
// block reference, no vertices) or a coordinate is not finite. Whatever the rule, curves add no
// more than a million points to the vertices.
void sample(const EntityGeometry& geometry, const SamplingRule& rule, Path& out);

}  // namespace korvel
