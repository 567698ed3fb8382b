// The extension dictionaries of entities: taking entries out, putting copies in.
#include <algorithm>
#include <utility>

#include "frame/case_mapping.h"
#include "host/standalone/dictionary.h"
#include "host/standalone/drawing.h"
#include "host/standalone/object_tree.h"
#include "host/standalone/od_format.h"

namespace korvel {
namespace {

// The object data of an entity are not in the document until it is saved.
struct CopiedRecords final : ObjectCopy {
  std::vector<ODRecord> records;
};

bool has_columns_of(const ODRecord& record, const OdTable& table) {
  return std::ranges::equal(record.values, table.columns,
                            [](const ODValue& value, const OdColumn& column) {
                              return type_of(value) == column.definition.type;
                            });
}

struct CopiedTree final : ObjectCopy {
  ObjectTree tree;
};

}  // namespace

std::vector<ExtensionEntry> Drawing::extension_entries(EntityId id) const {
  const Entity* const known = entity(id);
  if (known == nullptr) return {};
  std::vector<ExtensionEntry> entries;
  bool has_data = false;
  const auto add_data = [&] {
    std::shared_ptr<const ObjectCopy> data = copied_records(index_of(id));
    if (data && !std::exchange(has_data, true)) {
      entries.push_back({document_.codec().decode(od_format::records_key), std::move(data)});
    }
  };
  if (known->extension_dictionary != dxf::no_index) {
    for (const DictionaryEntry& entry :
         entries_of(document_, document_.bytes(known->extension_dictionary))) {
      std::wstring name = document_.codec().decode(entry.key);
      if (is_object_data_key(name)) {
        add_data();
      } else if (auto tree = copied_tree(entry.handle, known->extension_dictionary)) {
        entries.push_back({std::move(name), std::move(tree)});
      }
    }
  }
  add_data();  // of an entity that had none when the drawing was opened
  return entries;
}

bool Drawing::is_object_data_key(std::wstring_view name) const {
  return equal_ignoring_case(name, document_.codec().decode(od_format::records_key));
}

std::shared_ptr<const ObjectCopy> Drawing::copied_records(std::uint32_t entity) const {
  const RecordSpan span = od_.records_of(entity);
  if (span.count == 0) return nullptr;
  auto copy = std::make_shared<CopiedRecords>();
  for (const RecordRef record : od_.references(span)) {
    const OdTable& table = od_.tables()[record.table];
    ODRecord& copied = copy->records.emplace_back(ODRecord{table.name, {}});
    for (std::uint32_t column = 0; column < table.columns.size(); ++column)
      copied.values.push_back(copy_of(od_.value(record, column)));
  }
  return copy;
}

std::shared_ptr<const ObjectCopy> Drawing::copied_tree(std::uint64_t handle,
                                                       dxf::ItemIndex dictionary) const {
  const auto copy = std::make_shared<CopiedTree>();
  std::unordered_set<std::uint64_t> visited;
  for (const dxf::ItemIndex item : objects_owned_by(handle, dxf::no_index, visited)) {
    copy->tree.objects.push_back({document_.item(item).handle, std::string(document_.bytes(item))});
  }
  if (copy->tree.objects.empty()) return nullptr;
  copy->tree.owner = document_.facts_of(*document_.by_handle(handle)).owner;
  copy->tree.dictionary = document_.item(dictionary).handle;
  return copy;
}

bool Drawing::store_extension_entry(EntityId id, const ExtensionEntry& entry) {
  if (!takes_records(id) || on_locked_layer(id)) return false;
  const OpenStep step(journal_);
  if (const auto* data = dynamic_cast<const CopiedRecords*>(entry.object.get())) {
    return is_object_data_key(entry.name) && put_records(index_of(id), data->records);
  }
  const auto* copy = dynamic_cast<const CopiedTree*>(entry.object.get());
  return copy != nullptr && !is_object_data_key(entry.name) &&
         put_tree(index_of(id), entry.name, copy->tree);
}

// Records of tables that are gone, or are not what they were, are left out.
bool Drawing::put_records(std::uint32_t entity, const std::vector<ODRecord>& records) {
  while (od_.records_of(entity).count > 0)
    od_.remove_record(entity, od_.records_of(entity).count - 1);
  std::vector<ODValueView> values;
  for (const ODRecord& record : records) {
    const std::optional<std::uint32_t> table = od_.find(record.table);
    if (!table || !has_columns_of(record, od_.tables()[*table])) continue;
    values.clear();
    for (const ODValue& value : record.values)
      values.push_back(view_of(value));
    od_.append_record(entity, od_.add_row(*table, values));
  }
  return true;
}

bool Drawing::put_tree(std::uint32_t entity, std::wstring_view name, const ObjectTree& tree) {
  const std::optional<dxf::ItemIndex> end = document_.end_of(dxf::Section::Objects);
  const std::optional<dxf::ItemIndex> dictionary =
      end ? extension_dictionary_for(entity) : std::nullopt;
  if (!dictionary) return false;
  std::vector<std::uint64_t> handles(tree.objects.size());
  for (std::uint64_t& handle : handles)
    handle = document_.new_handle();

  const std::string key = document_.codec().encode(name);
  if (const auto former = find_entry(document_, document_.bytes(*dictionary), key)) {
    std::unordered_set<std::uint64_t> visited;
    erase_owned(former->handle, dxf::no_index, visited);
  }
  replace_item(*dictionary,
               with_entry(document_, document_.bytes(*dictionary), {key, handles.front()}));
  const std::uint64_t place = document_.item(*dictionary).handle;
  for (std::size_t i = 0; i < handles.size(); ++i)
    add_item(*end, replanted(tree, i, handles, place, document_), handles[i]);
  return true;
}

// A dictionary that a saved file has already got in vain keeps its handle there.
std::optional<dxf::ItemIndex> Drawing::extension_dictionary_for(std::uint32_t entity) {
  if (entities_[entity].extension_dictionary != dxf::no_index) {
    return entities_[entity].extension_dictionary;
  }
  const auto saved = od_handles_.find(entity);
  const std::uint64_t known = saved != od_handles_.end() ? saved->second.dictionary : 0;
  const std::uint64_t handle =
      known != 0 && !document_.by_handle(known) ? known : document_.new_handle();
  const std::optional<dxf::ItemIndex> end = document_.end_of(dxf::Section::Objects);
  if (handle == 0 || !end) return std::nullopt;

  const dxf::ItemIndex item = entities_[entity].item;
  std::string bytes;
  dxf::GroupWriter writer(document_.manner(), document_.codec(), bytes);
  begin_dictionary(writer, document_, handle, document_.item(item).handle, 0);
  const dxf::ItemIndex dictionary = add_item(*end, bytes, handle);
  document_.item(dictionary).slot = entity;
  replace_item(item, with_extension_dictionary(document_, document_.bytes(item), handle));
  return dictionary;
}

// `handle` is the one in the entity's bytes; undoing may have taken the dictionary away.
void Drawing::link_extension_dictionary(std::uint32_t index, std::uint64_t handle) {
  const std::optional<dxf::ItemIndex> item = document_.by_handle(handle);
  const bool is_its_own = item && document_.item(*item).slot == index &&
                          document_.item(*item).section == dxf::Section::Objects &&
                          !document_.item(*item).span.erased;
  entities_[index].extension_dictionary = is_its_own ? *item : dxf::no_index;
}

}  // namespace korvel
