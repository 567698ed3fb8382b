// The groups of one entity, record by record, without what is not the entity's own data.
#pragma once

#include <cstdint>
#include <numbers>
#include <string_view>
#include <vector>

#include "frame/entity_geometry.h"
#include "geometry/vector.h"
#include "host/standalone/dxf/group.h"

namespace korvel {

// An entity is one record, from its group 0 on; POLYLINE and INSERT are followed by the records of
// their parts.
class EntityRecords {
 public:
  explicit EntityRecords(dxf::GroupReader groups) : groups_(groups) {}

  // Goes to the next record, past what is left of this one. False: there is none.
  bool next_record() {
    dxf::Group group;
    while (!at_record_) {
      if (!groups_.next(group)) return false;
      begin_at(group);
    }
    at_record_ = false;
    extension_dictionary_ = 0;
    part_ = Part::Own;
    before_markers_ = true;
    return true;
  }

  [[nodiscard]] std::string_view type() const { return type_; }

  // What the record, as far as it was read, names as its extension dictionary; 0: nothing.
  [[nodiscard]] std::uint64_t extension_dictionary() const { return extension_dictionary_; }

  // Reads the next group of the record. Comments and what other applications hang on the entity
  // ({ACAD_REACTORS and the like) are passed over. False at the end, which an embedded object and
  // XDATA are too, as codes have other meanings there.
  bool next(dxf::Group& group) { return part_ == Part::Own && advance(group); }

  // The same for the embedded object, once next() has answered false.
  bool next_embedded(dxf::Group& group) { return part_ == Part::Embedded && advance(group); }

 private:
  enum class Part : std::uint8_t { Own, Embedded, Over };

  void begin_at(const dxf::Group& group) {
    if (group.code != 0) return;
    at_record_ = true;
    type_ = group.value;
  }

  bool advance(dxf::Group& group) {
    bool in_application_groups = false;
    bool names_dictionary = false;
    while (groups_.next(group)) {
      if (group.code == 0 || group.code >= 1000) {
        begin_at(group);
        break;
      }
      if (in_application_groups) {
        in_application_groups = group.code != 102;
        if (names_dictionary && group.code == 360) extension_dictionary_ = group.handle();
      } else if (group.code == 102 && before_markers_ && group.value.starts_with('{')) {
        in_application_groups = true;
        names_dictionary = group.value == "{ACAD_XDICTIONARY";
      } else if (group.code == 101) {
        part_ = part_ == Part::Own ? Part::Embedded : Part::Over;
        return false;
      } else if (group.code != 999) {
        if (group.code == 100) before_markers_ = false;
        return true;
      }
    }
    part_ = Part::Over;
    return false;
  }

  dxf::GroupReader groups_;
  std::string_view type_;
  std::uint64_t extension_dictionary_ = 0;
  bool at_record_ = false;
  bool before_markers_ = true;
  Part part_ = Part::Over;
};

// The takers put a group into place if it has one of their codes and say whether it had.

// Three groups: x_code, x_code + 10, x_code + 20.
inline bool take_point(const dxf::Group& group, int x_code, Point3& point) {
  switch (group.code - x_code) {
    case 0:
      point.x = group.real();
      return true;
    case 10:
      point.y = group.real();
      return true;
    case 20:
      point.z = group.real();
      return true;
    default:
      return false;
  }
}

// The same for a list; each x begins a new point.
inline bool take_point(const dxf::Group& group, int x_code, std::vector<Point3>& points) {
  if (group.code == x_code) points.push_back({});
  return !points.empty() && take_point(group, x_code, points.back());
}

// Direction in which an entity is extruded: the normal of its plane.
struct Extrusion {
  Vector3 normal;  // as in the file, of any length
  double thickness = 0;

  bool take(const dxf::Group& group) {
    switch (group.code) {
      case 39:
        thickness = group.real();
        return true;
      case 210:
        normal.x = group.real();
        return true;
      case 220:
        normal.y = group.real();
        return true;
      case 230:
        normal.z = group.real();
        return true;
      default:
        return false;
    }
  }
};

// From the coordinate system of a plane to the world's. Nearly every entity lies in plan view,
// where they are the same.
class PlaneToWorld {
 public:
  explicit PlaneToWorld(Vector3 normal) : is_plan_(normal == Vector3{0, 0, 1}) {
    if (!is_plan_) frame_ = plane_frame(normal);
  }

  [[nodiscard]] const PlaneFrame& frame() const { return frame_; }
  [[nodiscard]] Vector3 normal() const { return frame_.normal; }
  [[nodiscard]] Point3 operator()(Point3 ocs) const {
    return is_plan_ ? ocs : to_world(frame_, ocs);
  }

 private:
  bool is_plan_;
  PlaneFrame frame_{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
};

inline constexpr double radians_per_degree = std::numbers::pi / 180;

}  // namespace korvel
