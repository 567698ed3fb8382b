// Entities of model space by where they lie.
#pragma once

#include <optional>
#include <span>

#include "frame/entity_id.h"
#include "frame/progress_meter.h"
#include "host/standalone/drawing.h"

namespace korvel {

// All queries look at the plan view (x and y count, z does not), leave out entities on frozen or
// off layers, and answer in the drawing's order. Curves count as lines, not as areas: a window
// wholly inside a circle does not cross it. A text counts as the area of its box, and so does a
// block reference, or what is drawn as one, as the area of the extents of its contents. An entity
// without extents (a ray, an unknown type) is never found.
//
// A polygon of fewer than three corners encloses nothing. What takes a meter throws Interrupted.

// Entities that lie wholly in the polygon, outline included: a window.
[[nodiscard]] EntityList inside_polygon(const Drawing& drawing, std::span<const Point3> polygon,
                                        ProgressMeter& meter);

// Entities with any point in the polygon: a crossing window.
[[nodiscard]] EntityList crossing_polygon(const Drawing& drawing, std::span<const Point3> polygon,
                                          ProgressMeter& meter);

// Entities that the open path through the points crosses or touches.
[[nodiscard]] EntityList crossing_fence(const Drawing& drawing, std::span<const Point3> path,
                                        ProgressMeter& meter);

// The entity nearest to the point, at most `reach` drawing units away. A curve goes before the
// boxes of texts and block references it lies on, and the newest before others just as near.
[[nodiscard]] std::optional<EntityId> nearest_entity(const Drawing& drawing, Point3 at,
                                                     double reach);

}  // namespace korvel
