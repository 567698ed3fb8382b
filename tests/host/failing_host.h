// A host and a store that pass every call on, but for those that were told to fail.
#pragma once

#include <set>

#include "frame/forwarding_host.h"

namespace korvel::test {

struct Failures {
  std::set<EntityId> open{};  // neither the entity nor its records
  std::set<EntityId> update{};
  std::set<EntityId> remove{};
  std::set<std::wstring, std::less<>> kept_tables{};  // their records cannot be removed
  std::set<EntityId> attach{};
  std::set<EntityId> texts{};  // of the attributes of these references
  int esc_at_question = 0;     // counted from 1; 0: at none
};

class FailingRecordIterator final : public ForwardingRecordIterator {
 public:
  FailingRecordIterator(std::unique_ptr<RecordIterator> target, const Failures& failures)
      : ForwardingRecordIterator(std::move(target)), failures_(failures) {}

  bool open(EntityId entity, OpenMode mode) override {
    entity_ = entity;
    // The null identifier opens nowhere, so the iterator then stands on nothing.
    return Base::open(failures_.open.contains(entity) ? EntityId{} : entity, mode);
  }
  bool update(const ODRecord& record) override {
    return !failures_.update.contains(entity_) && Base::update(record);
  }
  bool set_value(int index, const ODValueView& value) override {
    return RecordIterator::set_value(index, value);
  }
  bool remove() override {
    const bool kept = !done() && failures_.kept_tables.contains(table_name());
    return !kept && !failures_.remove.contains(entity_) && Base::remove();
  }
  int remove_marked(std::span<const char> marks) override {
    return RecordIterator::remove_marked(marks);
  }

 private:
  using Base = ForwardingRecordIterator;
  const Failures& failures_;
  EntityId entity_;
};

class FailingStore final : public IteratingStore {
 public:
  FailingStore(ODStore& target, const Failures& failures)
      : IteratingStore(target), failures_(failures) {}

  [[nodiscard]] std::unique_ptr<RecordIterator> records() override {
    return std::make_unique<FailingRecordIterator>(ForwardingStore::records(), failures_);
  }
  [[nodiscard]] std::unique_ptr<RecordIterator> records_of(std::wstring_view table) override {
    return ODStore::records_of(table);
  }
  bool attach(EntityId entity, const ODRecord& record) override {
    return !failures_.attach.contains(entity) && !failures_.open.contains(entity) &&
           ForwardingStore::attach(entity, record);
  }

 private:
  const Failures& failures_;
};

class FailingHost final : public ForwardingHost {
 public:
  FailingHost(DrawingHost& target, const Failures& failures)
      : ForwardingHost(target), failures_(failures) {}

  [[nodiscard]] bool opens(EntityId entity, OpenMode mode) const override {
    return !failures_.open.contains(entity) && Base::opens(entity, mode);
  }
  [[nodiscard]] EntityId layer_of(EntityId entity) const override {
    return failures_.open.contains(entity) ? EntityId{} : Base::layer_of(entity);
  }
  [[nodiscard]] EntityId entity_with_handle(std::wstring_view handle) const override {
    const EntityId entity = Base::entity_with_handle(handle);
    return failures_.open.contains(entity) ? EntityId{} : entity;
  }
  [[nodiscard]] std::wstring handle_of(EntityId entity) const override {
    return failures_.open.contains(entity) ? std::wstring() : Base::handle_of(entity);
  }
  void append_handle(EntityId entity, std::wstring& out) const override {
    DrawingHost::append_handle(entity, out);
  }
  [[nodiscard]] std::optional<EntityGeometry> geometry_of(EntityId entity) const override {
    return failures_.open.contains(entity) ? std::nullopt : Base::geometry_of(entity);
  }
  [[nodiscard]] EntityList entities_around(Point3 point) override {
    return DrawingHost::entities_around(point);
  }
  [[nodiscard]] std::optional<EntityProperties> properties_of(EntityId entity) const override {
    return failures_.open.contains(entity) ? std::nullopt : Base::properties_of(entity);
  }
  bool set_geometry(EntityId entity, const EntityGeometry& geometry) override {
    return !failures_.open.contains(entity) && Base::set_geometry(entity, geometry);
  }
  bool set_properties(EntityId entity, const EntityProperties& properties) override {
    return !failures_.open.contains(entity) && Base::set_properties(entity, properties);
  }
  [[nodiscard]] std::optional<std::wstring> block_name_of(EntityId entity) const override {
    return failures_.open.contains(entity) ? std::nullopt : Base::block_name_of(entity);
  }
  [[nodiscard]] std::vector<BlockAttribute> attributes_of(EntityId reference) const override {
    if (failures_.open.contains(reference)) return {};
    return Base::attributes_of(reference);
  }
  std::size_t set_attribute_texts(EntityId reference,
                                  const std::vector<AttributeText>& texts) override {
    const bool fails = failures_.open.contains(reference) || failures_.texts.contains(reference);
    return fails ? 0 : Base::set_attribute_texts(reference, texts);
  }
  [[nodiscard]] std::vector<ExtensionEntry> extension_entries(EntityId entity) const override {
    if (failures_.open.contains(entity)) return {};
    return Base::extension_entries(entity);
  }
  bool store_extension_entry(EntityId entity, const ExtensionEntry& entry) override {
    return !failures_.open.contains(entity) && Base::store_extension_entry(entity, entry);
  }
  [[nodiscard]] std::optional<EntityList> ask_selection() override {
    return esc() ? std::nullopt : Base::ask_selection();
  }
  [[nodiscard]] std::optional<std::wstring> ask_string(std::wstring_view prompt) override {
    return esc() ? std::nullopt : Base::ask_string(prompt);
  }
  [[nodiscard]] Answer<std::int32_t> ask_integer(std::wstring_view prompt) override {
    return esc() ? Answer<std::int32_t>{} : Base::ask_integer(prompt);
  }
  [[nodiscard]] Answer<Point3> ask_point(std::wstring_view prompt) override {
    return esc() ? Answer<Point3>{} : Base::ask_point(prompt);
  }
  [[nodiscard]] std::optional<EntityId> ask_entity(std::wstring_view prompt) override {
    return esc() ? std::nullopt : Base::ask_entity(prompt);
  }
  [[nodiscard]] bool show(Dialog& dialog) override { return !esc() && Base::show(dialog); }
  [[nodiscard]] bool ask_yes_no(std::wstring_view caption, std::wstring_view text,
                                BoxIcon icon) override {
    return !esc() && Base::ask_yes_no(caption, text, icon);
  }
  [[nodiscard]] std::optional<std::filesystem::path> choose_file_to_open(
      const FileQuestion& question) override {
    return esc() ? std::nullopt : Base::choose_file_to_open(question);
  }
  [[nodiscard]] std::optional<std::filesystem::path> choose_file_to_save(
      const FileQuestion& question) override {
    return esc() ? std::nullopt : Base::choose_file_to_save(question);
  }

 private:
  using Base = ForwardingHost;
  bool esc() { return ++questions_ == failures_.esc_at_question; }

  const Failures& failures_;
  int questions_ = 0;
};

}  // namespace korvel::test
