// A host, a store, a record iterator and an attached drawing that pass every call on to others: the
// ground on which a special host is no more than the few operations in which it differs.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frame/drawing_host.h"
#include "frame/od_store.h"

namespace korvel {

// Owns the iterator that it passes its calls to.
class ForwardingRecordIterator : public RecordIterator {
 public:
  explicit ForwardingRecordIterator(std::unique_ptr<RecordIterator> target)
      : target_(std::move(target)) {}

  bool open(EntityId entity, OpenMode mode) override { return target_->open(entity, mode); }
  [[nodiscard]] int count() const override { return target_->count(); }
  void start() override { target_->start(); }
  [[nodiscard]] bool done() const override { return target_->done(); }
  void next() override { target_->next(); }
  [[nodiscard]] std::wstring_view table_name() const override { return target_->table_name(); }
  [[nodiscard]] int value_count() const override { return target_->value_count(); }
  [[nodiscard]] ODValueView value(int index) const override { return target_->value(index); }
  void read(ODRecord& record) const override { target_->read(record); }
  bool update(const ODRecord& record) override { return target_->update(record); }
  bool set_value(int index, const ODValueView& value) override {
    return target_->set_value(index, value);
  }
  bool remove() override { return target_->remove(); }
  int remove_marked(std::span<const char> marks) override { return target_->remove_marked(marks); }

 private:
  std::unique_ptr<RecordIterator> target_;
};

// Owns the drawing that it passes its calls to.
class ForwardingAttachedDrawing : public AttachedDrawing {
 public:
  explicit ForwardingAttachedDrawing(std::unique_ptr<AttachedDrawing> target)
      : target_(std::move(target)) {}

  bool activate() override { return target_->activate(); }
  void deactivate() override { target_->deactivate(); }
  [[nodiscard]] std::vector<std::wstring> table_names() const override {
    return target_->table_names();
  }
  [[nodiscard]] std::optional<ODTableDef> table(std::wstring_view name) const override {
    return target_->table(name);
  }
  TableChange copy_definition(std::wstring_view table_name) override {
    return target_->copy_definition(table_name);
  }

 private:
  std::unique_ptr<AttachedDrawing> target_;
};

// The store that it passes its calls to must outlive it.
class ForwardingStore : public ODStore {
 public:
  explicit ForwardingStore(ODStore& target) : target_(target) {}

  [[nodiscard]] std::vector<std::wstring> table_names() const override {
    return target_.table_names();
  }
  [[nodiscard]] std::optional<ODTableDef> table(std::wstring_view name) const override {
    return target_.table(name);
  }
  TableChange define_table(const ODTableDef& definition) override {
    return target_.define_table(definition);
  }
  TableChange delete_table(std::wstring_view name) override { return target_.delete_table(name); }
  TableChange rename_table(std::wstring_view from, std::wstring_view to) override {
    return target_.rename_table(from, to);
  }
  ColumnChange rename_column(std::wstring_view table_name, std::wstring_view from,
                             std::wstring_view to) override {
    return target_.rename_column(table_name, from, to);
  }
  ColumnChange add_column(std::wstring_view table_name, const ODColumnDef& column,
                          int index) override {
    return target_.add_column(table_name, column, index);
  }
  ColumnChange remove_column(std::wstring_view table_name, int index) override {
    return target_.remove_column(table_name, index);
  }
  [[nodiscard]] std::unique_ptr<RecordIterator> records() override { return target_.records(); }
  [[nodiscard]] std::unique_ptr<RecordIterator> records_of(std::wstring_view table_name) override {
    return target_.records_of(table_name);
  }
  bool attach(EntityId entity, const ODRecord& record) override {
    return target_.attach(entity, record);
  }
  [[nodiscard]] std::vector<int> count_records(const EntityList& entities,
                                               std::span<const std::wstring> tables,
                                               ProgressMeter& meter) override {
    return target_.count_records(entities, tables, meter);
  }
  [[nodiscard]] std::vector<std::wstring> tables_on(const EntityList& entities,
                                                    ProgressMeter& meter) override {
    return target_.tables_on(entities, meter);
  }
  void mark_passing(const EntityList& entities, std::wstring_view table_name, int column,
                    ValueTest& test, std::vector<char>& marks, ProgressMeter& meter) override {
    target_.mark_passing(entities, table_name, column, test, marks, meter);
  }
  bool add_path_alias(std::wstring_view name, std::wstring_view path) override {
    return target_.add_path_alias(name, path);
  }
  bool remove_path_alias(std::wstring_view name) override {
    return target_.remove_path_alias(name);
  }
  [[nodiscard]] std::unique_ptr<AttachedDrawing> attach_drawing(
      const std::filesystem::path& path) override {
    return target_.attach_drawing(path);
  }
  [[nodiscard]] std::vector<std::wstring> feature_classes() const override {
    return target_.feature_classes();
  }
  bool classify(EntityId entity, std::wstring_view feature_class) override {
    return target_.classify(entity, feature_class);
  }

 private:
  ODStore& target_;
};

// The same, but the passes go over its own iterators, record by record: for a store whose iterators
// walk other records than those of its target, or fail.
class IteratingStore : public ForwardingStore {
 public:
  using ForwardingStore::ForwardingStore;

  // NOLINTBEGIN(bugprone-parent-virtual-call): past the one that passes them on
  [[nodiscard]] std::vector<int> count_records(const EntityList& entities,
                                               std::span<const std::wstring> tables,
                                               ProgressMeter& meter) override {
    return ODStore::count_records(entities, tables, meter);
  }
  [[nodiscard]] std::vector<std::wstring> tables_on(const EntityList& entities,
                                                    ProgressMeter& meter) override {
    return ODStore::tables_on(entities, meter);
  }
  void mark_passing(const EntityList& entities, std::wstring_view table, int column,
                    ValueTest& test, std::vector<char>& marks, ProgressMeter& meter) override {
    ODStore::mark_passing(entities, table, column, test, marks, meter);
  }
  // NOLINTEND(bugprone-parent-virtual-call)
};

// The host that it passes its calls to must outlive it.
class ForwardingHost : public DrawingHost {
 public:
  explicit ForwardingHost(DrawingHost& target) : target_(target) {}

  [[nodiscard]] std::optional<FailedFile> replace_files(std::span<const NewFile> files) override {
    return target_.replace_files(files);
  }
  void report_failed_file(const FailedFile& file) override { target_.report_failed_file(file); }

  [[nodiscard]] EntityList model_space() const override { return target_.model_space(); }
  [[nodiscard]] bool opens(EntityId entity, OpenMode mode) const override {
    return target_.opens(entity, mode);
  }
  [[nodiscard]] EntityId layer_of(EntityId entity) const override {
    return target_.layer_of(entity);
  }
  [[nodiscard]] std::wstring handle_of(EntityId entity) const override {
    return target_.handle_of(entity);
  }
  [[nodiscard]] EntityId entity_with_handle(std::wstring_view handle) const override {
    return target_.entity_with_handle(handle);
  }
  void append_handle(EntityId entity, std::wstring& out) const override {
    target_.append_handle(entity, out);
  }
  [[nodiscard]] std::optional<EntityGeometry> geometry_of(EntityId entity) const override {
    return target_.geometry_of(entity);
  }
  [[nodiscard]] std::optional<Extents> extents_of(EntityId entity) const override {
    return target_.extents_of(entity);
  }
  [[nodiscard]] EntityList entities_around(Point3 point) override {
    return target_.entities_around(point);
  }
  bool set_geometry(EntityId entity, const EntityGeometry& geometry) override {
    return target_.set_geometry(entity, geometry);
  }
  [[nodiscard]] std::optional<EntityProperties> properties_of(EntityId entity) const override {
    return target_.properties_of(entity);
  }
  bool set_properties(EntityId entity, const EntityProperties& properties) override {
    return target_.set_properties(entity, properties);
  }
  [[nodiscard]] std::vector<Layer> layers() const override { return target_.layers(); }

  [[nodiscard]] std::optional<std::wstring> block_name_of(EntityId entity) const override {
    return target_.block_name_of(entity);
  }
  [[nodiscard]] std::vector<BlockAttribute> attributes_of(EntityId reference) const override {
    return target_.attributes_of(reference);
  }
  std::size_t set_attribute_texts(EntityId reference,
                                  const std::vector<AttributeText>& texts) override {
    return target_.set_attribute_texts(reference, texts);
  }

  [[nodiscard]] std::vector<ExtensionEntry> extension_entries(EntityId entity) const override {
    return target_.extension_entries(entity);
  }
  bool store_extension_entry(EntityId entity, const ExtensionEntry& entry) override {
    return target_.store_extension_entry(entity, entry);
  }

  [[nodiscard]] EntityList pick_first() const override { return target_.pick_first(); }
  void set_pick_first(const EntityList& entities) override { target_.set_pick_first(entities); }
  [[nodiscard]] std::optional<EntityList> ask_selection() override {
    return target_.ask_selection();
  }

  void print(std::wstring_view text) override { target_.print(text); }
  void print_error(std::wstring_view message) override { target_.print_error(message); }
  void note_refused_input(std::wstring_view reason) override { target_.note_refused_input(reason); }
  [[nodiscard]] std::optional<std::wstring> ask_string(std::wstring_view prompt) override {
    return target_.ask_string(prompt);
  }
  [[nodiscard]] Answer<std::int32_t> ask_integer(std::wstring_view prompt) override {
    return target_.ask_integer(prompt);
  }
  [[nodiscard]] Answer<Point3> ask_point(std::wstring_view prompt) override {
    return target_.ask_point(prompt);
  }
  [[nodiscard]] std::optional<EntityId> ask_entity(std::wstring_view prompt) override {
    return target_.ask_entity(prompt);
  }

  [[nodiscard]] bool show(Dialog& dialog) override { return target_.show(dialog); }
  [[nodiscard]] bool ask_yes_no(std::wstring_view caption, std::wstring_view text,
                                BoxIcon icon) override {
    return target_.ask_yes_no(caption, text, icon);
  }
  void show_text(std::wstring_view title, std::wstring_view text, int width, int height) override {
    target_.show_text(title, text, width, height);
  }
  [[nodiscard]] std::optional<std::filesystem::path> choose_file_to_open(
      const FileQuestion& question) override {
    return target_.choose_file_to_open(question);
  }
  [[nodiscard]] std::optional<std::filesystem::path> choose_file_to_save(
      const FileQuestion& question) override {
    return target_.choose_file_to_save(question);
  }

  [[nodiscard]] std::unique_ptr<PaletteSet> make_palette_set(const PaletteSetTraits& traits,
                                                             Palette& content) override {
    return target_.make_palette_set(traits, content);
  }
  [[nodiscard]] std::optional<std::wstring> profile(std::wstring_view name) const override {
    return target_.profile(name);
  }
  void set_profile(std::wstring_view name, std::wstring_view value) override {
    target_.set_profile(name, value);
  }

  void start_progress(std::wstring_view label, std::int64_t range) override {
    target_.start_progress(label, range);
  }
  void move_progress(std::int64_t position) override { target_.move_progress(position); }
  void end_progress() override { target_.end_progress(); }
  [[nodiscard]] bool interrupted() override { return target_.interrupted(); }
  [[nodiscard]] std::chrono::milliseconds time_between_questions() const override {
    return target_.time_between_questions();
  }

  bool run_command(std::wstring_view name, EntityId entity) override {
    return target_.run_command(name, entity);
  }
  void cancel_command() override { target_.cancel_command(); }
  void send(std::wstring_view text) override { target_.send(text); }
  void add_reactor(EditorReactor& reactor) override { target_.add_reactor(reactor); }
  void remove_reactor(EditorReactor& reactor) override { target_.remove_reactor(reactor); }

  void lock() override { target_.lock(); }
  void unlock() override { target_.unlock(); }
  [[nodiscard]] std::optional<int> variable(std::wstring_view name) const override {
    return target_.variable(name);
  }
  bool set_variable(std::wstring_view name, int value) override {
    return target_.set_variable(name, value);
  }
  void enter_resources() override { target_.enter_resources(); }
  void leave_resources() override { target_.leave_resources(); }

 private:
  DrawingHost& target_;
};

}  // namespace korvel
