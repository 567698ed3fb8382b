// The properties that new entities get.
#include "host/console/commands/drawing_defaults.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "frame/utf.h"
#include "host/standalone/dxf/number_text.h"

namespace korvel {
namespace {

EntityProperties current_properties(const Drawing& drawing) {
  EntityProperties properties;
  properties.layer = current_layer_name(drawing);
  constexpr int greatest_color = 256;
  std::int64_t color = 0;
  if (const auto text = drawing.variable("CECOLOR");
      text && dxf::read_integer(*text, color) && color >= 0 && color <= greatest_color) {
    properties.color = static_cast<int>(color);
  }
  if (const auto linetype = drawing.variable("CELTYPE"); linetype && !linetype->empty()) {
    properties.linetype = from_utf8(*linetype);
  }
  double scale = 0;
  if (const auto text = drawing.variable("CELTSCALE");
      text && dxf::read_real(*text, scale) && scale > 0) {
    properties.linetype_scale = scale;
  }
  return properties;
}

}  // namespace

std::wstring current_layer_name(const Drawing& drawing) {
  const std::vector<Layer>& layers = drawing.layers();
  const auto current = std::ranges::find(layers, drawing.current_layer(), &Layer::id);
  return current != layers.end() ? current->name : EntityProperties{}.layer;
}

bool draw(ConsoleHost& host, Shape shape) {
  Drawing& drawing = host.drawing();
  if (drawing.add_entity({std::move(shape)}, current_properties(drawing))) return true;
  host.refuse(L"The drawing has no place for new entities (its file lacks an ENTITIES section).");
  return false;
}

}  // namespace korvel
