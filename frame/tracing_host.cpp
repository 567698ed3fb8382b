#include "frame/tracing_host.h"

#include <algorithm>
#include <array>

#include "frame/dialog.h"
#include "frame/format.h"
#include "frame/forwarding_host.h"
#include "frame/text_file.h"
#include "frame/value_text.h"

namespace korvel {
namespace {

constexpr std::size_t longest_text = 60;
constexpr std::size_t longest_list = 8;

// `name(argument, argument) = result`, put together from the left.
class TraceLine {
 public:
  template <class... Args>
  explicit TraceLine(std::wstring_view name, const Args&... args) : line_(name) {
    std::wstring_view between = L"(";
    ((line_ += between, append(args), between = L", "), ...);
    if constexpr (sizeof...(args) == 0) line_ += between;
  }

  // Writes the line; what the call gave is handed on.
  template <class Result>
  const Result& returns(const TraceSink& sink, const Result& result) {
    line_ += L") = ";
    append(result);
    sink(line_);
    return result;
  }
  void ends(const TraceSink& sink) {
    line_ += L')';
    sink(line_);
  }

 private:
  // A template, so that nothing else converts to a number or a truth value.
  template <class Number>
  requires FormatInteger<Number> || std::same_as<Number, bool>
  void append(Number number) {
    if constexpr (std::same_as<Number, bool>) {
      line_ += number ? L"true" : L"false";
    } else {
      append_integer(number, line_);
    }
  }
  void append(std::wstring_view text) {
    line_ += L'"';
    for (const wchar_t unit : text.substr(0, longest_text))
      append_unit(unit);
    line_ += L'"';
    if (text.size() > longest_text) append_total(text.size());
  }
  void append(const std::wstring& text) { append(std::wstring_view(text)); }
  void append_unit(wchar_t unit) {
    if (static_cast<char32_t>(unit) >= 0x20) {
      line_ += unit;
      return;
    }
    constexpr std::wstring_view digits = L"0123456789ABCDEF";
    line_ += L"\\x";
    line_ += digits[static_cast<std::size_t>(unit) / 16];
    line_ += digits[static_cast<std::size_t>(unit) % 16];
  }
  void append_total(std::size_t total) {
    line_ += L"... (";
    append_integer(total, line_);
    line_ += L')';
  }
  void append(OpenMode mode) { line_ += mode == OpenMode::Read ? L"read" : L"write"; }
  void append(EntityId id) {
    line_ += L'#';
    append_integer(id.value, line_);
  }
  void append(const ODValueView& value) {
    if (const auto* const text = std::get_if<std::wstring_view>(&value)) return append(*text);
    append_value_text(value, line_);
  }
  void append(const ODValue& value) { append(view_of(value)); }
  void append(const Point3& point) { append_value_text(point, line_); }
  void append(const ODRecord& record) {
    append(record.table);
    append(record.values);
  }
  void append(const ODColumnDef& column) { append(column.name); }
  void append(const ODTableDef& definition) {
    append(definition.name);
    append(definition.columns);
  }
  void append(const BlockAttribute& attribute) {
    append(attribute.tag);
    append(attribute.text);
  }
  void append(const ExtensionEntry& entry) { append(entry.name); }
  void append(const Layer& layer) { append(layer.name); }
  void append(const EntityProperties& properties) { append(properties.layer); }
  void append(const EntityGeometry&) { append_word(L"shape"); }
  void append(const Extents& extents) {
    append(extents.min);
    append_word(L" to ");
    append(extents.max);
  }
  void append(const std::filesystem::path& path) { append(path_text(path)); }
  void append(TableChange change) {
    static constexpr std::array<std::wstring_view, 4> names = {L"Done", L"Failed", L"TableExists",
                                                               L"TableMissing"};
    line_ += names[static_cast<std::size_t>(change)];
  }
  void append(ColumnChange change) {
    static constexpr std::array<std::wstring_view, 5> names = {L"Done", L"Failed", L"DuplicateName",
                                                               L"ColumnMissing", L"TableMissing"};
    line_ += names[static_cast<std::size_t>(change)];
  }
  template <class Value>
  void append(const std::optional<Value>& value) {
    value ? append(*value) : append_word(L"none");
  }
  template <class Value>
  void append(const Answer<Value>& answer) {
    switch (answer.kind) {
      case Answer<Value>::Kind::Given:
        return append(answer.value);
      case Answer<Value>::Kind::Enter:
        return append_word(L"Enter");
      case Answer<Value>::Kind::Cancelled:
        return append_word(L"Esc");
    }
  }
  template <class Value>
  void append(const std::vector<Value>& list) {
    append(std::span(list));
  }
  template <class Value>
  void append(std::span<const Value> list) {
    std::wstring_view between = L"[";
    for (std::size_t i = 0; i < std::min(list.size(), longest_list); ++i) {
      line_ += between;
      append(list[i]);
      between = L", ";
    }
    line_ += list.empty() ? L"[]" : L"]";
    if (list.size() > longest_list) append_total(list.size());
  }
  void append_word(std::wstring_view word) { line_ += word; }

  std::wstring line_;
};

class TracingRecordIterator final : public ForwardingRecordIterator {
 public:
  TracingRecordIterator(std::unique_ptr<RecordIterator> target, const TraceSink& sink)
      : ForwardingRecordIterator(std::move(target)), sink_(sink) {}
  TracingRecordIterator(const TracingRecordIterator&) = delete;
  TracingRecordIterator& operator=(const TracingRecordIterator&) = delete;
  ~TracingRecordIterator() override { TraceLine(L"  end").ends(sink_); }

  bool open(EntityId entity, OpenMode mode) override {
    return TraceLine(L"  open", entity, mode).returns(sink_, Base::open(entity, mode));
  }
  [[nodiscard]] int count() const override {
    return TraceLine(L"  count").returns(sink_, Base::count());
  }
  void start() override {
    TraceLine(L"  start").ends(sink_);
    Base::start();
  }
  [[nodiscard]] bool done() const override {
    return TraceLine(L"  done").returns(sink_, Base::done());
  }
  void next() override {
    TraceLine(L"  next").ends(sink_);
    Base::next();
  }
  [[nodiscard]] std::wstring_view table_name() const override {
    const std::wstring_view name = Base::table_name();
    TraceLine(L"  table_name").returns(sink_, name);
    return name;
  }
  [[nodiscard]] int value_count() const override {
    return TraceLine(L"  value_count").returns(sink_, Base::value_count());
  }
  [[nodiscard]] ODValueView value(int index) const override {
    return TraceLine(L"  value", index).returns(sink_, Base::value(index));
  }
  void read(ODRecord& record) const override {
    Base::read(record);
    TraceLine(L"  read").returns(sink_, record);
  }
  bool update(const ODRecord& record) override {
    return TraceLine(L"  update", record).returns(sink_, Base::update(record));
  }
  bool set_value(int index, const ODValueView& value) override {
    return TraceLine(L"  set_value", index, value).returns(sink_, Base::set_value(index, value));
  }
  bool remove() override { return TraceLine(L"  remove").returns(sink_, Base::remove()); }

 private:
  using Base = ForwardingRecordIterator;
  const TraceSink& sink_;
};

class TracingAttachedDrawing final : public ForwardingAttachedDrawing {
 public:
  TracingAttachedDrawing(std::unique_ptr<AttachedDrawing> target, const TraceSink& sink)
      : Base(std::move(target)), sink_(sink) {}
  TracingAttachedDrawing(const TracingAttachedDrawing&) = delete;
  TracingAttachedDrawing& operator=(const TracingAttachedDrawing&) = delete;
  ~TracingAttachedDrawing() override { TraceLine(L"  detach").ends(sink_); }

  bool activate() override { return TraceLine(L"  activate").returns(sink_, Base::activate()); }
  void deactivate() override {
    TraceLine(L"  deactivate").ends(sink_);
    Base::deactivate();
  }
  [[nodiscard]] std::vector<std::wstring> table_names() const override {
    return TraceLine(L"  table_names").returns(sink_, Base::table_names());
  }
  [[nodiscard]] std::optional<ODTableDef> table(std::wstring_view name) const override {
    return TraceLine(L"  table", name).returns(sink_, Base::table(name));
  }
  TableChange copy_definition(std::wstring_view table_name) override {
    return TraceLine(L"  copy_definition", table_name)
        .returns(sink_, Base::copy_definition(table_name));
  }

 private:
  using Base = ForwardingAttachedDrawing;
  const TraceSink& sink_;
};

class TracingStore final : public ForwardingStore {
 public:
  TracingStore(ODStore& target, TraceSink sink) : Base(target), sink_(std::move(sink)) {}

  [[nodiscard]] std::vector<std::wstring> table_names() const override {
    return TraceLine(L"table_names").returns(sink_, Base::table_names());
  }
  [[nodiscard]] std::optional<ODTableDef> table(std::wstring_view name) const override {
    return TraceLine(L"table", name).returns(sink_, Base::table(name));
  }
  TableChange define_table(const ODTableDef& definition) override {
    return TraceLine(L"define_table", definition).returns(sink_, Base::define_table(definition));
  }
  TableChange delete_table(std::wstring_view name) override {
    return TraceLine(L"delete_table", name).returns(sink_, Base::delete_table(name));
  }
  TableChange rename_table(std::wstring_view from, std::wstring_view to) override {
    return TraceLine(L"rename_table", from, to).returns(sink_, Base::rename_table(from, to));
  }
  ColumnChange rename_column(std::wstring_view table_name, std::wstring_view from,
                             std::wstring_view to) override {
    return TraceLine(L"rename_column", table_name, from, to)
        .returns(sink_, Base::rename_column(table_name, from, to));
  }
  ColumnChange add_column(std::wstring_view table_name, const ODColumnDef& column,
                          int index) override {
    return TraceLine(L"add_column", table_name, column, index)
        .returns(sink_, Base::add_column(table_name, column, index));
  }
  ColumnChange remove_column(std::wstring_view table_name, int index) override {
    return TraceLine(L"remove_column", table_name, index)
        .returns(sink_, Base::remove_column(table_name, index));
  }
  [[nodiscard]] std::unique_ptr<RecordIterator> records() override {
    TraceLine(L"records").ends(sink_);
    return std::make_unique<TracingRecordIterator>(Base::records(), sink_);
  }
  [[nodiscard]] std::unique_ptr<RecordIterator> records_of(std::wstring_view table_name) override {
    TraceLine(L"records_of", table_name).ends(sink_);
    return std::make_unique<TracingRecordIterator>(Base::records_of(table_name), sink_);
  }
  [[nodiscard]] std::vector<int> count_records(const EntityList& entities,
                                               std::span<const std::wstring> tables) override {
    return TraceLine(L"count_records", entities, tables)
        .returns(sink_, Base::count_records(entities, tables));
  }
  [[nodiscard]] std::vector<std::wstring> tables_on(const EntityList& entities) override {
    return TraceLine(L"tables_on", entities).returns(sink_, Base::tables_on(entities));
  }
  void mark_passing(const EntityList& entities, std::wstring_view table_name, int column,
                    ValueTest& test, std::vector<char>& marks) override {
    Base::mark_passing(entities, table_name, column, test, marks);
    TraceLine(L"mark_passing", entities, table_name, column)
        .returns(sink_, std::ranges::count(marks, 1));
  }
  bool add_path_alias(std::wstring_view name, std::wstring_view path) override {
    return TraceLine(L"add_path_alias", name, path)
        .returns(sink_, Base::add_path_alias(name, path));
  }
  bool remove_path_alias(std::wstring_view name) override {
    return TraceLine(L"remove_path_alias", name).returns(sink_, Base::remove_path_alias(name));
  }
  [[nodiscard]] std::unique_ptr<AttachedDrawing> attach_drawing(
      const std::filesystem::path& path) override {
    std::unique_ptr<AttachedDrawing> attached = Base::attach_drawing(path);
    TraceLine(L"attach_drawing", path).returns(sink_, attached != nullptr);
    if (!attached) return nullptr;
    return std::make_unique<TracingAttachedDrawing>(std::move(attached), sink_);
  }
  bool attach(EntityId entity, const ODRecord& record) override {
    return TraceLine(L"attach", entity, record).returns(sink_, Base::attach(entity, record));
  }
  [[nodiscard]] std::vector<std::wstring> feature_classes() const override {
    return TraceLine(L"feature_classes").returns(sink_, Base::feature_classes());
  }
  bool classify(EntityId entity, std::wstring_view feature_class) override {
    return TraceLine(L"classify", entity, feature_class)
        .returns(sink_, Base::classify(entity, feature_class));
  }

 private:
  using Base = ForwardingStore;
  TraceSink sink_;
};

class TracingHost final : public ForwardingHost {
 public:
  TracingHost(DrawingHost& target, TraceSink sink) : Base(target), sink_(std::move(sink)) {}

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
  [[nodiscard]] EntityList entities_around(Point3 point) const override {
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
  bool set_attribute_text(EntityId reference, std::size_t attribute,
                          std::wstring_view text) override {
    return TraceLine(L"set_attribute_text", reference, attribute, text)
        .returns(sink_, Base::set_attribute_text(reference, attribute, text));
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

std::unique_ptr<ODStore> tracing_store(ODStore& target, TraceSink sink) {
  return std::make_unique<TracingStore>(target, std::move(sink));
}

std::unique_ptr<DrawingHost> tracing_host(DrawingHost& target, TraceSink sink) {
  return std::make_unique<TracingHost>(target, std::move(sink));
}

}  // namespace korvel
