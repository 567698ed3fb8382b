// A double of the CAD host's geometry classes, see db_classes.h: points, vectors, and arrays of
// them.
#pragma once

#include <cstddef>
#include <vector>

#include "frame/entity_geometry.h"

struct AcGePoint3d {
  AcGePoint3d() = default;
  AcGePoint3d(double x_value, double y_value, double z_value)
      : x(x_value), y(y_value), z(z_value) {}
  double x = 0;
  double y = 0;
  double z = 0;
};

struct AcGeVector3d {
  AcGeVector3d() = default;
  AcGeVector3d(double x_value, double y_value, double z_value)
      : x(x_value), y(y_value), z(z_value) {}
  double x = 0;
  double y = 0;
  double z = 0;
};

struct AcGePoint2d {
  AcGePoint2d() = default;
  AcGePoint2d(double x_value, double y_value) : x(x_value), y(y_value) {}
  double x = 0;
  double y = 0;
};

struct AcGeScale3d {
  AcGeScale3d() = default;
  AcGeScale3d(double x, double y, double z) : sx(x), sy(y), sz(z) {}
  double sx = 1;
  double sy = 1;
  double sz = 1;
};

template <class Value>
class AcArray {
 public:
  [[nodiscard]] int length() const { return static_cast<int>(values_.size()); }
  [[nodiscard]] const Value& operator[](int index) const {
    return values_.at(static_cast<std::size_t>(index));
  }
  int append(const Value& value) {
    values_.push_back(value);
    return length() - 1;
  }

 private:
  std::vector<Value> values_;
};
using AcGePoint2dArray = AcArray<AcGePoint2d>;
using AcGePoint3dArray = AcArray<AcGePoint3d>;
using AcGeDoubleArray = AcArray<double>;

namespace korvel::arx_double {

[[nodiscard]] inline AcGePoint3d host_point(const Point3& point) {
  return {point.x, point.y, point.z};
}
[[nodiscard]] inline AcGeVector3d host_vector(const Vector3& vector) {
  return {vector.x, vector.y, vector.z};
}
[[nodiscard]] inline Point3 point_from(const AcGePoint3d& point) {
  return {point.x, point.y, point.z};
}
[[nodiscard]] inline Vector3 vector_from(const AcGeVector3d& vector) {
  return {vector.x, vector.y, vector.z};
}

}  // namespace korvel::arx_double
