#include "host/arx/properties.h"

#include "host/arx/guards.h"
#include "host/arx/object_ids.h"
#include "host/arx/symbol_records.h"

namespace korvel::arx {
namespace {

// Unconfirmed: the members of the host's colours.

std::optional<std::int32_t> true_color_of(const AcCmColor& color) {
  if (color.colorMethod() != AcCmEntityColor::kByColor) return std::nullopt;
  return color.red() << 16 | color.green() << 8 | color.blue();
}

// The index says by layer and by block, too.
AcCmColor index_color(int index) {
  AcCmColor color;
  color.setColorIndex(static_cast<Adesk::UInt16>(index));
  return color;
}

AcCmColor true_color(std::int32_t rgb) {
  const auto part = [rgb](int shift) { return static_cast<Adesk::UInt8>(rgb >> shift & 0xFF); };
  AcCmColor color;
  color.setRGB(part(16), part(8), part(0));
  return color;
}

// The host has the names of the book and of the colour apart.
std::wstring book_color_of(const AcCmColor& color) {
  if (!color.hasColorName()) return {};
  if (!color.hasBookName()) return color.colorName();
  return std::wstring(color.bookName()) + L'$' + color.colorName();
}

void set_names(AcCmColor& color, const std::wstring& book_color) {
  if (book_color.empty()) return;
  const std::size_t end_of_book = book_color.find(L'$');
  if (end_of_book == std::wstring::npos) {
    color.setNames(book_color.c_str());
  } else {
    color.setNames(book_color.c_str() + end_of_book + 1, book_color.substr(0, end_of_book).c_str());
  }
}

// Unconfirmed: the members of entities, and that line weights are their hundredths of a millimetre.

EntityProperties read(const AcDbEntity& entity) {
  const AcCmColor color = entity.color();
  return {name_of(entity.layerId()), name_of(entity.linetypeId()), color.colorIndex(),
          true_color_of(color),      entity.linetypeScale(),       entity.lineWeight(),
          book_color_of(color)};
}

void set_color(AcDbEntity& entity, const EntityProperties& properties) {
  AcCmColor color =
      properties.true_color ? true_color(*properties.true_color) : index_color(properties.color);
  set_names(color, properties.book_color);
  entity.setColor(color);
}

void set_layer(AcDbEntity& entity, const std::wstring& name) {
  const AcDbObjectId layer = layer_named(name);
  if (!layer.isNull()) entity.setLayer(layer);
}

void set_linetype(AcDbEntity& entity, const std::wstring& name) {
  const AcDbObjectId linetype = linetype_named(name);
  if (!linetype.isNull()) entity.setLinetype(linetype);
}

void set_linetype_scale(AcDbEntity& entity, double scale) { entity.setLinetypeScale(scale); }

void set_lineweight(AcDbEntity& entity, int weight) {
  entity.setLineWeight(static_cast<AcDb::LineWeight>(weight));
}

}  // namespace

std::optional<EntityProperties> properties_of(EntityId entity) {
  const Opened<AcDbEntity> opened = open_entity(object_id(entity), AcDb::kForRead);
  return opened ? std::optional(read(*opened)) : std::nullopt;
}

bool set_properties(EntityId entity, const EntityProperties& properties) {
  const Opened<AcDbEntity> opened = open_entity(object_id(entity), AcDb::kForWrite);
  if (!opened) return false;
  set_color(*opened, properties);
  set_layer(*opened, properties.layer);
  set_linetype(*opened, properties.linetype);
  set_linetype_scale(*opened, properties.linetype_scale);
  set_lineweight(*opened, properties.lineweight);
  return true;
}

}  // namespace korvel::arx
