// Writing of MIF objects.
#include "exchange/mif_geometry.h"

#include <algorithm>
#include <numbers>
#include <string_view>
#include <variant>

#include "exchange/exact_text.h"
#include "frame/od_value.h"
#include "geometry/curve_sampler.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

constexpr std::string_view line_end = "\r\n";
// Chords stay within 0.0001 of the radius.
constexpr SamplingRule fine{.max_angle = std::numbers::pi / 128};

// Where an entity that is drawn as a point stands; null for one that is drawn as a curve.
const Point3* place_of(const Shape& shape) {
  if (const auto* const point = std::get_if<PointShape>(&shape)) return &point->position;
  if (const auto* const block = std::get_if<BlockReferenceShape>(&shape)) return &block->position;
  if (const auto* const text = std::get_if<TextShape>(&shape)) return &text->position;
  if (const auto* const mtext = std::get_if<MtextShape>(&shape)) return &mtext->position;
  return nullptr;
}

// Closed splines and multilines are lines all the same.
bool encloses_area(const Shape& shape) {
  return !std::holds_alternative<SplineShape>(shape) && !std::holds_alternative<MlineShape>(shape);
}

void append_count(std::size_t count, std::string& out) {
  out += std::to_string(count);
  out += line_end;
}

}  // namespace

void MifObjects::append(const std::optional<EntityGeometry>& geometry, std::string& out) {
  const std::size_t begin = out.size();
  if (geometry) {
    const Point3* const place = place_of(geometry->shape);
    if (place == nullptr) {
      append_curve(*geometry, out);
    } else if (is_finite(*place)) {
      append_point(*place, out);
    }
  }
  if (out.size() == begin) out.append("None").append(line_end);
}

void MifObjects::append_point(const Point3& point, std::string& out) {
  out += "Point ";
  append_coordinates(point, out);
  out += line_end;
}

void MifObjects::append_curve(const EntityGeometry& geometry, std::string& out) {
  sample(geometry, fine, path_);
  if (path_.points.empty()) return;
  if (path_.points.size() == 1) return append_point(path_.points[0], out);
  const bool is_area = path_.closed && encloses_area(geometry.shape);
  if (is_area && path_.points.size() > 2) return append_region(out);
  if (!std::holds_alternative<LineShape>(geometry.shape)) return append_polyline(out);
  out += "Line ";
  append_coordinates(path_.points[0], out);
  out += ' ';
  append_coordinates(path_.points[1], out);
  out += line_end;
}

void MifObjects::append_polyline(std::string& out) {
  out += "Pline ";
  append_vertices(0, path_.points.size(), path_.closed, out);
}

void MifObjects::append_region(std::string& out) {
  out += "Region ";
  append_count(path_.later_parts.size() + 1, out);
  std::size_t first = 0;
  for (std::size_t part = 0; part <= path_.later_parts.size(); ++part) {
    const bool last = part == path_.later_parts.size();
    const std::size_t end = last ? path_.points.size() : path_.later_parts[part];
    out += "  ";
    append_vertices(first, end, true, out);
    first = end;
  }
}

// Their number and then each on a line; when closing, the first one again.
void MifObjects::append_vertices(std::size_t first, std::size_t end, bool closing,
                                 std::string& out) {
  const std::size_t count = end - first + (closing ? 1 : 0);
  most_vertices_ = std::max(most_vertices_, count);
  append_count(count, out);
  for (std::size_t i = 0; i < count; ++i) {
    append_coordinates(path_.points[first + i < end ? first + i : first], out);
    out += line_end;
  }
}

void MifObjects::append_coordinates(const Point3& point, std::string& out) {
  append_plain(point.x, out);
  out += ' ';
  append_plain(point.y, out);
  if (!extents_) extents_ = Extents{point, point};
  extents_->min.x = std::min(extents_->min.x, point.x);
  extents_->min.y = std::min(extents_->min.y, point.y);
  extents_->max.x = std::max(extents_->max.x, point.x);
  extents_->max.y = std::max(extents_->max.y, point.y);
}

std::optional<Extents> MifObjects::bounds() const {
  if (!extents_) return std::nullopt;
  const double size =
      std::max(extents_->max.x - extents_->min.x, extents_->max.y - extents_->min.y);
  const double room = size > 0 ? size / 10 : 1;
  Extents bounds = *extents_;
  bounds.min.x -= room;
  bounds.min.y -= room;
  bounds.max.x += room;
  bounds.max.y += room;
  return bounds;
}

}  // namespace korvel
