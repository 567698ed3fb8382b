// A double of the CAD host's geometry classes, see db_classes.h: points, vectors, and arrays of
// them.
#pragma once

#include <cmath>
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
using AcGeIntArray = AcArray<int>;
using AcGeVoidPointerArray = AcArray<void*>;

struct AcGeVector2d {
  double x = 0;
  double y = 0;
};

// Curves in a plane: edges of hatches. What they are asked they have been made with.
class AcGeLineSeg2d {
 public:
  AcGeLineSeg2d(AcGePoint2d start, AcGePoint2d end) : start_(start), end_(end) {}
  [[nodiscard]] AcGePoint2d startPoint() const { return start_; }
  [[nodiscard]] AcGePoint2d endPoint() const { return end_; }

 private:
  AcGePoint2d start_;
  AcGePoint2d end_;
};

class AcGeCircArc2d {
 public:
  AcGeCircArc2d(AcGePoint2d center, AcGePoint2d start, double radius, double sweep, bool clockwise)
      : center_(center), start_(start), radius_(radius), sweep_(sweep), clockwise_(clockwise) {}
  [[nodiscard]] AcGePoint2d center() const { return center_; }
  [[nodiscard]] AcGePoint2d startPoint() const { return start_; }
  [[nodiscard]] double radius() const { return radius_; }
  [[nodiscard]] double startAng() const { return 0; }
  [[nodiscard]] double endAng() const { return sweep_; }
  [[nodiscard]] bool isClockWise() const { return clockwise_; }

 private:
  AcGePoint2d center_;
  AcGePoint2d start_;
  double radius_;
  double sweep_;
  bool clockwise_;
};

// Angles are parameters from the major axis towards the minor one.
class AcGeEllipArc2d {
 public:
  AcGeEllipArc2d(const korvel::EllipseShape& shape) : shape_(shape) {}
  [[nodiscard]] AcGePoint2d center() const { return {shape_.center.x, shape_.center.y}; }
  [[nodiscard]] AcGeVector2d majorAxis() const {
    return {shape_.major.x / majorRadius(), shape_.major.y / majorRadius()};
  }
  [[nodiscard]] double majorRadius() const { return std::hypot(shape_.major.x, shape_.major.y); }
  [[nodiscard]] double minorRadius() const { return shape_.ratio * majorRadius(); }
  [[nodiscard]] double startAng() const { return shape_.start; }
  [[nodiscard]] double endAng() const { return shape_.end; }
  [[nodiscard]] bool isClockWise() const { return shape_.normal.z < 0; }

 private:
  korvel::EllipseShape shape_;
};

class AcGeNurbCurve2d {
 public:
  AcGeNurbCurve2d(const korvel::SplineShape& shape) : shape_(shape) {}
  [[nodiscard]] int degree() const { return shape_.degree; }
  [[nodiscard]] int numKnots() const { return static_cast<int>(shape_.knots.size()); }
  [[nodiscard]] int numControlPoints() const {
    return static_cast<int>(shape_.control_points.size());
  }
  [[nodiscard]] int numWeights() const { return static_cast<int>(shape_.weights.size()); }
  [[nodiscard]] double knotAt(int i) const { return shape_.knots.at(static_cast<std::size_t>(i)); }
  [[nodiscard]] double weightAt(int i) const {
    return shape_.weights.at(static_cast<std::size_t>(i));
  }
  [[nodiscard]] AcGePoint2d controlPointAt(int i) const {
    const korvel::Point3& point = shape_.control_points.at(static_cast<std::size_t>(i));
    return {point.x, point.y};
  }

 private:
  korvel::SplineShape shape_;
};

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
