// Extents of the entities of a drawing; block references are expanded.
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "frame/case_mapping.h"
#include "geometry/curve_sampler.h"
#include "geometry/extents.h"
#include "geometry/vector.h"
#include "host/standalone/drawing.h"
#include "host/standalone/entity_reader.h"

namespace korvel {
namespace {

// Blocks nested deeper than this have no size; nobody draws them.
constexpr int deepest_nesting = 64;

// A block with more points than this is known by the corners of its box alone, so that its turned
// references get a box that may be too wide.
constexpr std::size_t most_points = 4096;

void widen(std::optional<Extents>& box, const Point3& point) {
  box = box ? united(*box, {point, point}) : Extents{point, point};
}

std::array<Point3, 8> corners(const Extents& box) {
  const auto [min, max] = box;
  return {{{min.x, min.y, min.z},
           {max.x, min.y, min.z},
           {min.x, max.y, min.z},
           {max.x, max.y, min.z},
           {min.x, min.y, max.z},
           {max.x, min.y, max.z},
           {min.x, max.y, max.z},
           {max.x, max.y, max.z}}};
}

// Where a reference puts a point of its block.
class Placement {
 public:
  Placement(const BlockReferenceShape& reference, const Point3& base)
      : reference_(reference),
        base_(base),
        frame_(plane_frame(reference.normal)),
        cosine_(std::cos(reference.rotation)),
        sine_(std::sin(reference.rotation)) {}

  // Calls visit for the point in each of the outermost cells; they bound all the others.
  template <class Visit>
  void place(const Point3& point, Visit visit) const {
    for (const int column : {0, std::max(reference_.columns, 1) - 1}) {
      for (const int row : {0, std::max(reference_.rows, 1) - 1})
        visit(at(point, column, row));
    }
  }

  // Whether a box stays a box: no turning but by right angles.
  [[nodiscard]] bool keeps_boxes() const {
    const double quarters = reference_.rotation / (std::numbers::pi / 2);
    return std::abs(quarters - std::round(quarters)) < 1e-9 && frame_.normal.x == 0 &&
           frame_.normal.y == 0;
  }

 private:
  [[nodiscard]] Point3 at(const Point3& point, int column, int row) const {
    const double x = (point.x - base_.x) * reference_.scale.x + column * reference_.column_spacing;
    const double y = (point.y - base_.y) * reference_.scale.y + row * reference_.row_spacing;
    const double z = (point.z - base_.z) * reference_.scale.z;
    const double turned_x = x * cosine_ - y * sine_;
    const double turned_y = x * sine_ + y * cosine_;
    return reference_.position + turned_x * frame_.x + turned_y * frame_.y + z * frame_.normal;
  }

  const BlockReferenceShape& reference_;
  Point3 base_;
  PlaneFrame frame_;
  double cosine_;
  double sine_;
};

}  // namespace

std::optional<Extents> Drawing::extents_of(EntityId id) const {
  if (!exists(id)) return std::nullopt;
  return extents_.of(index_of(id), entities_.size(), [&] { return work_out_extents(id); });
}

std::optional<Extents> Drawing::work_out_extents(EntityId id) const {
  const EntityGeometry geometry = picture_of(id);
  const auto* const reference = std::get_if<BlockReferenceShape>(&geometry.shape);
  if (reference == nullptr) return korvel::extents_of(geometry);
  std::optional<Extents> box;
  place_block(*reference, 0, [&box](const Point3& point) { widen(box, point); });
  return box;
}

// Calls visit for points whose box is the box of the reference.
void Drawing::place_block(const BlockReferenceShape& reference, int depth,
                          const std::function<void(const Point3&)>& visit) const {
  const auto found = blocks_by_name_.find(lower(reference.block));
  if (found == blocks_by_name_.end() || depth > deepest_nesting) return;
  const BlockOutline& outline = outline_of_block(found->second, depth);
  if (!outline.box) return;
  const Placement placement(reference, blocks_[found->second].base);
  if (placement.keeps_boxes()) {
    for (const Point3& corner : corners(*outline.box))
      placement.place(corner, visit);
  } else {
    for (const Point3& point : outline.points)
      placement.place(point, visit);
  }
}

// The entity is not what it was; one in a block definition is part of what references show.
void Drawing::forget_extents(std::uint32_t entity) {
  extents_.forget(entity);
  if (blocks_[entities_[entity].block].space == Space::Block) {
    block_outlines_.clear();
    extents_.forget_all();
  }
}

const Drawing::BlockOutline& Drawing::outline_of_block(std::uint32_t block, int depth) const {
  const auto [known, is_new] = block_outlines_.try_emplace(block);
  BlockOutline& outline = known->second;  // still empty when a ring of blocks comes back here
  if (!is_new) return outline;

  BlockOutline found;
  Path path;
  const auto take = [&found](const Point3& point) {
    widen(found.box, point);
    found.points.push_back(point);
    if (found.points.size() > most_points) {
      const auto bounds = corners(*found.box);
      found.points.assign(bounds.begin(), bounds.end());
    }
  };
  for (const std::uint32_t index : blocks_[block].entities) {
    if (entities_[index].erased) continue;
    const EntityGeometry geometry = picture_of(id_of(index));
    if (const auto* const nested = std::get_if<BlockReferenceShape>(&geometry.shape)) {
      place_block(*nested, depth + 1, take);
      continue;
    }
    sample(geometry, {}, path);
    std::ranges::for_each(path.points, take);
    // The samples lie on the curve; the box is that of the curve between them as well.
    if (const auto exact = korvel::extents_of(geometry)) {
      for (const Point3& corner : corners(*exact)) {
        if (path.points.empty()) {
          take(corner);
        } else {
          widen(found.box, corner);
        }
      }
    }
  }
  return outline = std::move(found);
}

}  // namespace korvel
