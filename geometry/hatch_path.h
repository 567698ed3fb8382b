// Puts one outline of a hatch together from its edges.
#pragma once

#include <vector>

#include "frame/entity_geometry.h"

namespace korvel {

// Edges in the plane of the hatch, z being 0, given in order; each should begin where the last one
// ended. A gap is closed by a straight line.
class HatchPath {
 public:
  void add_line(Point3 start, Point3 end);
  void add_arc(const ArcShape& arc);
  void add_ellipse(const EllipseShape& ellipse);
  // One without a curve is the chain of its fit points, or else of its control points.
  void add_spline(const SplineShape& spline);

  // Adds the outline, closed and in the plane, to the hatch, if there is any. The path is to be
  // used no more.
  void finish(HatchShape& hatch);

 private:
  void join(Point3 start);
  void add_curve(Point3 start, Point3 end, decltype(CurvedEdge::curve) curve);

  std::vector<Vertex> vertices_;
  std::vector<CurvedEdge> curves_;
  Point3 end_;  // of the last edge
};

// Takes a hatch with z 0 as given in the plane of the normal, about an origin in the coordinates of
// that plane, and gives it its place in the world.
void place_in_plane(HatchShape& hatch, Vector3 normal, Point3 origin);

}  // namespace korvel
