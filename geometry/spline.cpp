// Rational B-splines, evaluated by de Boor's algorithm without allocations.
#include "geometry/spline.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "geometry/vector.h"

namespace korvel {
namespace {

struct Homogeneous {
  double x = 0;
  double y = 0;
  double z = 0;
  double weight = 1;
};

Homogeneous control_point(const SplineShape& spline, std::size_t index) {
  const Point3& p = spline.control_points[index];
  const double w = spline.weights.empty() ? 1 : spline.weights[index];
  return {w * p.x, w * p.y, w * p.z, w};
}

Homogeneous between(const Homogeneous& a, const Homogeneous& b, double share) {
  const double rest = 1 - share;
  return {rest * a.x + share * b.x, rest * a.y + share * b.y, rest * a.z + share * b.z,
          rest * a.weight + share * b.weight};
}

bool is_rising(const std::vector<double>& knots) {
  return std::ranges::all_of(knots, [](double knot) { return std::isfinite(knot); }) &&
         std::ranges::is_sorted(knots);
}

bool is_weight(double weight) { return weight > 0 && std::isfinite(weight); }

}  // namespace

bool has_curve(const SplineShape& spline) {
  if (spline.degree < 1 || spline.degree > max_spline_degree) return false;
  const auto degree = static_cast<std::size_t>(spline.degree);
  const std::size_t points = spline.control_points.size();
  return points > degree && spline.knots.size() == points + degree + 1 && is_rising(spline.knots) &&
         (spline.weights.empty() || spline.weights.size() == points) &&
         std::ranges::all_of(spline.weights, is_weight) && span_from(spline, degree) < points;
}

std::size_t span_from(const SplineShape& spline, std::size_t index) {
  while (index < spline.control_points.size() && spline.knots[index] == spline.knots[index + 1]) {
    ++index;
  }
  return index;
}

// Clamped ends are control points; evaluation with weights would only round them.
Point3 spline_start(const SplineShape& spline) {
  const auto degree = static_cast<std::size_t>(spline.degree);
  if (spline.knots.front() == spline.knots[degree] &&
      spline.knots[degree] != spline.knots[degree + 1]) {
    return spline.control_points.front();
  }
  const std::size_t span = span_from(spline, degree);
  return spline_point(spline, span, spline.knots[span]);
}

Point3 spline_end(const SplineShape& spline) {
  const std::size_t points = spline.control_points.size();
  std::size_t span = points - 1;
  while (spline.knots[span] == spline.knots[span + 1])
    --span;
  if (span == points - 1 && spline.knots[points] == spline.knots.back()) {
    return spline.control_points.back();
  }
  return spline_point(spline, span, spline.knots[span + 1]);
}

Point3 spline_point(const SplineShape& spline, std::size_t span, double parameter) {
  const auto degree = static_cast<std::size_t>(spline.degree);
  std::array<Homogeneous, max_spline_degree + 1> points;
  for (std::size_t i = 0; i <= degree; ++i)
    points[i] = control_point(spline, span - degree + i);

  for (std::size_t level = 1; level <= degree; ++level) {
    for (std::size_t i = degree; i >= level; --i) {
      // The interval holds the whole span, so it is never empty.
      const double low = spline.knots[span - degree + i];
      const double high = spline.knots[span + 1 + i - level];
      points[i] = between(points[i - 1], points[i], (parameter - low) / (high - low));
    }
  }
  const Homogeneous& end = points[degree];
  return {end.x / end.weight, end.y / end.weight, end.z / end.weight};
}

}  // namespace korvel
