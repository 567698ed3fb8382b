// Arithmetic on points and vectors, and the frames of planes.
#pragma once

#include <cmath>

#include "frame/entity_geometry.h"

namespace korvel {

[[nodiscard]] inline Vector3 operator+(Vector3 a, Vector3 b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
[[nodiscard]] inline Vector3 operator-(Vector3 a, Vector3 b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}
[[nodiscard]] inline Vector3 operator-(Vector3 v) { return {-v.x, -v.y, -v.z}; }
[[nodiscard]] inline Vector3 operator*(double factor, Vector3 v) {
  return {factor * v.x, factor * v.y, factor * v.z};
}
[[nodiscard]] inline Point3 operator+(Point3 p, Vector3 v) {
  return {p.x + v.x, p.y + v.y, p.z + v.z};
}
[[nodiscard]] inline Vector3 operator-(Point3 to, Point3 from) {
  return {to.x - from.x, to.y - from.y, to.z - from.z};
}

[[nodiscard]] inline double dot(Vector3 a, Vector3 b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
[[nodiscard]] inline Vector3 cross(Vector3 a, Vector3 b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
[[nodiscard]] inline double length(Vector3 v) { return std::hypot(v.x, v.y, v.z); }

[[nodiscard]] inline bool is_finite(Point3 p) {
  return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

// The unit vector of the same direction; the world's z axis for a vector without a direction (zero
// or not finite), so that a broken normal means the plan view.
[[nodiscard]] inline Vector3 normalise(Vector3 v) {
  const double size = length(v);
  if (!(size > 0) || !std::isfinite(size)) return {0, 0, 1};
  return {v.x / size, v.y / size, v.z / size};
}

// Three unit vectors at right angles, right-handed, about the world's origin.
struct PlaneFrame {
  Vector3 x;
  Vector3 y;
  Vector3 normal;
};

// The frame that belongs to a normal of any length by the arbitrary axis rule.
[[nodiscard]] inline PlaneFrame plane_frame(Vector3 normal) {
  constexpr double near_z_axis = 1.0 / 64;
  const Vector3 unit = normalise(normal);
  const bool along_z = std::abs(unit.x) < near_z_axis && std::abs(unit.y) < near_z_axis;
  const Vector3 x = normalise(cross(along_z ? Vector3{0, 1, 0} : Vector3{0, 0, 1}, unit));
  return {x, normalise(cross(unit, x)), unit};
}

// The same frame turned so that its x axis lies along `direction`, as far as the plane allows; the
// arbitrary axis remains where `direction` is zero or along the normal.
[[nodiscard]] inline PlaneFrame plane_frame(Vector3 normal, Vector3 direction) {
  const Vector3 unit = normalise(normal);
  const Vector3 y = cross(unit, direction);
  if (y == Vector3{0, 0, 0}) return plane_frame(normal);
  const Vector3 unit_y = normalise(y);
  return {cross(unit_y, unit), unit_y, unit};
}

[[nodiscard]] inline Point3 to_world(const PlaneFrame& frame, Point3 ocs) {
  return Point3{} + ocs.x * frame.x + ocs.y * frame.y + ocs.z * frame.normal;
}

[[nodiscard]] inline Point3 from_world(const PlaneFrame& frame, Point3 world) {
  const Vector3 v = world - Point3{};
  return {dot(v, frame.x), dot(v, frame.y), dot(v, frame.normal)};
}

}  // namespace korvel
