// A pass over model space: extents first, the outline of what is left.
#include "host/standalone/spatial_query.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_set>
#include <utility>
#include <variant>

#include "frame/walk.h"
#include "geometry/curve_sampler.h"
#include "geometry/hit_test.h"

namespace korvel {
namespace {

// Extents come from closed formulas and outlines from samples: this fraction of a coordinate lies
// between what the two say about the same place.
constexpr double rounding = 1e-12;

struct Box {
  double left = std::numeric_limits<double>::infinity();
  double bottom = std::numeric_limits<double>::infinity();
  double right = -std::numeric_limits<double>::infinity();
  double top = -std::numeric_limits<double>::infinity();
};

Box box_of(std::span<const Point3> points) {
  Box box;
  for (const Point3& point : points) {
    box.left = std::min(box.left, point.x);
    box.bottom = std::min(box.bottom, point.y);
    box.right = std::max(box.right, point.x);
    box.top = std::max(box.top, point.y);
  }
  return box;
}

// Grown by `distance`, and by what rounding may have taken.
Box grown(const Box& box, double distance) {
  const double largest = std::max(
      {std::abs(box.left), std::abs(box.bottom), std::abs(box.right), std::abs(box.top), distance});
  const double margin = distance + rounding * largest;
  return {box.left - margin, box.bottom - margin, box.right + margin, box.top + margin};
}

bool overlap(const Box& box, const Extents& extents) {
  return extents.min.x <= box.right && extents.max.x >= box.left && extents.min.y <= box.top &&
         extents.max.y >= box.bottom;
}

bool contains(const Box& box, const Extents& extents) {
  return extents.min.x >= box.left && extents.max.x <= box.right && extents.min.y >= box.bottom &&
         extents.max.y <= box.top;
}

// What a query sees of an entity.
struct Outline {
  Path path;
  bool is_area = false;  // the inside counts too
};

void outline_of(const EntityGeometry& geometry, const Extents& extents, Outline& out) {
  out.is_area = std::holds_alternative<TextShape>(geometry.shape) ||
                std::holds_alternative<MtextShape>(geometry.shape) ||
                std::holds_alternative<BlockReferenceShape>(geometry.shape);
  if (!std::holds_alternative<BlockReferenceShape>(geometry.shape)) {
    sample(geometry, SamplingRule{}, out.path);
    return;
  }
  const Point3 min = extents.min;
  const Point3 max = extents.max;
  out.path = {{min, {max.x, min.y, min.z}, max, {min.x, max.y, min.z}}, true, {}};
}

std::unordered_set<EntityId> invisible_layers(const Drawing& drawing) {
  std::unordered_set<EntityId> layers;
  for (const Layer& layer : drawing.layers()) {
    if (layer.frozen || layer.off) layers.insert(layer.id);
  }
  return layers;
}

// Calls visit(EntityId, const Outline&) for the visible ones of the entities whose extents pass the
// test, and begin() before each entity.
template <class Begin, class Test, class Visit>
void for_each_visible(const Drawing& drawing, const EntityList& entities, Begin&& begin,
                      Test&& test, Visit&& visit) {
  const std::unordered_set<EntityId> invisible = invisible_layers(drawing);
  Outline outline;
  for (const EntityId id : entities) {
    begin();
    if (invisible.contains(drawing.layer_of(id))) continue;
    const std::optional<Extents> extents = drawing.extents_of(id);
    if (!extents || !test(*extents)) continue;
    outline_of(drawing.picture_of(id), *extents, outline);
    visit(id, std::as_const(outline));
  }
}

}  // namespace

EntityList inside_polygon(const Drawing& drawing, std::span<const Point3> polygon,
                          ProgressMeter& meter) {
  EntityList found;
  if (polygon.size() < 3) return found;
  const Box box = grown(box_of(polygon), 0);
  const EntityList entities = drawing.entities(Space::Model);
  ReadWalk walk(meter, entities.size());
  for_each_visible(
      drawing, entities, [&walk] { walk.step(); },
      [&box](const Extents& extents) { return contains(box, extents); },
      [&](EntityId id, const Outline& outline) {
        if (path_inside_polygon(outline.path, polygon)) found.push_back(id);
      });
  return found;
}

EntityList crossing_polygon(const Drawing& drawing, std::span<const Point3> polygon,
                            ProgressMeter& meter) {
  EntityList found;
  if (polygon.size() < 3) return found;
  const Box box = grown(box_of(polygon), 0);
  const EntityList entities = drawing.entities(Space::Model);
  ReadWalk walk(meter, entities.size());
  for_each_visible(
      drawing, entities, [&walk] { walk.step(); },
      [&box](const Extents& extents) { return overlap(box, extents); },
      [&](EntityId id, const Outline& outline) {
        if (path_crosses_polygon(outline.path, polygon) ||
            (outline.is_area && point_in_polygon(polygon.front(), outline.path.points))) {
          found.push_back(id);
        }
      });
  return found;
}

EntityList crossing_fence(const Drawing& drawing, std::span<const Point3> path,
                          ProgressMeter& meter) {
  EntityList found;
  if (path.empty()) return found;
  const Box box = grown(box_of(path), 0);
  const Path fence{{path.begin(), path.end()}, false, {}};
  const EntityList entities = drawing.entities(Space::Model);
  ReadWalk walk(meter, entities.size());
  for_each_visible(
      drawing, entities, [&walk] { walk.step(); },
      [&box](const Extents& extents) { return overlap(box, extents); },
      [&](EntityId id, const Outline& outline) {
        if (paths_cross(outline.path, fence) ||
            (outline.is_area && point_in_polygon(path.front(), outline.path.points))) {
          found.push_back(id);
        }
      });
  return found;
}

std::optional<EntityId> nearest_entity(const Drawing& drawing, Point3 at, double reach) {
  using Rank = std::pair<bool, double>;  // areas behind curves, then by distance
  std::optional<EntityId> nearest;
  Rank best{true, reach};
  const Box box = grown(box_of(std::span(&at, 1)), reach);
  for_each_visible(
      drawing, drawing.entities(Space::Model), [] {},
      [&box](const Extents& extents) { return overlap(box, extents); },
      [&](EntityId id, const Outline& outline) {
        const bool within = outline.is_area && point_in_polygon(at, outline.path.points);
        const Rank rank{outline.is_area, within ? 0 : distance_to_path(outline.path, at)};
        if (rank.second > reach || rank > best) return;
        best = rank;
        nearest = id;
      });
  return nearest;
}

}  // namespace korvel
