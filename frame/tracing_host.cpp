#include "frame/tracing_host.h"

#include "frame/dialog.h"
#include "frame/forwarding_host.h"
#include "frame/trace_line.h"

namespace korvel {
namespace {

class TracingHost final : public ForwardingHost {
 public:
  TracingHost(DrawingHost& target, TraceSink sink) : Base(target), sink_(std::move(sink)) {}

  [[nodiscard]] std::optional<FailedFile> replace_files(std::span<const NewFile> files) override {
    return TraceLine(L"replace_files", files).returns(sink_, Base::replace_files(files));
  }
  void report_failed_file(const FailedFile& file) override {
    TraceLine(L"report_failed_file", file).ends(sink_);
    Base::report_failed_file(file);
  }
  [[nodiscard]] EntityList model_space() const override {
    return TraceLine(L"model_space").returns(sink_, Base::model_space());
  }
  [[nodiscard]] bool opens(EntityId entity, OpenMode mode) const override {
    return TraceLine(L"opens", entity, mode).returns(sink_, Base::opens(entity, mode));
  }
  [[nodiscard]] EntityId layer_of(EntityId entity) const override {
    return TraceLine(L"layer_of", entity).returns(sink_, Base::layer_of(entity));
  }
  [[nodiscard]] std::wstring handle_of(EntityId entity) const override {
    return TraceLine(L"handle_of", entity).returns(sink_, Base::handle_of(entity));
  }
  [[nodiscard]] EntityId entity_with_handle(std::wstring_view handle) const override {
    return TraceLine(L"entity_with_handle", handle)
        .returns(sink_, Base::entity_with_handle(handle));
  }
  void append_handle(EntityId entity, std::wstring& out) const override {
    const std::size_t before = out.size();
    Base::append_handle(entity, out);
    TraceLine(L"append_handle", entity).returns(sink_, out.substr(before));
  }
  [[nodiscard]] std::optional<EntityGeometry> geometry_of(EntityId entity) const override {
    return TraceLine(L"geometry_of", entity).returns(sink_, Base::geometry_of(entity));
  }
  [[nodiscard]] std::optional<Extents> extents_of(EntityId entity) const override {
    return TraceLine(L"extents_of", entity).returns(sink_, Base::extents_of(entity));
  }
  [[nodiscard]] EntityList entities_around(Point3 point) override {
    return TraceLine(L"entities_around", point).returns(sink_, Base::entities_around(point));
  }
  bool set_geometry(EntityId entity, const EntityGeometry& geometry) override {
    return TraceLine(L"set_geometry", entity, geometry)
        .returns(sink_, Base::set_geometry(entity, geometry));
  }
  [[nodiscard]] std::optional<EntityProperties> properties_of(EntityId entity) const override {
    return TraceLine(L"properties_of", entity).returns(sink_, Base::properties_of(entity));
  }
  bool set_properties(EntityId entity, const EntityProperties& properties) override {
    return TraceLine(L"set_properties", entity, properties)
        .returns(sink_, Base::set_properties(entity, properties));
  }
  [[nodiscard]] std::vector<Layer> layers() const override {
    return TraceLine(L"layers").returns(sink_, Base::layers());
  }
  [[nodiscard]] std::optional<std::wstring> block_name_of(EntityId entity) const override {
    return TraceLine(L"block_name_of", entity).returns(sink_, Base::block_name_of(entity));
  }
  [[nodiscard]] std::vector<BlockAttribute> attributes_of(EntityId reference) const override {
    return TraceLine(L"attributes_of", reference).returns(sink_, Base::attributes_of(reference));
  }
  std::size_t set_attribute_texts(EntityId reference,
                                  const std::vector<AttributeText>& texts) override {
    return TraceLine(L"set_attribute_texts", reference, texts)
        .returns(sink_, Base::set_attribute_texts(reference, texts));
  }
  [[nodiscard]] std::vector<ExtensionEntry> extension_entries(EntityId entity) const override {
    return TraceLine(L"extension_entries", entity).returns(sink_, Base::extension_entries(entity));
  }
  bool store_extension_entry(EntityId entity, const ExtensionEntry& entry) override {
    return TraceLine(L"store_extension_entry", entity, entry)
        .returns(sink_, Base::store_extension_entry(entity, entry));
  }
  [[nodiscard]] EntityList pick_first() const override {
    return TraceLine(L"pick_first").returns(sink_, Base::pick_first());
  }
  void set_pick_first(const EntityList& entities) override {
    TraceLine(L"set_pick_first", entities).ends(sink_);
    Base::set_pick_first(entities);
  }
  [[nodiscard]] std::optional<EntityList> ask_selection() override {
    return TraceLine(L"ask_selection").returns(sink_, Base::ask_selection());
  }
  void print(std::wstring_view text) override {
    TraceLine(L"print", text).ends(sink_);
    Base::print(text);
  }
  void print_error(std::wstring_view message) override {
    TraceLine(L"print_error", message).ends(sink_);
    Base::print_error(message);
  }
  void note_refused_input(std::wstring_view reason) override {
    TraceLine(L"note_refused_input", reason).ends(sink_);
    Base::note_refused_input(reason);
  }
  [[nodiscard]] std::optional<std::wstring> ask_string(std::wstring_view prompt) override {
    return TraceLine(L"ask_string", prompt).returns(sink_, Base::ask_string(prompt));
  }
  [[nodiscard]] Answer<std::int32_t> ask_integer(std::wstring_view prompt) override {
    return TraceLine(L"ask_integer", prompt).returns(sink_, Base::ask_integer(prompt));
  }
  [[nodiscard]] Answer<Point3> ask_point(std::wstring_view prompt) override {
    return TraceLine(L"ask_point", prompt).returns(sink_, Base::ask_point(prompt));
  }
  [[nodiscard]] std::optional<EntityId> ask_entity(std::wstring_view prompt) override {
    return TraceLine(L"ask_entity", prompt).returns(sink_, Base::ask_entity(prompt));
  }
  [[nodiscard]] bool show(Dialog& dialog) override {
    return TraceLine(L"show", dialog.title()).returns(sink_, Base::show(dialog));
  }
  [[nodiscard]] bool ask_yes_no(std::wstring_view caption, std::wstring_view text,
                                BoxIcon icon) override {
    return TraceLine(L"ask_yes_no", caption, text)
        .returns(sink_, Base::ask_yes_no(caption, text, icon));
  }
  void show_text(std::wstring_view title, std::wstring_view text, int width, int height) override {
    TraceLine(L"show_text", title, text, width, height).ends(sink_);
    Base::show_text(title, text, width, height);
  }
  [[nodiscard]] std::optional<std::filesystem::path> choose_file_to_open(
      const FileQuestion& question) override {
    return TraceLine(L"choose_file_to_open", question.filter)
        .returns(sink_, Base::choose_file_to_open(question));
  }
  [[nodiscard]] std::optional<std::filesystem::path> choose_file_to_save(
      const FileQuestion& question) override {
    return TraceLine(L"choose_file_to_save", question.filter)
        .returns(sink_, Base::choose_file_to_save(question));
  }
  [[nodiscard]] std::unique_ptr<PaletteSet> make_palette_set(const PaletteSetTraits& traits,
                                                             Palette& content) override {
    TraceLine(L"make_palette_set", traits.name).ends(sink_);
    return Base::make_palette_set(traits, content);
  }
  [[nodiscard]] std::optional<std::wstring> profile(std::wstring_view name) const override {
    return TraceLine(L"profile", name).returns(sink_, Base::profile(name));
  }
  void set_profile(std::wstring_view name, std::wstring_view value) override {
    TraceLine(L"set_profile", name, value).ends(sink_);
    Base::set_profile(name, value);
  }
  void start_progress(std::wstring_view label, std::int64_t range) override {
    TraceLine(L"start_progress", label, range).ends(sink_);
    Base::start_progress(label, range);
  }
  void move_progress(std::int64_t position) override {
    TraceLine(L"move_progress", position).ends(sink_);
    Base::move_progress(position);
  }
  void end_progress() override {
    TraceLine(L"end_progress").ends(sink_);
    Base::end_progress();
  }
  [[nodiscard]] bool interrupted() override {
    return TraceLine(L"interrupted").returns(sink_, Base::interrupted());
  }
  bool run_command(std::wstring_view name, EntityId entity) override {
    return TraceLine(L"run_command", name, entity).returns(sink_, Base::run_command(name, entity));
  }
  void cancel_command() override {
    TraceLine(L"cancel_command").ends(sink_);
    Base::cancel_command();
  }
  void send(std::wstring_view text) override {
    TraceLine(L"send", text).ends(sink_);
    Base::send(text);
  }
  void add_reactor(EditorReactor& reactor) override {
    TraceLine(L"add_reactor").ends(sink_);
    Base::add_reactor(reactor);
  }
  void remove_reactor(EditorReactor& reactor) override {
    TraceLine(L"remove_reactor").ends(sink_);
    Base::remove_reactor(reactor);
  }
  void lock() override {
    TraceLine(L"lock").ends(sink_);
    Base::lock();
  }
  void unlock() override {
    TraceLine(L"unlock").ends(sink_);
    Base::unlock();
  }
  [[nodiscard]] std::optional<int> variable(std::wstring_view name) const override {
    return TraceLine(L"variable", name).returns(sink_, Base::variable(name));
  }
  bool set_variable(std::wstring_view name, int value) override {
    return TraceLine(L"set_variable", name, value).returns(sink_, Base::set_variable(name, value));
  }
  void enter_resources() override {
    TraceLine(L"enter_resources").ends(sink_);
    Base::enter_resources();
  }
  void leave_resources() override {
    TraceLine(L"leave_resources").ends(sink_);
    Base::leave_resources();
  }

 private:
  using Base = ForwardingHost;
  TraceSink sink_;
};

}  // namespace

std::unique_ptr<DrawingHost> tracing_host(DrawingHost& target, TraceSink sink) {
  return std::make_unique<TracingHost>(target, std::move(sink));
}

}  // namespace korvel
