// Reads the outlines of hatches and polygons, where a code means something else in every kind of
// path and edge.
#include <algorithm>
#include <cmath>
#include <utility>

#include "geometry/hatch_path.h"
#include "host/standalone/entity_shapes.h"

namespace korvel {
namespace {

enum class EdgeKind { None, Line, Arc, Ellipse, Spline };

struct Edge {
  EdgeKind kind = EdgeKind::None;
  Point3 first;      // start of a line, centre of a curve
  Point3 second;     // end of a line, end of the major axis from the centre
  double size = 0;   // radius, ratio of the axes
  double start = 0;  // degrees
  double end = 360;
  bool counter_clockwise = true;
  SplineShape spline;
};

EdgeKind edge_kind(std::int64_t number) {
  return number >= 1 && number <= 4 ? static_cast<EdgeKind>(number) : EdgeKind::None;
}

ArcShape arc_of(const Edge& edge) {
  // Angles of a clockwise edge are measured clockwise.
  const double sense = edge.counter_clockwise ? 1 : -1;
  const double start = sense * edge.start * radians_per_degree;
  const double sweep = std::fmod(edge.end - edge.start, 360.0);
  return {.center = edge.first,
          .normal = {0, 0, sense},
          .start = {std::cos(start), std::sin(start), 0},
          .radius = edge.size,
          .sweep = (sweep > 0 ? sweep : sweep + 360) * radians_per_degree};
}

EllipseShape ellipse_of(const Edge& edge) {
  return {.center = edge.first,
          .normal = {0, 0, edge.counter_clockwise ? 1.0 : -1.0},
          .major = edge.second - Point3{},
          .ratio = edge.size,
          .start = edge.start * radians_per_degree,
          .end = edge.end * radians_per_degree};
}

void add_to(HatchPath& path, const Edge& edge) {
  switch (edge.kind) {
    case EdgeKind::None:
      break;
    case EdgeKind::Line:
      path.add_line(edge.first, edge.second);
      break;
    case EdgeKind::Arc:
      path.add_arc(arc_of(edge));
      break;
    case EdgeKind::Ellipse:
      path.add_ellipse(ellipse_of(edge));
      break;
    case EdgeKind::Spline:
      path.add_spline(edge.spline);
      break;
  }
}

// Follows the groups from the first path on.
class PathReader {
 public:
  void take(const dxf::Group& group) {
    if (group.code == 92) {
      end_path();
      in_path_ = true;
      is_polyline_ = (group.integer() & polyline_bit) != 0;
    } else if (in_path_ && is_polyline_) {
      take_in_polyline(group);
    } else if (in_path_) {
      take_in_edge(group);
    }
  }

  HatchShape finish() {
    end_path();
    return std::move(hatch_);
  }

 private:
  static constexpr std::int64_t polyline_bit = 2;

  void take_in_polyline(const dxf::Group& group) {
    if (group.code == 10) outline_.push_back({{group.real(), 0, 0}, 0});
    if (outline_.empty()) return;
    if (group.code == 20) outline_.back().point.y = group.real();
    if (group.code == 42) outline_.back().bulge = group.real();
  }

  void take_in_edge(const dxf::Group& group) {
    if (group.code == 72) {
      end_edge();
      edge_.kind = edge_kind(group.integer());
    } else if (edge_.kind == EdgeKind::Spline) {
      take_in_spline(group);
    } else {
      take_in_arc_or_line(group);
    }
  }

  void take_in_arc_or_line(const dxf::Group& group) {
    switch (group.code) {
      case 40:
        edge_.size = group.real();
        break;
      case 50:
        edge_.start = group.real();
        break;
      case 51:
        edge_.end = group.real();
        break;
      case 73:
        edge_.counter_clockwise = group.integer() != 0;
        break;
      default:
        if (!take_point(group, 10, edge_.first)) take_point(group, 11, edge_.second);
    }
  }

  void take_in_spline(const dxf::Group& group) {
    SplineShape& spline = edge_.spline;
    switch (group.code) {
      case 40:
        spline.knots.push_back(group.real());
        break;
      case 42:
        spline.weights.push_back(group.real());
        break;
      case 94:
        spline.degree = static_cast<int>(std::clamp<std::int64_t>(group.integer(), 0, 100));
        break;
      default:
        if (!take_point(group, 10, spline.control_points)) {
          take_point(group, 11, spline.fit_points);
        }
    }
  }

  void end_edge() {
    add_to(path_, edge_);
    edge_ = {};
  }

  void end_path() {
    if (!in_path_) return;
    end_edge();
    std::exchange(path_, {}).finish(hatch_);
    if (!outline_.empty()) {
      hatch_.loops.push_back(
          {.vertices = std::exchange(outline_, {}), .normal = {}, .closed = true});
    }
    in_path_ = false;
  }

  HatchShape hatch_;
  std::vector<Vertex> outline_;  // of a polyline path
  HatchPath path_;               // of a path of edges
  Edge edge_;
  bool in_path_ = false;
  bool is_polyline_ = false;
};

// Group 75, which follows the paths, and those behind it that files may begin with instead.
bool ends_paths(int code) { return code == 75 || code == 76 || code == 78 || code == 98; }

// What hatches and polygons begin with alike, and their paths in the plan.
struct HatchGroups {
  Point3 elevation;
  Extrusion extrusion;
  HatchShape in_plan;
};

HatchGroups read_paths(EntityRecords& records) {
  HatchGroups read;
  dxf::Group group;
  // The entity may have a preview, whose length has the code of a path; paths follow their number.
  while (records.next(group) && group.code != 91) {
    if (!take_point(group, 10, read.elevation)) read.extrusion.take(group);
  }
  PathReader paths;
  while (records.next(group) && !ends_paths(group.code))
    paths.take(group);
  read.in_plan = paths.finish();
  return read;
}

// Of the origin, x and y are those of the vertices, z that of the hatch.
EntityGeometry in_world(HatchGroups read, Point3 origin) {
  origin.z = read.elevation.z;
  place_in_plane(read.in_plan, read.extrusion.normal, origin);
  return {std::move(read.in_plan)};
}

}  // namespace

EntityGeometry read_hatch(EntityRecords& records, const dxf::TextCodec&) {
  return in_world(read_paths(records), {});
}

// Its paths are closed polylines, whatever they say of themselves, about an offset behind them.
EntityGeometry read_mpolygon(EntityRecords& records, const dxf::TextCodec&) {
  HatchGroups read = read_paths(records);
  Point3 offset;
  dxf::Group group;
  constexpr int degenerate_paths = 99;  // what follows may have points of the same code
  while (records.next(group) && group.code != degenerate_paths)
    take_point(group, 11, offset);
  return in_world(std::move(read), offset);
}

}  // namespace korvel
