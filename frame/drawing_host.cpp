#include "frame/drawing_host.h"

#include "frame/walk.h"

namespace korvel {

EntityList DrawingHost::entities_around(Point3 point) {
  EntityList around = model_space();
  ReadWalk walk(*this, around.size());
  std::erase_if(around, [&](EntityId entity) {
    walk.step();
    const std::optional<Extents> extents = extents_of(entity);
    return !extents || !contains_in_plan(*extents, point);
  });
  return around;
}

}  // namespace korvel
