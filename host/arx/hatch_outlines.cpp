#include "host/arx/hatch_outlines.h"

#include <cmath>
#include <utility>

#include "geometry/hatch_path.h"
#include "geometry/vector.h"
#include "host/arx/ge_values.h"

namespace korvel::arx {
namespace {

// Unconfirmed: the form of all calls in this file, and that the edges remain the hatch's.

Point3 point_of(const AcGePoint2d& point) { return {point.x, point.y, 0}; }

Vector3 normal_of(bool clockwise) { return {0, 0, clockwise ? -1.0 : 1.0}; }

void add_to(HatchPath& path, const AcGeLineSeg2d& line) {
  path.add_line(point_of(line.startPoint()), point_of(line.endPoint()));
}

void add_to(HatchPath& path, const AcGeCircArc2d& arc) {
  const Point3 center = point_of(arc.center());
  path.add_arc({center, normal_of(arc.isClockWise()),
                normalise(point_of(arc.startPoint()) - center), arc.radius(),
                std::abs(arc.endAng() - arc.startAng())});
}

void add_to(HatchPath& path, const AcGeEllipArc2d& ellipse) {
  const AcGeVector2d axis = ellipse.majorAxis();
  path.add_ellipse({point_of(ellipse.center()), normal_of(ellipse.isClockWise()),
                    ellipse.majorRadius() * Vector3{axis.x, axis.y, 0},
                    ellipse.minorRadius() / ellipse.majorRadius(), ellipse.startAng(),
                    ellipse.endAng()});
}

void add_to(HatchPath& path, const AcGeNurbCurve2d& curve) {
  SplineShape spline;
  spline.degree = curve.degree();
  for (int i = 0; i < curve.numKnots(); ++i)
    spline.knots.push_back(curve.knotAt(i));
  for (int i = 0; i < curve.numWeights(); ++i)
    spline.weights.push_back(curve.weightAt(i));
  for (int i = 0; i < curve.numControlPoints(); ++i)
    spline.control_points.push_back(point_of(curve.controlPointAt(i)));
  path.add_spline(spline);
}

// False: an edge of an unknown kind.
bool add_edge(HatchPath& path, const void* edge, int type) {
  switch (type) {
    case AcDbHatch::kLine:
      add_to(path, *static_cast<const AcGeLineSeg2d*>(edge));
      return true;
    case AcDbHatch::kCirArc:
      add_to(path, *static_cast<const AcGeCircArc2d*>(edge));
      return true;
    case AcDbHatch::kEllArc:
      add_to(path, *static_cast<const AcGeEllipArc2d*>(edge));
      return true;
    case AcDbHatch::kSpline:
      add_to(path, *static_cast<const AcGeNurbCurve2d*>(edge));
      return true;
    default:
      return false;
  }
}

bool read_edges(const AcDbHatch& hatch, int index, HatchShape& shape) {
  Adesk::Int32 type = 0;
  AcGeVoidPointerArray edges;
  AcGeIntArray types;
  if (hatch.getLoopAt(index, type, edges, types) != Acad::eOk) return false;
  HatchPath path;
  for (int i = 0; i < edges.length(); ++i) {
    if (!add_edge(path, edges[i], types[i])) return false;
  }
  path.finish(shape);
  return true;
}

bool read_polyline(const AcDbHatch& hatch, int index, HatchShape& shape) {
  Adesk::Int32 type = 0;
  AcGePoint2dArray points;
  AcGeDoubleArray bulges;
  if (hatch.getLoopAt(index, type, points, bulges) != Acad::eOk) return false;
  PolylineShape outline;
  outline.closed = true;
  for (int i = 0; i < points.length(); ++i)
    outline.vertices.push_back({point_of(points[i]), i < bulges.length() ? bulges[i] : 0});
  shape.loops.push_back(std::move(outline));
  return true;
}

}  // namespace

std::optional<HatchShape> outlines_of(const AcDbHatch& hatch) {
  HatchShape shape;
  for (int i = 0; i < hatch.numLoops(); ++i) {
    const bool is_polyline = (hatch.loopTypeAt(i) & AcDbHatch::kPolyline) != 0;
    if (!(is_polyline ? read_polyline(hatch, i, shape) : read_edges(hatch, i, shape))) {
      return std::nullopt;
    }
  }
  place_in_plane(shape, vector_of(hatch.normal()), {0, 0, hatch.elevation()});
  return shape;
}

}  // namespace korvel::arx
