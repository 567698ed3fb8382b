// DrawingHost over a drawing in memory. What asks a person (prompts, dialogs, progress) is left to
// the front end that derives from this.
#pragma once

#include <map>
#include <memory>

#include "frame/drawing_host.h"
#include "host/standalone/drawing.h"
#include "host/standalone/standalone_store.h"

namespace korvel {

class StandaloneHost : public DrawingHost {
 public:
  explicit StandaloneHost(std::unique_ptr<Drawing> drawing) : drawing_(std::move(drawing)) {}

  [[nodiscard]] Drawing& drawing() { return *drawing_; }
  [[nodiscard]] const Drawing& drawing() const { return *drawing_; }
  // Another drawing becomes the active one; selections of the old one are forgotten.
  void replace_drawing(std::unique_ptr<Drawing> drawing);

  // The last selection made, for "Previous".
  [[nodiscard]] const EntityList& previous_selection() const { return previous_; }
  void set_previous_selection(EntityList entities) { previous_ = std::move(entities); }

  [[nodiscard]] std::optional<FailedFile> replace_files(std::span<const NewFile> files) override;
  [[nodiscard]] EntityList model_space() const override;
  [[nodiscard]] bool opens(EntityId entity, OpenMode mode) const override;
  [[nodiscard]] EntityId layer_of(EntityId entity) const override;
  [[nodiscard]] std::wstring handle_of(EntityId entity) const override;
  [[nodiscard]] EntityId entity_with_handle(std::wstring_view handle) const override;
  void append_handle(EntityId entity, std::wstring& out) const override;
  [[nodiscard]] std::optional<EntityGeometry> geometry_of(EntityId entity) const override;
  [[nodiscard]] std::optional<Extents> extents_of(EntityId entity) const override;
  bool set_geometry(EntityId entity, const EntityGeometry& geometry) override;
  [[nodiscard]] std::optional<EntityProperties> properties_of(EntityId entity) const override;
  bool set_properties(EntityId entity, const EntityProperties& properties) override;
  [[nodiscard]] std::vector<Layer> layers() const override;
  [[nodiscard]] std::optional<std::wstring> block_name_of(EntityId entity) const override;
  [[nodiscard]] std::vector<BlockAttribute> attributes_of(EntityId reference) const override;
  std::size_t set_attribute_texts(EntityId reference,
                                  const std::vector<AttributeText>& texts) override;
  [[nodiscard]] std::vector<ExtensionEntry> extension_entries(EntityId entity) const override;
  bool store_extension_entry(EntityId entity, const ExtensionEntry& entry) override;
  [[nodiscard]] EntityList pick_first() const override;
  void set_pick_first(const EntityList& entities) override;
  // Kept until the program ends.
  [[nodiscard]] std::optional<std::wstring> profile(std::wstring_view name) const override;
  void set_profile(std::wstring_view name, std::wstring_view value) override;
  void add_reactor(EditorReactor& reactor) override;
  void remove_reactor(EditorReactor& reactor) override;
  void lock() override;
  void unlock() override;
  [[nodiscard]] std::optional<int> variable(std::wstring_view name) const override;
  bool set_variable(std::wstring_view name, int value) override;

 protected:
  // How a command of the front end ended, for tell_reactors.
  enum class CommandEnd { Ended, Cancelled, Failed };
  void tell_reactors(std::wstring_view command, CommandEnd end);

 private:
  std::unique_ptr<Drawing> drawing_;
  EntityList pick_first_;
  EntityList previous_;
  std::vector<EditorReactor*> reactors_;
  std::map<std::wstring, std::wstring, std::less<>> profile_;
};

}  // namespace korvel
