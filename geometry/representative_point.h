// One point that stands for an entity.
#pragma once

#include <optional>
#include <vector>

#include "frame/entity_geometry.h"

namespace korvel {

enum class PlanRule { First, Last, Center };
enum class ElevationRule { Min, Max, Average };

struct PointRules {
  PlanRule plan = PlanRule::Center;
  ElevationRule elevation = ElevationRule::Average;
};

// Block references and single-line texts are where they were put, whatever the rules; other shapes
// have no position of their own.
[[nodiscard]] std::optional<Point3> position_of(const Shape& shape);

// Finds the point of shapes without a position. Made once for many entities.
class RepresentativePoint {
 public:
  // `closing_gap` as for point_chain.
  RepresentativePoint(PointRules rules, double closing_gap)
      : rules_(rules), closing_gap_(closing_gap) {}

  // The elevation is taken from the lowest and the highest z of the extents. So is the plan, from
  // their corners or the middle between them, unless the entity has a chain of points: then it is
  // the chain's first or last point, and as its centre the mean of the corners of a closed
  // polyline, or else the point at half the chain's length.
  //
  // A coordinate that nothing tells is the largest finite number, deliberately: it stands out among
  // the values.
  [[nodiscard]] Point3 operator()(const Shape& shape, const std::optional<Extents>& extents);

 private:
  void place_on_chain(const Shape& shape, Point3& point) const;

  PointRules rules_;
  double closing_gap_;
  std::vector<Point3> chain_;
};

}  // namespace korvel
