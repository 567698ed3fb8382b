// The entities and the layers of the current drawing.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/drawing_host.h"
#include "host/arx/sdk.h"

namespace korvel::arx {

// As DrawingHost has them.
[[nodiscard]] EntityList model_space();
[[nodiscard]] bool opens(EntityId entity, OpenMode mode);
[[nodiscard]] EntityId layer_of(EntityId entity);
[[nodiscard]] std::wstring handle_of(EntityId entity);
[[nodiscard]] EntityId entity_with_handle(std::wstring_view handle);
[[nodiscard]] std::optional<Extents> extents_of(EntityId entity);
[[nodiscard]] std::vector<Layer> layers();

// A point at the origin of model space for as long as this lives.
class CarrierPoint {
 public:
  CarrierPoint();
  ~CarrierPoint();
  CarrierPoint(const CarrierPoint&) = delete;
  CarrierPoint& operator=(const CarrierPoint&) = delete;

  [[nodiscard]] bool exists() const { return !id_.isNull(); }
  [[nodiscard]] const AcDbObjectId& id() const { return id_; }

 private:
  AcDbObjectId id_;
};

}  // namespace korvel::arx
