// The changes of a drawing: entities, layers and header variables.
#include <algorithm>
#include <utility>

#include "frame/case_mapping.h"
#include "frame/utf.h"
#include "host/standalone/dictionary.h"
#include "host/standalone/drawing.h"
#include "host/standalone/dxf/number_text.h"
#include "host/standalone/entity_writer.h"
#include "host/standalone/layer_record.h"
#include "host/standalone/object_tree.h"

namespace korvel {
namespace {

constexpr std::string_view first_version_with_markers = "AC1012";
constexpr std::string_view first_version_with_light_polylines = "AC1014";

// Characters that no CAD program accepts in the name of a layer.
constexpr std::wstring_view forbidden_in_names = L"<>/\\\":;?*|,=`";

bool is_of_kind(const Shape& shape, PolylineKind kind) {
  const auto* const polyline = std::get_if<PolylineShape>(&shape);
  return polyline != nullptr && polyline->kind == kind;
}

}  // namespace

void Drawing::replace_item(dxf::ItemIndex item, std::string_view bytes) {
  // What the same step has just put there nobody wants back.
  if (journal_.just_changed(item)) {
    document_.item(item).span = document_.store_over(document_.item(item).span, bytes);
  } else {
    const dxf::Span fresh = document_.store(bytes);
    journal_.add(ItemChange{item, document_.item(item).span});
    document_.item(item).span = fresh;
  }
  refresh(item);
}

void Drawing::erase_item(dxf::ItemIndex item) {
  dxf::Span& span = document_.item(item).span;
  if (span.erased) return;
  journal_.add(ItemChange{item, span});
  span.erased = true;
  refresh(item);
}

dxf::ItemIndex Drawing::add_item(dxf::ItemIndex terminator, std::string_view bytes,
                                 std::uint64_t handle) {
  journal_.make_room();
  const dxf::ItemIndex item = document_.add_before(terminator, bytes, handle);
  dxf::Span absent = document_.item(item).span;
  absent.erased = true;
  journal_.add(ItemChange{item, absent});
  return item;
}

// What the drawing knows of an item follows the item's bytes.
void Drawing::refresh(dxf::ItemIndex item) {
  document_.refresh_type(item);
  const dxf::Item& changed = document_.item(item);
  const std::uint32_t slot = changed.slot;
  if (slot == dxf::no_index) return;
  if (slot < entities_.size() && entities_[slot].item == item) {
    forget_extents(slot);
    Entity& entity = entities_[slot];
    if (!entity.erased) --entities_on_[entity.layer];
    erased_entities_ -= entity.erased ? 1 : 0;
    entity.erased = changed.span.erased;
    erased_entities_ += entity.erased ? 1 : 0;
    const dxf::ItemFacts facts = document_.facts_of(item);
    entity.layer = layer_index(document_.codec().decode(facts.layer));
    if (!entity.erased) ++entities_on_[entity.layer];
    link_extension_dictionary(slot, facts.extension_dictionary);
  } else if (changed.section == dxf::Section::Objects) {
    if (slot >= entities_.size()) return;
    const dxf::ItemFacts facts = document_.facts_of(entities_[slot].item);
    link_extension_dictionary(slot, facts.extension_dictionary);
  } else if (slot < layers_.size() && layer_items_[slot] == item) {
    if (!changed.span.erased) read_layer_state(document_, item, layers_[slot]);
  }
}

NewEntityPlace Drawing::place_for_new() {
  const auto new_handle = [this] {
    std::string digits;
    if (const std::uint64_t handle = document_.new_handle(); handle != 0) {
      dxf::append_handle(digits, handle);
    }
    return digits;
  };
  return {
      .manner = document_.manner(),
      .codec = document_.codec(),
      .subclass_markers = document_.at_least(first_version_with_markers),
      .lightweight_polylines = document_.at_least(first_version_with_light_polylines),
      .owner = model_space_owner_ != 0 ? document_.spelling_of(model_space_owner_) : std::string{},
      .new_handle = new_handle,
  };
}

std::optional<EntityId> Drawing::add_entity(const EntityGeometry& geometry,
                                            const EntityProperties& properties) {
  const std::optional<dxf::ItemIndex> end = document_.end_of(dxf::Section::Entities);
  if (!end) return std::nullopt;
  const std::optional<NewEntity> written = write_entity(geometry, properties, place_for_new());
  return written ? std::optional(add_written(*written, *end)) : std::nullopt;
}

std::optional<EntityId> Drawing::add_copy(EntityId id, const EntityGeometry& geometry) {
  const std::optional<dxf::ItemIndex> end = document_.end_of(dxf::Section::Entities);
  const Entity* const known = entity(id);
  if (!end || known == nullptr) return std::nullopt;
  const std::optional<NewEntity> written =
      copied_with_geometry(document_.bytes(known->item), geometry, place_for_new());
  return written ? std::optional(add_written(*written, *end)) : std::nullopt;
}

EntityId Drawing::add_written(const NewEntity& written, dxf::ItemIndex end) {
  std::uint64_t handle = 0;
  (void)dxf::read_handle(written.handle, handle);
  const dxf::ItemIndex item = add_item(end, written.bytes, handle);
  const auto index = static_cast<std::uint32_t>(entities_.size());
  document_.item(item).slot = index;
  Entity added;
  added.item = item;
  added.records = handle != 0 ? RecordsPlace::Sound : RecordsPlace::None;
  added.layer = layer_index(document_.codec().decode(document_.facts_of(item).layer));
  ++entities_on_[added.layer];
  entities_.push_back(added);
  od_.set_entity_count(entities_.size());
  return id_of(index);
}

bool Drawing::set_geometry(EntityId id, const EntityGeometry& geometry) {
  const Entity* const known = entity(id);
  if (known == nullptr || on_locked_layer(id)) return false;
  const Shape present = geometry_of(id).shape;
  if (std::holds_alternative<std::monostate>(present)) return false;
  // Where there are no lightweight polylines, the old-style ones are what those would be.
  const bool has_light = document_.at_least(first_version_with_light_polylines);
  if (!has_light && is_of_kind(present, PolylineKind::Old2d) &&
      is_of_kind(geometry.shape, PolylineKind::Light)) {
    return false;
  }
  const std::optional<std::string> bytes =
      with_geometry(document_.bytes(known->item), geometry, place_for_new());
  if (!bytes) return false;
  if (*bytes != document_.bytes(known->item)) replace_item(known->item, *bytes);
  return true;
}

bool Drawing::set_properties(EntityId id, const EntityProperties& properties) {
  const Entity* const known = entity(id);
  if (known == nullptr || on_locked_layer(id)) return false;
  const std::string bytes = with_properties(document_.bytes(known->item), properties,
                                            document_.manner(), document_.codec());
  if (bytes != document_.bytes(known->item)) replace_item(known->item, bytes);
  return true;
}

bool Drawing::erase(EntityId id) {
  const Entity* const known = entity(id);
  if (known == nullptr || on_locked_layer(id)) return false;
  const dxf::ItemIndex item = known->item;
  std::unordered_set<std::uint64_t> visited;
  // Its own extension dictionary and those of its parts.
  dxf::GroupReader reader = document_.groups(item);
  dxf::Group group;
  bool in_reference = false;
  while (reader.next(group)) {
    if (group.code == 102) in_reference = group.value == "{ACAD_XDICTIONARY";
    if (group.code == 360 && in_reference) erase_owned(group.handle(), index_of(id), visited);
  }
  erase_item(item);
  return true;
}

// What is linked to the drawing itself, or to another entity, is not the entity's, whatever a
// damaged file says.
std::vector<dxf::ItemIndex> Drawing::objects_owned_by(
    std::uint64_t handle, std::uint32_t entity, std::unordered_set<std::uint64_t>& visited) const {
  const auto is_kept = [this, entity](dxf::ItemIndex item) {
    const std::uint32_t slot = document_.item(item).slot;
    return slot != dxf::no_index && slot != entity;
  };
  return owned_objects(document_, handle, is_kept, visited);
}

void Drawing::erase_owned(std::uint64_t handle, std::uint32_t entity,
                          std::unordered_set<std::uint64_t>& visited) {
  for (const dxf::ItemIndex item : objects_owned_by(handle, entity, visited))
    erase_item(item);
}

std::optional<EntityId> Drawing::add_layer(std::wstring_view name) {
  if (name.empty() || name.size() > 255 ||
      name.find_first_of(forbidden_in_names) != std::wstring_view::npos) {
    return std::nullopt;
  }
  const std::uint32_t index = layer_index(name);
  if (has_record(index)) return layers_[index].id;
  const std::optional<dxf::ItemIndex> end = document_.end_of_table("LAYER");
  const auto model = std::ranges::find_if(layer_items_, [this](dxf::ItemIndex item) {
    return item != dxf::no_index && !document_.item(item).span.erased;
  });
  if (!end || model == layer_items_.end()) return std::nullopt;

  // R12 records have no handle to replace.
  const std::uint64_t handle =
      document_.item(*model).handle != 0 ? document_.new_handle() : std::uint64_t{0};
  const dxf::ItemIndex item =
      add_item(*end, new_layer_record(document_, *model, name, handle), handle);
  layer_items_[index] = item;
  document_.item(item).slot = index;
  return layers_[index].id;
}

bool Drawing::change_layer(const Layer& state) {
  const auto known = std::ranges::find(layers_, state.id, &Layer::id);
  if (known == layers_.end()) return false;
  const auto index = static_cast<std::size_t>(known - layers_.begin());
  if (!has_record(index)) return false;
  const dxf::ItemIndex item = layer_items_[index];
  const std::string bytes = with_layer_state(document_, item, state);
  if (bytes != document_.bytes(item)) replace_item(item, bytes);
  return true;
}

bool Drawing::set_current_layer(EntityId layer) {
  const auto known = std::ranges::find(layers_, layer, &Layer::id);
  return known != layers_.end() && set_variable("CLAYER", to_utf8(known->name));
}

// --- Header variables ---

namespace {

std::string header_name(std::string_view name) {
  std::string upper = "$";
  for (const char c : name)
    upper += c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
  return upper;
}

bool fits(std::int64_t number, dxf::ValueKind kind) {
  switch (kind) {
    case dxf::ValueKind::Boolean:
      return number == 0 || number == 1;
    case dxf::ValueKind::Int16:
      return std::in_range<std::int16_t>(number);
    case dxf::ValueKind::Int32:
      return std::in_range<std::int32_t>(number);
    default:
      return true;
  }
}

bool is_integer(dxf::ValueKind kind) {
  return kind == dxf::ValueKind::Int16 || kind == dxf::ValueKind::Int32 ||
         kind == dxf::ValueKind::Int64 || kind == dxf::ValueKind::Boolean;
}

}  // namespace

std::optional<std::string> Drawing::variable(std::string_view name) const {
  const std::optional<dxf::Group> group = document_.variable(header_name(name));
  if (!group) return std::nullopt;
  const dxf::ValueKind kind = dxf::value_kind(group->code);
  if (is_integer(kind)) return std::to_string(group->integer());
  if (kind != dxf::ValueKind::Real) return to_utf8(document_.codec().decode(group->value));
  std::string digits;
  dxf::append_real(digits, group->real());
  return digits;
}

std::optional<std::int64_t> Drawing::integer_variable(std::string_view name) const {
  const std::optional<dxf::Group> group = document_.variable(header_name(name));
  if (!group || !is_integer(dxf::value_kind(group->code))) return std::nullopt;
  return group->integer();
}

bool Drawing::set_variable(std::string_view name, std::string_view value) {
  journal_.make_room();
  const dxf::Span former = document_.header_span();
  if (!set_variable_for_now(name, value)) return false;
  if (document_.header_span().offset != former.offset) {
    journal_.add(ItemChange{*document_.header(), former});
  }
  return true;
}

bool Drawing::set_variable_for_now(std::string_view name, std::string_view value) {
  const std::string header = header_name(name);
  const std::optional<dxf::Group> group = document_.variable(header);
  const std::optional<dxf::Group> in_file = document_.variable_in_file(header);
  if (!group || !in_file || header == "$HANDSEED" || header == "$ACADVER" ||
      header == "$DWGCODEPAGE") {
    return false;
  }
  // Written as a group of its own, so that the value is framed as the file wants it. The value of
  // the file is put back as the file spells it.
  bool is_of_file = false;
  std::string bytes;
  dxf::GroupWriter writer(document_.manner(), document_.codec(), bytes);
  const dxf::ValueKind kind = dxf::value_kind(group->code);
  if (is_integer(kind)) {
    std::int64_t number = 0;
    if (!dxf::read_integer(value, number) || !fits(number, kind)) return false;
    if (number == group->integer()) return true;
    is_of_file = number == in_file->integer();
    writer.integer(group->code, number);
  } else if (kind == dxf::ValueKind::Real) {
    double number = 0;
    if (!dxf::read_real(value, number)) return false;
    if (number == group->real()) return true;
    is_of_file = number == in_file->real();
    writer.real(group->code, number);
  } else {
    const std::string raw = document_.codec().encode(from_utf8(value));
    if (raw == group->value) return true;
    writer.raw(group->code, raw);
  }
  dxf::GroupReader reader(bytes, document_.manner().framing);
  dxf::Group framed;
  return reader.next(framed) &&
         document_.set_variable(header, is_of_file ? in_file->value : framed.value);
}

}  // namespace korvel
