// The tracing store, its iterators and attached drawings.
#include <algorithm>

#include "frame/forwarding_host.h"
#include "frame/trace_line.h"
#include "frame/tracing_host.h"

namespace korvel {
namespace {

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
  int remove_marked(std::span<const char> marks) override {
    return TraceLine(L"  remove_marked", std::ranges::count(marks, 1))
        .returns(sink_, Base::remove_marked(marks));
  }

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
                                               std::span<const std::wstring> tables,
                                               ProgressMeter& meter) override {
    return TraceLine(L"count_records", entities, tables)
        .returns(sink_, Base::count_records(entities, tables, meter));
  }
  [[nodiscard]] std::vector<std::wstring> tables_on(const EntityList& entities,
                                                    ProgressMeter& meter) override {
    return TraceLine(L"tables_on", entities).returns(sink_, Base::tables_on(entities, meter));
  }
  void mark_passing(const EntityList& entities, std::wstring_view table_name, int column,
                    ValueTest& test, std::vector<char>& marks, ProgressMeter& meter) override {
    Base::mark_passing(entities, table_name, column, test, marks, meter);
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

}  // namespace

std::unique_ptr<ODStore> tracing_store(ODStore& target, TraceSink sink) {
  return std::make_unique<TracingStore>(target, std::move(sink));
}

}  // namespace korvel
