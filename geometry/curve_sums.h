// What adds up along a curve: its length and the area that it sweeps.
#pragma once

#include <vector>

#include "frame/entity_geometry.h"

namespace korvel {

struct CurveSums {
  double length = 0;
  Vector3 twice_area{0, 0, 0};  // along the normal, by the right-hand rule
};

[[nodiscard]] CurveSums operator+(const CurveSums& a, const CurveSums& b);

// Of one straight piece; the area is that of its triangle with the origin, which is best taken on
// the curve itself so that far coordinates cost no digits.
[[nodiscard]] CurveSums chord_sums(Point3 origin, Point3 from, Point3 to);

[[nodiscard]] CurveSums chain_sums(const std::vector<Point3>& points, bool closed);

[[nodiscard]] CurveSums ellipse_sums(const EllipseShape& ellipse);

// Twice the area between the arc and its chord, along the normal, by formula.
[[nodiscard]] Vector3 twice_segment_area(const EllipseShape& ellipse);

// Jumps of the curve and, when it is closed, the gap between its ends count as straight pieces. A
// spline without a curve is the chain of its fit points, or else of its control points.
[[nodiscard]] CurveSums spline_sums(const SplineShape& spline);

}  // namespace korvel
