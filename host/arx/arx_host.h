// The drawing and the user of the CAD host.
#pragma once

#include <vector>

#include "frame/drawing_host.h"
#include "host/arx/resources.h"

namespace korvel::arx {

// Made for the run of one command. Holds nothing of the drawing; every operation is one of the
// functions of this folder.
class ArxHost final : public DrawingHost {
 public:
  ArxHost() = default;

  [[nodiscard]] std::optional<FailedFile> replace_files(std::span<const NewFile> files) override;
  [[nodiscard]] EntityList model_space() const override;
  [[nodiscard]] bool opens(EntityId entity, OpenMode mode) const override;
  [[nodiscard]] EntityId layer_of(EntityId entity) const override;
  [[nodiscard]] std::wstring handle_of(EntityId entity) const override;
  [[nodiscard]] EntityId entity_with_handle(std::wstring_view handle) const override;
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
  [[nodiscard]] std::optional<EntityList> ask_selection() override;

  void print(std::wstring_view text) override;
  [[nodiscard]] std::optional<std::wstring> ask_string(std::wstring_view prompt) override;
  [[nodiscard]] Answer<std::int32_t> ask_integer(std::wstring_view prompt) override;
  [[nodiscard]] Answer<Point3> ask_point(std::wstring_view prompt) override;
  [[nodiscard]] std::optional<EntityId> ask_entity(std::wstring_view prompt) override;

  [[nodiscard]] bool show(Dialog& dialog) override;
  [[nodiscard]] bool ask_yes_no(std::wstring_view caption, std::wstring_view text,
                                BoxIcon icon) override;
  void show_text(std::wstring_view title, std::wstring_view text, int width, int height) override;
  [[nodiscard]] std::optional<std::filesystem::path> choose_file_to_open(
      const FileQuestion& question) override;
  [[nodiscard]] std::optional<std::filesystem::path> choose_file_to_save(
      const FileQuestion& question) override;

  [[nodiscard]] std::unique_ptr<PaletteSet> make_palette_set(const PaletteSetTraits& traits,
                                                             Palette& content) override;
  [[nodiscard]] std::optional<std::wstring> profile(std::wstring_view name) const override;
  void set_profile(std::wstring_view name, std::wstring_view value) override;

  void start_progress(std::wstring_view label, std::int64_t range) override;
  void move_progress(std::int64_t position) override;
  void end_progress() override;
  [[nodiscard]] bool interrupted() override;

  bool run_command(std::wstring_view name, EntityId entity) override;
  void cancel_command() override;
  void send(std::wstring_view text) override;
  void add_reactor(EditorReactor& reactor) override;
  void remove_reactor(EditorReactor& reactor) override;

  void lock() override;
  void unlock() override;
  [[nodiscard]] std::optional<int> variable(std::wstring_view name) const override;
  bool set_variable(std::wstring_view name, int value) override;
  void enter_resources() override;
  void leave_resources() override;

 private:
  std::vector<std::unique_ptr<ModuleResources>> resources_;  // entered and not yet left
  bool interrupted_ = false;
};

}  // namespace korvel::arx
