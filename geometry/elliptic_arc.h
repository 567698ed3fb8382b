// The common form of circles, arcs and ellipses.
#pragma once

#include <numbers>

#include "frame/entity_geometry.h"

namespace korvel {

inline constexpr double whole_turn = 2 * std::numbers::pi;

// point(t) = center + cos(t) * cosine_axis + sin(t) * sine_axis, t from start to start + sweep,
// radians; the sweep is within one turn either way.
struct EllipticArc {
  Point3 center;
  Vector3 cosine_axis;
  Vector3 sine_axis;
  double start = 0;
  double sweep = 0;
};

[[nodiscard]] EllipticArc elliptic_arc(const ArcShape& arc);

// An end parameter at or below the start stands for the same place one turn further.
[[nodiscard]] EllipticArc elliptic_arc(const EllipseShape& ellipse);

[[nodiscard]] Point3 point_at(const EllipticArc& arc, double parameter);

// True for a full turn, also when file formats rounded its ends.
[[nodiscard]] bool is_whole_turn(double sweep);

// True if the arc passes `parameter`, given modulo the turn, strictly between its ends.
[[nodiscard]] bool passes(const EllipticArc& arc, double parameter);

}  // namespace korvel
