// Shapes of entities as the objects of a MIF file.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "frame/entity_geometry.h"
#include "geometry/path.h"

namespace korvel {

// Seen in plan view: points, block references and texts (at their insertion points) are points;
// lines lines; what encloses an area (circles, whole ellipses, closed polylines, hatches, faces) is
// a region; other curves are polylines, arcs and splines in fine straight pieces. What has no curve
// or a coordinate that is not finite is no object.
class MifObjects {
 public:
  void append(const std::optional<EntityGeometry>& geometry, std::string& out);

  // Holds every object appended so far, with some room; none when there was none.
  [[nodiscard]] std::optional<Extents> bounds() const;

  // Vertices of the largest polyline or outline.
  [[nodiscard]] std::size_t most_vertices() const { return most_vertices_; }

 private:
  void append_point(const Point3& point, std::string& out);
  void append_curve(const EntityGeometry& geometry, std::string& out);
  void append_polyline(std::string& out);
  void append_region(std::string& out);
  void append_vertices(std::size_t first, std::size_t end, bool closing, std::string& out);
  void append_coordinates(const Point3& point, std::string& out);

  Path path_;
  std::optional<Extents> extents_;
  std::size_t most_vertices_ = 0;
};

}  // namespace korvel
