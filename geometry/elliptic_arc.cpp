// The common form of circles, arcs and ellipses.
#include "geometry/elliptic_arc.h"

#include <algorithm>
#include <cmath>

#include "geometry/vector.h"

namespace korvel {
namespace {

// A point this close to an end, in radians, differs from it by less than a double can tell when it
// is an extreme of the curve, where the curve is flat.
constexpr double angle_tolerance = 1e-9;

double ellipse_sweep(double start, double end) {
  const double sweep = end - start;
  if (is_whole_turn(sweep)) return whole_turn;
  return sweep > 0 ? sweep : sweep + whole_turn;
}

}  // namespace

EllipticArc elliptic_arc(const ArcShape& arc) {
  const Vector3 normal = normalise(arc.normal);
  Vector3 start = arc.start;
  Vector3 quarter = cross(normal, start);
  if (quarter == Vector3{0, 0, 0}) {
    const PlaneFrame frame = plane_frame(normal);
    start = frame.x;
    quarter = frame.y;
  }
  const double sweep = is_whole_turn(arc.sweep) ? whole_turn : arc.sweep;
  return {arc.center, arc.radius * start, arc.radius * quarter, 0, sweep};
}

EllipticArc elliptic_arc(const EllipseShape& ellipse) {
  const Vector3 minor = ellipse.ratio * cross(normalise(ellipse.normal), ellipse.major);
  return {ellipse.center, ellipse.major, minor, ellipse.start,
          ellipse_sweep(ellipse.start, ellipse.end)};
}

Point3 point_at(const EllipticArc& arc, double parameter) {
  return arc.center + std::cos(parameter) * arc.cosine_axis + std::sin(parameter) * arc.sine_axis;
}

bool is_whole_turn(double sweep) { return std::abs(sweep) > whole_turn - angle_tolerance; }

bool passes(const EllipticArc& arc, double parameter) {
  if (is_whole_turn(arc.sweep)) return true;
  const double first = std::min(arc.start, arc.start + arc.sweep);
  double turned = std::fmod(parameter - first, whole_turn);
  if (turned < 0) turned += whole_turn;
  return turned > angle_tolerance && turned < std::abs(arc.sweep) - angle_tolerance;
}

}  // namespace korvel
