#include "host/standalone/standalone_host.h"

#include <algorithm>
#include <utility>

#include "frame/utf.h"
#include "host/files/replace_files.h"
#include "host/standalone/dxf/number_text.h"

namespace korvel {
namespace {

// What was erased since it was selected is no longer there.
EntityList existing(const Drawing& drawing, const EntityList& entities) {
  EntityList there;
  there.reserve(entities.size());
  for (const EntityId id : entities) {
    if (drawing.exists(id)) there.push_back(id);
  }
  return there;
}

}  // namespace

void StandaloneHost::replace_drawing(std::unique_ptr<Drawing> drawing) {
  pick_first_.clear();
  previous_.clear();
  drawing_ = std::move(drawing);
}

std::optional<FailedFile> StandaloneHost::replace_files(std::span<const NewFile> files) {
  return korvel::replace_files(files);
}

EntityList StandaloneHost::model_space() const { return drawing_->entities(Space::Model); }

bool StandaloneHost::opens(EntityId entity, OpenMode mode) const {
  return drawing_->exists(entity) &&
         !(mode == OpenMode::Write && drawing_->on_locked_layer(entity));
}

EntityId StandaloneHost::layer_of(EntityId entity) const { return drawing_->layer_of(entity); }

std::wstring StandaloneHost::handle_of(EntityId entity) const {
  std::wstring handle;
  append_handle(entity, handle);
  return handle;
}

void StandaloneHost::append_handle(EntityId entity, std::wstring& out) const {
  const std::uint64_t handle = drawing_->handle_of(entity);
  if (handle == 0) return;
  std::string digits;
  dxf::append_handle(digits, handle);
  for (const char digit : digits)
    out.push_back(static_cast<wchar_t>(digit));
}

EntityId StandaloneHost::entity_with_handle(std::wstring_view handle) const {
  std::uint64_t number = 0;
  if (!dxf::read_handle(to_utf8(handle), number)) return {};
  // The drawing finds a block reference by the handles of its attributes, too.
  const EntityId entity = drawing_->by_handle(number).value_or(EntityId{});
  return drawing_->handle_of(entity) == number ? entity : EntityId{};
}

std::optional<EntityGeometry> StandaloneHost::geometry_of(EntityId entity) const {
  if (!drawing_->exists(entity)) return std::nullopt;
  return drawing_->geometry_of(entity);
}

std::optional<Extents> StandaloneHost::extents_of(EntityId entity) const {
  return drawing_->extents_of(entity);
}

bool StandaloneHost::set_geometry(EntityId entity, const EntityGeometry& geometry) {
  return drawing_->set_geometry(entity, geometry);
}

std::optional<EntityProperties> StandaloneHost::properties_of(EntityId entity) const {
  if (!drawing_->exists(entity)) return std::nullopt;
  return drawing_->properties_of(entity);
}

bool StandaloneHost::set_properties(EntityId entity, const EntityProperties& properties) {
  return drawing_->set_properties(entity, properties);
}

std::vector<Layer> StandaloneHost::layers() const { return drawing_->layers(); }

std::optional<std::wstring> StandaloneHost::block_name_of(EntityId entity) const {
  return drawing_->block_name_of(entity);
}

std::vector<BlockAttribute> StandaloneHost::attributes_of(EntityId reference) const {
  return drawing_->attributes_of(reference);
}

std::size_t StandaloneHost::set_attribute_texts(EntityId reference,
                                                const std::vector<AttributeText>& texts) {
  return drawing_->set_attribute_texts(reference, texts);
}

std::vector<ExtensionEntry> StandaloneHost::extension_entries(EntityId entity) const {
  return drawing_->extension_entries(entity);
}

bool StandaloneHost::store_extension_entry(EntityId entity, const ExtensionEntry& entry) {
  return drawing_->store_extension_entry(entity, entry);
}

EntityList StandaloneHost::pick_first() const { return existing(*drawing_, pick_first_); }

void StandaloneHost::set_pick_first(const EntityList& entities) {
  pick_first_ = existing(*drawing_, entities);
  if (!pick_first_.empty()) previous_ = pick_first_;
}

std::optional<std::wstring> StandaloneHost::profile(std::wstring_view name) const {
  const auto found = profile_.find(name);
  return found == profile_.end() ? std::nullopt : std::optional(found->second);
}

void StandaloneHost::set_profile(std::wstring_view name, std::wstring_view value) {
  profile_.insert_or_assign(std::wstring(name), std::wstring(value));
}

void StandaloneHost::add_reactor(EditorReactor& reactor) {
  if (std::ranges::find(reactors_, &reactor) == reactors_.end()) reactors_.push_back(&reactor);
}

void StandaloneHost::remove_reactor(EditorReactor& reactor) { std::erase(reactors_, &reactor); }

void StandaloneHost::tell_reactors(std::wstring_view command, CommandEnd end) {
  for (EditorReactor* const reactor : std::vector(reactors_)) {
    if (std::ranges::find(reactors_, reactor) == reactors_.end()) continue;  // removed by another
    switch (end) {
      case CommandEnd::Ended:
        reactor->command_ended(command);
        break;
      case CommandEnd::Cancelled:
        reactor->command_cancelled(command);
        break;
      case CommandEnd::Failed:
        reactor->command_failed(command);
        break;
    }
  }
}

void StandaloneHost::lock() { drawing_->journal().open(); }

void StandaloneHost::unlock() { drawing_->journal().close(); }

std::optional<int> StandaloneHost::variable(std::wstring_view name) const {
  const std::optional<std::int64_t> number = drawing_->integer_variable(to_utf8(name));
  if (!number || !std::in_range<int>(*number)) return std::nullopt;
  return static_cast<int>(*number);
}

bool StandaloneHost::set_variable(std::wstring_view name, int value) {
  return variable(name) && drawing_->set_variable_for_now(to_utf8(name), std::to_string(value));
}

}  // namespace korvel
