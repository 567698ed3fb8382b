// Short ways to write shapes in tests of curves.
#pragma once

#include <cmath>
#include <numbers>
#include <vector>

#include "frame/entity_geometry.h"

namespace korvel {

inline constexpr double pi = std::numbers::pi;
inline constexpr Vector3 up{0, 0, 1};
inline constexpr Vector3 down{0, 0, -1};

inline double radians(double degrees) { return degrees * pi / 180; }

// An arc in the plan about (1, 2, 3) with radius 10, from one angle counter-clockwise.
inline ArcShape plan_arc(double start_degrees, double sweep_degrees) {
  const double start = radians(start_degrees);
  return {{1, 2, 3}, up, {std::cos(start), std::sin(start), 0}, 10, radians(sweep_degrees)};
}

inline PolylineShape polyline(std::vector<Vertex> vertices, bool closed, Vector3 normal = up) {
  return {PolylineKind::Light, std::move(vertices), normal, closed};
}

// The parabola (t, t (1 - t)) for t from 0 to 1: a quadratic Bezier curve.
inline SplineShape parabola() {
  return {2, false, {0, 0, 0, 1, 1, 1}, {}, {{0, 0, 0}, {0.5, 0.5, 0}, {1, 0, 0}}, {}};
}

}  // namespace korvel
