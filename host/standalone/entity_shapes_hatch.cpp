// Reads the outlines of hatches, where a code means something else in every kind of path and edge.
#include <algorithm>
#include <cmath>
#include <utility>

#include "geometry/curve_sampler.h"
#include "geometry/elliptic_arc.h"
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

// Puts the edges of one path together, in the plane of the hatch.
class LoopBuilder {
 public:
  void add(const Edge& edge) {
    switch (edge.kind) {
      case EdgeKind::None:
        break;
      case EdgeKind::Line:
        add_line(edge.first, edge.second);
        break;
      case EdgeKind::Arc:
        add_arc(edge);
        break;
      case EdgeKind::Ellipse:
        add_sampled(ellipse_of(edge));
        break;
      case EdgeKind::Spline:
        add_sampled(edge.spline);
        break;
    }
  }

  std::vector<Vertex> finish() {
    if (!vertices_.empty()) join(vertices_.front().point);
    return std::move(vertices_);
  }

 private:
  // Edges should follow each other; a gap is closed by a straight line.
  void join(Point3 start) {
    constexpr double tolerance = 1e-9;
    if (vertices_.empty()) return;
    const double gap = std::hypot(start.x - end_.x, start.y - end_.y);
    if (gap > tolerance * (std::abs(end_.x) + std::abs(end_.y))) vertices_.push_back({end_, 0});
  }

  void add_line(Point3 start, Point3 end) {
    join(start);
    vertices_.push_back({start, 0});
    end_ = end;
  }

  void add_arc(const Edge& edge) {
    // Angles of a clockwise edge are measured clockwise.
    const double sense = edge.counter_clockwise ? 1 : -1;
    double sweep = std::fmod(edge.end - edge.start, 360.0);
    if (sweep <= 0) sweep += 360;
    // A bulge carries no whole turn, and little more than half of one exactly.
    const int pieces = sweep > 180 ? 2 : 1;
    const double bulge = sense * std::tan(sweep * radians_per_degree / (4 * pieces));
    const auto at = [&](int piece) {
      const double angle = sense * (edge.start + sweep * piece / pieces) * radians_per_degree;
      return Point3{edge.first.x + edge.size * std::cos(angle),
                    edge.first.y + edge.size * std::sin(angle), 0};
    };
    join(at(0));
    for (int piece = 0; piece < pieces; ++piece)
      vertices_.push_back({at(piece), bulge});
    end_ = at(sweep == 360 ? 0 : pieces);
  }

  static EllipseShape ellipse_of(const Edge& edge) {
    return {.center = edge.first,
            .normal = {0, 0, edge.counter_clockwise ? 1.0 : -1.0},
            .major = edge.second - Point3{},
            .ratio = edge.size,
            .start = edge.start * radians_per_degree,
            .end = edge.end * radians_per_degree};
  }

  void add_sampled(Shape curve) {
    sample({std::move(curve)}, {}, path_);
    if (path_.points.empty()) return;
    join(path_.points.front());
    for (const Point3& point : path_.points)
      vertices_.push_back({point, 0});
    end_ = path_.points.front();
    if (path_.closed) return;
    end_ = path_.points.back();
    vertices_.pop_back();
  }

  std::vector<Vertex> vertices_;
  Point3 end_;  // of the last edge
  Path path_;
};

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

  std::vector<PolylineShape> finish() {
    end_path();
    return std::move(loops_);
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
    builder_.add(edge_);
    edge_ = {};
  }

  void end_path() {
    if (!in_path_) return;
    end_edge();
    std::vector<Vertex> vertices =
        is_polyline_ ? std::exchange(outline_, {}) : std::exchange(builder_, {}).finish();
    if (!vertices.empty()) {
      loops_.push_back({.vertices = std::move(vertices), .normal = {}, .closed = true});
    }
    in_path_ = false;
  }

  std::vector<PolylineShape> loops_;
  std::vector<Vertex> outline_;  // of a polyline path
  LoopBuilder builder_;          // of a path of edges
  Edge edge_;
  bool in_path_ = false;
  bool is_polyline_ = false;
};

// Group 75, which follows the paths, and those behind it that files may begin with instead.
bool ends_paths(int code) { return code == 75 || code == 76 || code == 78 || code == 98; }

}  // namespace

EntityGeometry read_hatch(EntityRecords& records, const dxf::TextCodec&) {
  Point3 elevation;
  Extrusion extrusion;
  dxf::Group group;
  // The entity may have a preview, whose length has the code of a path; paths follow their number.
  while (records.next(group) && group.code != 91) {
    if (!take_point(group, 10, elevation)) extrusion.take(group);
  }
  PathReader paths;
  while (records.next(group) && !ends_paths(group.code))
    paths.take(group);

  HatchShape hatch{paths.finish()};
  const PlaneToWorld world(extrusion.normal);
  for (PolylineShape& loop : hatch.loops) {
    loop.normal = world.normal();
    for (Vertex& vertex : loop.vertices) {
      vertex.point.z = elevation.z;
      vertex.point = world(vertex.point);
    }
  }
  return {std::move(hatch)};
}

}  // namespace korvel
