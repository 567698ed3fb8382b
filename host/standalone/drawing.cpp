#include "host/standalone/drawing.h"

#include <algorithm>

#include "frame/case_mapping.h"
#include "frame/file_bytes.h"
#include "frame/utf.h"
#include "host/standalone/blank_drawing.h"
#include "host/standalone/drawing_file.h"
#include "host/standalone/drawing_reader.h"
#include "host/standalone/entity_reader.h"
#include "host/standalone/od_format.h"
#include "host/standalone/od_writing.h"

namespace korvel {
namespace {

// Layers and entities share the identifiers of the host interface.
constexpr std::uint64_t layer_mark = std::uint64_t{1} << 63;

}  // namespace

std::unique_ptr<Drawing> Drawing::blank() {
  return std::move(*read(std::string(blank_drawing), "blank drawing"));
}

Result<std::unique_ptr<Drawing>> Drawing::open(const std::filesystem::path& path) {
  // Taken first: what is written while the file is read counts as written afterwards.
  const std::optional<disk::Stamp> file = disk::stamp_of(path);
  Result<std::string> bytes = read_file(path);
  if (!bytes) return bytes.failure();
  Result<std::unique_ptr<Drawing>> drawing = read(std::move(*bytes), to_utf8(path_text(path)));
  if (drawing) (*drawing)->file_ = file;
  return drawing;
}

Result<std::unique_ptr<Drawing>> Drawing::read(std::string bytes, const std::string& name) {
  return DrawingReader().read(std::move(bytes), name);
}

// --- Saving ---

std::optional<Failure> Drawing::save(const std::filesystem::path& path) {
  const OdWriting writing(*this);
  const bool had_another_file = has_another_file(path);
  bool changed_meanwhile = false;
  const auto write = [&](const ByteSink& sink) {
    if (!document_.write(sink, writing)) return false;
    changed_meanwhile = !had_another_file && has_another_file(path);
    return !changed_meanwhile;
  };
  std::optional<Failure> failed = save_file({path, write});
  if (changed_meanwhile && !failed) {
    failed = {to_utf8(path_text(path)) + ": not saved: another program has changed it meanwhile"};
  }
  if (!failed) {
    saved_state_ = journal_.state();
    saved_header_ = document_.header_span();
    file_ = disk::stamp_of(path);
  }
  return failed;
}

std::string Drawing::to_bytes() {
  std::string bytes;
  const OdWriting writing(*this);
  (void)document_.write(
      [&bytes](std::string_view piece) {
        bytes += piece;
        return true;
      },
      writing);
  return bytes;
}

bool Drawing::changed() const {
  return journal_.state() != saved_state_ ||
         document_.bytes(document_.header_span()) != document_.bytes(saved_header_);
}

bool Drawing::has_another_file(const std::filesystem::path& path) const {
  const std::optional<disk::Stamp> there = disk::stamp_of(path);
  return there && there != file_;
}

std::optional<std::string> Drawing::why_no_object_data() const {
  if (holds_object_data_) return std::nullopt;
  const std::string known = version().empty() ? "an early version" : version();
  const std::string beginning = "This drawing (" + known + ") has no ";
  if (document_.at_least(od_format::first_version)) {
    return beginning +
           "OBJECTS section with a sound dictionary for object data. Open it in a CAD program, "
           "save it as DXF anew and open that.";
  }
  return beginning +
         "place for object data. Save it as DXF of R2000 or later in a CAD program and open that.";
}

bool Drawing::takes_records(EntityId id) const {
  const Entity* const known = entity(id);
  return holds_object_data_ && known != nullptr && known->records == RecordsPlace::Sound;
}

// --- Entities ---

EntityList Drawing::entities(Space space) const {
  EntityList list;
  list.reserve(entities_.size());
  for (std::uint32_t i = 0; i < entities_.size(); ++i) {
    if (!entities_[i].erased && blocks_[entities_[i].block].space == space) {
      list.push_back(id_of(i));
    }
  }
  return list;
}

bool Drawing::exists(EntityId id) const { return entity(id) != nullptr; }

Space Drawing::space_of(EntityId id) const {
  const Entity* const known = entity(id);
  return known == nullptr ? Space::Model : blocks_[known->block].space;
}

std::wstring Drawing::block_of(EntityId id) const {
  const Entity* const known = entity(id);
  return known == nullptr || blocks_[known->block].space != Space::Block
             ? std::wstring{}
             : blocks_[known->block].name;
}

std::string_view Drawing::type_of(EntityId id) const {
  const Entity* const known = entity(id);
  return known == nullptr ? std::string_view{} : document_.type_of(known->item);
}

std::uint64_t Drawing::handle_of(EntityId id) const {
  const Entity* const known = entity(id);
  return known == nullptr ? 0 : document_.item(known->item).handle;
}

std::optional<EntityId> Drawing::by_handle(std::uint64_t handle) const {
  const std::optional<dxf::ItemIndex> item = document_.by_handle(handle);
  if (!item) return std::nullopt;
  const std::uint32_t slot = document_.item(*item).slot;
  if (slot >= entities_.size() || entities_[slot].item != *item) return std::nullopt;
  return exists(id_of(slot)) ? std::optional(id_of(slot)) : std::nullopt;
}

EntityId Drawing::layer_of(EntityId id) const {
  const Entity* const known = entity(id);
  return known == nullptr ? EntityId{} : layers_[known->layer].id;
}

bool Drawing::on_locked_layer(EntityId id) const {
  const Entity* const known = entity(id);
  return known != nullptr && layers_[known->layer].locked;
}

EntityProperties Drawing::properties_of(EntityId id) const {
  const Entity* const known = entity(id);
  if (known == nullptr) return {};
  return read_properties(document_.groups(known->item), document_.codec());
}

EntityGeometry Drawing::geometry_of(EntityId id) const {
  const Entity* const known = entity(id);
  if (known == nullptr) return {};
  return read_geometry(document_.groups(known->item), document_.codec());
}

EntityGeometry Drawing::picture_of(EntityId id) const {
  const Entity* const known = entity(id);
  if (known == nullptr) return {};
  return read_picture(document_.groups(known->item), document_.codec());
}

// --- Layers ---

// An entity without the name of a layer is on "0".
std::uint32_t Drawing::layer_index(std::wstring_view name) {
  if (name.empty()) name = L"0";
  const auto [found, is_new] =
      layers_by_name_.try_emplace(lower(name), static_cast<std::uint32_t>(layers_.size()));
  if (is_new) {
    layers_.push_back({{layer_mark | layers_.size()}, std::wstring(name)});
    layer_items_.push_back(dxf::no_index);
    entities_on_.push_back(0);
  }
  return found->second;
}

// False for a layer whose making was undone.
bool Drawing::is_there(std::size_t layer) const {
  return entities_on_[layer] > 0 || has_record(layer);
}

bool Drawing::has_record(std::size_t layer) const {
  const dxf::ItemIndex item = layer_items_[layer];
  return item != dxf::no_index && !document_.item(item).span.erased;
}

std::vector<Layer> Drawing::layers() const {
  std::vector<Layer> there;
  for (std::size_t i = 0; i < layers_.size(); ++i) {
    if (is_there(i)) there.push_back(layers_[i]);
  }
  return there;
}

const Layer& Drawing::layer(EntityId id) const { return layers_[id.value & ~layer_mark]; }

std::optional<EntityId> Drawing::layer_named(std::wstring_view name) const {
  const auto found = layers_by_name_.find(lower(name));
  if (found == layers_by_name_.end() || !is_there(found->second)) return std::nullopt;
  return layers_[found->second].id;
}

EntityId Drawing::current_layer() const {
  const std::optional<dxf::Group> variable = document_.variable("$CLAYER");
  const std::wstring name = variable ? document_.codec().decode(variable->value) : L"0";
  return layer_named(name).value_or(layers_.empty() ? EntityId{} : layers_.front().id);
}

// --- Undo ---

std::optional<std::wstring> Drawing::undo() {
  std::optional<Journal::Step> step = journal_.take_undo();
  if (!step) return std::nullopt;
  std::for_each(step->changes.rbegin(), step->changes.rend(),
                [this](Change& change) { apply(change, JournalDirection::Undo); });
  std::wstring name = step->name;
  journal_.undone(std::move(*step));
  return name;
}

std::optional<std::wstring> Drawing::redo() {
  std::optional<Journal::Step> step = journal_.take_redo();
  if (!step) return std::nullopt;
  for (Change& change : step->changes)
    apply(change, JournalDirection::Redo);
  std::wstring name = step->name;
  journal_.redone(std::move(*step));
  return name;
}

void Drawing::apply(Change& change, JournalDirection direction) {
  if (auto* const od = std::get_if<OdChange>(&change)) {
    od_.exchange(*od, direction);
    return;
  }
  auto& item = std::get<ItemChange>(change);
  std::swap(document_.item(item.item).span, item.span);
  refresh(item.item);
}

}  // namespace korvel
