#include "host/arx/arx_host.h"

#include "host/arx/block_references.h"
#include "host/arx/command_line.h"
#include "host/arx/database.h"
#include "host/arx/dialogs.h"
#include "host/arx/editor_reactor.h"
#include "host/arx/extension_dictionary.h"
#include "host/arx/geometry.h"
#include "host/arx/host_command.h"
#include "host/arx/palette_set.h"
#include "host/arx/profile.h"
#include "host/arx/properties.h"
#include "host/arx/reshaping.h"
#include "host/arx/selection.h"
#include "host/files/replace_files.h"

namespace korvel::arx {

std::optional<FailedFile> ArxHost::replace_files(std::span<const NewFile> files) {
  return korvel::replace_files(files);
}

EntityList ArxHost::model_space() const { return arx::model_space(); }

bool ArxHost::opens(EntityId entity, OpenMode mode) const { return arx::opens(entity, mode); }

EntityId ArxHost::layer_of(EntityId entity) const { return arx::layer_of(entity); }

std::wstring ArxHost::handle_of(EntityId entity) const { return arx::handle_of(entity); }

EntityId ArxHost::entity_with_handle(std::wstring_view handle) const {
  return arx::entity_with_handle(handle);
}

std::optional<EntityGeometry> ArxHost::geometry_of(EntityId entity) const {
  return arx::geometry_of(entity);
}

std::optional<Extents> ArxHost::extents_of(EntityId entity) const {
  return arx::extents_of(entity);
}

bool ArxHost::set_geometry(EntityId entity, const EntityGeometry& geometry) {
  return arx::set_geometry(entity, geometry);
}

std::optional<EntityProperties> ArxHost::properties_of(EntityId entity) const {
  return arx::properties_of(entity);
}

bool ArxHost::set_properties(EntityId entity, const EntityProperties& properties) {
  return arx::set_properties(entity, properties);
}

std::vector<Layer> ArxHost::layers() const { return arx::layers(); }

std::optional<std::wstring> ArxHost::block_name_of(EntityId entity) const {
  return arx::block_name_of(entity);
}

std::vector<BlockAttribute> ArxHost::attributes_of(EntityId reference) const {
  return arx::attributes_of(reference);
}

std::size_t ArxHost::set_attribute_texts(EntityId reference,
                                         const std::vector<AttributeText>& texts) {
  return arx::set_attribute_texts(reference, texts);
}

std::vector<ExtensionEntry> ArxHost::extension_entries(EntityId entity) const {
  return arx::extension_entries(entity);
}

bool ArxHost::store_extension_entry(EntityId entity, const ExtensionEntry& entry) {
  return arx::store_extension_entry(entity, entry);
}

EntityList ArxHost::pick_first() const { return arx::pick_first(); }

void ArxHost::set_pick_first(const EntityList& entities) { arx::set_pick_first(entities); }

std::optional<EntityList> ArxHost::ask_selection() { return arx::ask_selection(); }

void ArxHost::print(std::wstring_view text) { arx::print(text); }

std::optional<std::wstring> ArxHost::ask_string(std::wstring_view prompt) {
  return arx::ask_string(prompt);
}

Answer<std::int32_t> ArxHost::ask_integer(std::wstring_view prompt) {
  return arx::ask_integer(prompt);
}

Answer<Point3> ArxHost::ask_point(std::wstring_view prompt) { return arx::ask_point(prompt); }

std::optional<EntityId> ArxHost::ask_entity(std::wstring_view prompt) {
  return arx::ask_entity(prompt);
}

bool ArxHost::show(Dialog& dialog) { return arx::show(dialog); }

bool ArxHost::ask_yes_no(std::wstring_view caption, std::wstring_view text, BoxIcon icon) {
  return arx::ask_yes_no(caption, text, icon);
}

void ArxHost::show_text(std::wstring_view title, std::wstring_view text, int width, int height) {
  arx::show_text(title, text, width, height);
}

std::optional<std::filesystem::path> ArxHost::choose_file_to_open(const FileQuestion& question) {
  return arx::choose_file_to_open(question);
}

std::optional<std::filesystem::path> ArxHost::choose_file_to_save(const FileQuestion& question) {
  return arx::choose_file_to_save(question);
}

std::unique_ptr<PaletteSet> ArxHost::make_palette_set(const PaletteSetTraits& traits,
                                                      Palette& content) {
  return arx::make_palette_set(traits, content);
}

std::optional<std::wstring> ArxHost::profile(std::wstring_view name) const {
  return arx::profile(name);
}

void ArxHost::set_profile(std::wstring_view name, std::wstring_view value) {
  arx::set_profile(name, value);
}

void ArxHost::start_progress(std::wstring_view label, std::int64_t range) {
  arx::start_progress(label, range);
}

void ArxHost::move_progress(std::int64_t position) { arx::move_progress(position); }

void ArxHost::end_progress() { arx::end_progress(); }

bool ArxHost::interrupted() {
  interrupted_ = interrupted_ || arx::interrupted();
  return interrupted_;
}

bool ArxHost::run_command(std::wstring_view name, EntityId entity) {
  return arx::run_command(name, entity);
}

void ArxHost::cancel_command() { arx::cancel_command(); }

void ArxHost::send(std::wstring_view text) { arx::send(text); }

void ArxHost::add_reactor(EditorReactor& reactor) { arx::add_reactor(reactor); }

void ArxHost::remove_reactor(EditorReactor& reactor) { arx::remove_reactor(reactor); }

void ArxHost::lock() { arx::lock(); }

void ArxHost::unlock() { arx::unlock(); }

std::optional<int> ArxHost::variable(std::wstring_view name) const { return arx::variable(name); }

bool ArxHost::set_variable(std::wstring_view name, int value) {
  return arx::set_variable(name, value);
}

void ArxHost::enter_resources() { resources_.push_back(std::make_unique<ModuleResources>()); }

void ArxHost::leave_resources() { resources_.pop_back(); }

}  // namespace korvel::arx
