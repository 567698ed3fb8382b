#include "frame/drawing_host.h"

namespace korvel {

EntityList DrawingHost::entities_around(Point3 point) const {
  EntityList around = model_space();
  std::erase_if(around, [&](EntityId entity) {
    const std::optional<Extents> extents = extents_of(entity);
    return !extents || !contains_in_plan(*extents, point);
  });
  return around;
}

}  // namespace korvel
