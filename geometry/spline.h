// Rational B-splines, evaluated by de Boor's algorithm without allocations.
#pragma once

#include <cstddef>

#include "frame/entity_geometry.h"

namespace korvel {

inline constexpr int max_spline_degree = 25;

// True if the spline defines a curve: a degree from 1 to max_spline_degree, more control points
// than that, knots in matching number that are finite and never decrease, and either no weights or
// a positive one for each control point.
[[nodiscard]] bool has_curve(const SplineShape& spline);

// The curve consists of spans, one for each pair of different neighbours among knots[degree] to
// knots[control points]. A span is named by the index of the knot it begins at and leads to the
// next knot; its control points are the `degree` before that index and the one at it.
//
// The first span at or after `index`, at least degree; the number of control points if there is
// none.
[[nodiscard]] std::size_t span_from(const SplineShape& spline, std::size_t index);

// The ends of the curve, exact where they are control points. The spline must have a curve.
[[nodiscard]] Point3 spline_start(const SplineShape& spline);
[[nodiscard]] Point3 spline_end(const SplineShape& spline);

// A point of `span`, `parameter` lying between its two knots. The spline must have a curve.
[[nodiscard]] Point3 spline_point(const SplineShape& spline, std::size_t span, double parameter);

}  // namespace korvel
