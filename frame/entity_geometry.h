// The shape of one entity, in world coordinates, as the logic and the hosts exchange it.
//
// Angles are radians. Curves in a plane of their own carry its unit normal; points are always world
// points.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "frame/od_value.h"

namespace korvel {

struct Vector3 {
  double x = 0;
  double y = 0;
  double z = 1;
  friend bool operator==(const Vector3&, const Vector3&) = default;
};

// Smallest box with sides along the world axes that holds the entity.
struct Extents {
  Point3 min;
  Point3 max;
  friend bool operator==(const Extents&, const Extents&) = default;
};

// Whether the point lies in the box or on its sides, whatever its z.
[[nodiscard]] inline bool contains_in_plan(const Extents& extents, const Point3& point) {
  return extents.min.x <= point.x && point.x <= extents.max.x && extents.min.y <= point.y &&
         point.y <= extents.max.y;
}

struct PointShape {
  Point3 position;
  Vector3 normal{};  // of the thickness
};

struct LineShape {
  Point3 start;
  Point3 end;
  Vector3 normal{};  // of the thickness
};

// A circle is an arc with `sweep` of exactly 2 pi. `start` points at the arc's beginning seen from
// the centre; the arc runs counter-clockwise about `normal`.
struct ArcShape {
  Point3 center;
  Vector3 normal;
  Vector3 start;  // unit vector
  double radius = 0;
  double sweep = 0;
};

// point(t) = center + cos(t) * major + sin(t) * ratio * (normal x major), t from start to end.
struct EllipseShape {
  Point3 center;
  Vector3 normal;
  Vector3 major;
  double ratio = 1;
  double start = 0;
  double end = 0;
};

// A vertex of a polyline. The bulge, tan(sweep / 4) with positive counter-clockwise about the
// polyline's normal, and the widths belong to the segment that begins at the vertex.
struct Vertex {
  Point3 point;
  double bulge = 0;
  double start_width = 0;
  double end_width = 0;
};

enum class PolylineKind { Light, Old2d, ThreeD };

// A lightweight, old-style 2D or 3D polyline. Frame control points of fitted polylines are left
// out; a 3D polyline has no bulges and no widths.
struct PolylineShape {
  PolylineKind kind = PolylineKind::Light;
  std::vector<Vertex> vertices;
  Vector3 normal;
  bool closed = false;
  bool linetype_runs_on = false;  // across vertices, instead of anew at each
};

struct SplineShape {
  int degree = 3;
  bool closed = false;
  std::vector<double> knots;
  std::vector<double> weights;  // empty: all one
  std::vector<Point3> control_points;
  std::vector<Point3> fit_points;
};

struct MlineShape {
  std::vector<Point3> vertices;
  bool closed = false;
};

// Single-line text and attribute definitions. `position` is the left end of the baseline, whatever
// the justification; `alignment` is the point by which a justified text was placed.
struct TextShape {
  Point3 position;
  Vector3 normal;
  std::wstring text;
  double height = 0;
  double rotation = 0;  // in the plane of `normal`
  double width_factor = 1;
  std::optional<Point3> alignment{};
};

// Paragraph text; `text` keeps its formatting codes. Width and height are those of the laid-out
// text where the drawing holds them, else estimates.
struct MtextShape {
  Point3 position;
  Vector3 normal;
  Vector3 direction;  // unit vector of the text's x axis
  std::wstring text;
  double width = 0;
  double height = 0;
  int attachment = 1;  // 1 top left to 9 bottom right, row by row
};

struct BlockReferenceShape {
  Point3 position;
  Vector3 normal;
  std::wstring block;
  Point3 scale{1, 1, 1};
  double rotation = 0;
  int columns = 1;
  int rows = 1;
  double column_spacing = 0;
  double row_spacing = 0;
};

// A part of an outline that no bulge can be: the curve from the vertex of that index to the next.
struct CurvedEdge {
  std::size_t loop = 0;
  std::size_t segment = 0;
  std::variant<EllipseShape, SplineShape> curve;
};

// A filled shape: closed outlines, holes by the even-odd rule.
struct HatchShape {
  std::vector<PolylineShape> loops;
  std::vector<CurvedEdge> curved_edges{};  // by loop, then by segment, each once
};

// A three- or four-cornered plate (solid, trace, 3D face), corners in running order.
struct FaceShape {
  std::vector<Point3> corners;
};

// monostate: the host knows the entity but not its shape, or the entity is no such thing: a
// dimension, a leader, a mesh.
using Shape = std::variant<std::monostate, PointShape, LineShape, ArcShape, EllipseShape,
                           PolylineShape, SplineShape, MlineShape, TextShape, MtextShape,
                           BlockReferenceShape, HatchShape, FaceShape>;

struct EntityGeometry {
  Shape shape;
  double thickness = 0;  // along the normal
};

}  // namespace korvel
