#include "search/point_selection.h"

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"
#include "geometry/containment.h"

namespace korvel {

EntityList find_around(Point3 point, DrawingHost& host) {
  EntityList found = host.entities_around(point);
  usable_filter(host, found);
  ReadWalk walk(host, found.size());
  std::erase_if(found, [&](EntityId entity) {
    walk.step();
    const std::optional<EntityGeometry> geometry = host.geometry_of(entity);
    return !geometry || !area_contains(*geometry, point);
  });
  return found;
}

void psel(Session& session) {
  const Answer<Point3> point = session.host.ask_point(L"Specify point: ");
  if (point.kind != Answer<Point3>::Kind::Given) return;
  leave_found(session.host, find_around(point.value, session.host));
}

}  // namespace korvel
