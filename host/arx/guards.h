// Whatever the host hands out and wants back, given back on every way out.
#pragma once

#include <memory>

#include "host/arx/sdk.h"

namespace korvel::arx {

struct CloseObject {
  void operator()(AcDbObject* object) const { object->close(); }
};

// An open object of the database; null when it could not be opened.
template <class Object>
using Opened = std::unique_ptr<Object, CloseObject>;

template <class Object>
[[nodiscard]] Opened<Object> open_as(AcDbObjectId id, AcDb::OpenMode mode) {
  Object* object = nullptr;
  return Opened<Object>(acdbOpenObject(object, id, mode) == Acad::eOk ? object : nullptr);
}

[[nodiscard]] inline Opened<AcDbEntity> open_entity(AcDbObjectId id, AcDb::OpenMode mode) {
  return open_as<AcDbEntity>(id, mode);
}

struct ReleaseBuffers {
  void operator()(resbuf* first) const { acutRelRb(first); }
};

// A list of values for the host; null when it could not be made.
using ResultBuffers = std::unique_ptr<resbuf, ReleaseBuffers>;

}  // namespace korvel::arx
