// Turns entities into 2D and 3D polylines.
#pragma once

#include <cstddef>

#include "frame/drawing_host.h"
#include "geometry/path.h"

namespace korvel {

enum class PolylineTarget { Light, ThreeD };

class PolylineConversion {
 public:
  // `precision` is the number of pieces of every arc, ellipse, bulge and spline span that is
  // divided; 0, for 3D polylines only, takes vertices alone.
  PolylineConversion(PolylineTarget target, int precision)
      : target_(target), precision_(precision) {}

  // False, and nothing changed, for what is of the target type already or no curve: lines, arcs,
  // ellipses, splines and polylines are converted.
  //
  // To a lightweight polyline: arcs, circles and old-style polylines stay exact as bulges, widths
  // and thickness stay; ellipses are divided. All of these keep their plane. Lines, 3D polylines
  // and splines are seen in plan view, at the height of their first point, and splines divided; one
  // that is seen as a point is not converted.
  //
  // To a 3D polyline: straight pieces remain, curves are divided. With precision 0 an arc or a
  // bulge becomes the chord of its ends and a spline the points where its spans meet; circles and
  // whole ellipses, which have no ends, are not converted.
  bool convert(EntityGeometry& geometry);

 private:
  bool to_light(EntityGeometry& geometry);
  bool to_3d(EntityGeometry& geometry);
  bool divided(EntityGeometry& geometry, Vector3 normal);
  bool to_plan(EntityGeometry& geometry);
  bool take_path(EntityGeometry& geometry, Vector3 normal);

  PolylineTarget target_;
  int precision_;
  Path path_;
};

// How many of the entities were converted. One that does not open for writing is skipped.
std::size_t convert_to_polylines(DrawingHost& host, const EntityList& entities,
                                 PolylineTarget target, int precision);

}  // namespace korvel
