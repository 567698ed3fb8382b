// Cuts a piece out of a curve.
#pragma once

#include <vector>

#include "frame/entity_geometry.h"

namespace korvel {

enum class CurveCut {
  Cut,
  NoCurve,           // nothing that can be cut: not one of those that can_be_cut
  CircleAtOnePoint,  // a whole circle or ellipse needs two different points
  NothingCut,        // both points are the same end of an open curve
  NothingLeft        // the points are its two ends
};

struct CutCurve {
  CurveCut result = CurveCut::NoCurve;
  std::vector<Shape> pieces;  // of a Cut: one or two, in the direction of the curve
};

// Lines, arcs, circles, ellipses, and polylines of two vertices or more.
[[nodiscard]] bool can_be_cut(const Shape& shape);

// Removes what lies between the points of the curve that are nearest to `first` and `second`.
//
// An open curve keeps what is before the
// one point and behind the other, whichever is given first; a point beyond an end stands for that
// end. At one point it falls into two. A closed curve becomes an open one: it loses the part that
// leads from `first` to `second`, counter-clockwise about its normal, or in the direction of the
// polyline, which at one point opens there. Arcs of polylines keep their curve, the widths at a cut
// are those of the place. The pieces are of the same kind as the curve; a circle leaves an arc.
[[nodiscard]] CutCurve cut_curve(const Shape& shape, Point3 first, Point3 second);

// The place of the curve, or of the plane it lies in, that is seen at the point in plan view. The
// point itself where nothing tells, as for vertical planes and lines.
[[nodiscard]] Point3 seen_in_plan(const Shape& shape, Point3 point);

}  // namespace korvel
