#include "host/arx/hatch_outlines.h"

#include "geometry/vector.h"
#include "host/arx/ge_values.h"

namespace korvel::arx {
namespace {

// Unconfirmed: the form of all calls in this file.

// In the plane of the hatch. False: the outline is no polyline.
bool read_polyline(const AcDbHatch& hatch, int index, std::vector<Vertex>& vertices) {
  if ((hatch.loopTypeAt(index) & AcDbHatch::kPolyline) == 0) return false;
  Adesk::Int32 type = 0;
  AcGePoint2dArray points;
  AcGeDoubleArray bulges;
  if (hatch.getLoopAt(index, type, points, bulges) != Acad::eOk) return false;
  for (int i = 0; i < points.length(); ++i) {
    const double bulge = i < bulges.length() ? bulges[i] : 0;
    vertices.push_back({{points[i].x, points[i].y, hatch.elevation()}, bulge});
  }
  return true;
}

}  // namespace

std::optional<std::vector<PolylineShape>> outlines_of(const AcDbHatch& hatch) {
  const PlaneFrame frame = plane_frame(vector_of(hatch.normal()));
  std::vector<PolylineShape> outlines;
  for (int i = 0; i < hatch.numLoops(); ++i) {
    PolylineShape outline;
    outline.normal = frame.normal;
    outline.closed = true;
    if (!read_polyline(hatch, i, outline.vertices)) return std::nullopt;
    for (Vertex& vertex : outline.vertices)
      vertex.point = to_world(frame, vertex.point);
    outlines.push_back(std::move(outline));
  }
  return outlines;
}

}  // namespace korvel::arx
