// Points and vectors of the host as those of the logic, and back.
#pragma once

#include "frame/entity_geometry.h"
#include "host/arx/sdk.h"

namespace korvel::arx {

[[nodiscard]] inline Point3 point_of(const AcGePoint3d& point) {
  return {point.x, point.y, point.z};
}

[[nodiscard]] inline Vector3 vector_of(const AcGeVector3d& vector) {
  return {vector.x, vector.y, vector.z};
}

[[nodiscard]] inline AcGePoint3d host_point(const Point3& point) {
  return {point.x, point.y, point.z};
}

[[nodiscard]] inline AcGeVector3d host_vector(const Vector3& vector) {
  return {vector.x, vector.y, vector.z};
}

}  // namespace korvel::arx
