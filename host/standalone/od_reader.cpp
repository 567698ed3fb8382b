#include "host/standalone/od_reader.h"

#include <algorithm>

#include "frame/utf.h"
#include "host/standalone/dictionary.h"
#include "host/standalone/od_format.h"

namespace korvel {
namespace {

std::string counted(std::size_t entities) {
  return entities == 1 ? "one entity" : std::to_string(entities) + " entities";
}

}  // namespace

void OdReader::read() {
  drawing_.od_.set_entity_count(drawing_.entities_.size());
  drawing_.holds_object_data_ = read_definitions();
  std::size_t without_place = 0;
  std::size_t unreadable = 0;
  for (std::uint32_t entity = 0; entity < drawing_.entities_.size(); ++entity) {
    const RecordsPlace place = place_of_records(entity);
    drawing_.entities_[entity].records = place;
    without_place += place == RecordsPlace::None ? 1 : 0;
    unreadable += place == RecordsPlace::Unreadable ? 1 : 0;
  }
  add_notices(without_place, unreadable);
}

void OdReader::add_notices(std::size_t without_place, std::size_t unreadable) {
  if (unreadable > 0) {
    drawing_.notices_.push_back("the object data of " + counted(unreadable) +
                                " cannot be read; they are kept as they stand");
  }
  if (without_place > 0 && drawing_.holds_object_data_) {
    drawing_.notices_.push_back(
        counted(without_place) + " cannot take object data: " +
        (without_place == 1 ? "its handle or extension dictionary is damaged in the file"
                            : "their handles or extension dictionaries are damaged in the file"));
  }
}

// False when the drawing has no sound place for definitions.
bool OdReader::read_definitions() {
  OdDefinitionItems& items = drawing_.definition_items_;
  if (items.root == dxf::no_index) return false;
  dxf::Document& document = drawing_.document_;
  document.item(items.root).slot = Drawing::own_object;
  const bool has_objects = document.at_least(od_format::first_version);
  const auto entry = find_entry(document, document.bytes(items.root), od_format::definitions_key);
  const auto dictionary = entry ? object_with(entry->handle) : std::nullopt;
  if (!dictionary) return has_objects;
  if (!link(*dictionary, "DICTIONARY", items.root, Drawing::own_object)) {
    drawing_.notices_.push_back(
        "the drawing cannot take object data: the dictionary of the tables is damaged; it is kept "
        "as it stands");
    return false;
  }
  items.dictionary = *dictionary;
  for (const DictionaryEntry& table : entries_of(document, document.bytes(*dictionary)))
    read_definition(table);
  return has_objects;
}

void OdReader::read_definition(const DictionaryEntry& entry) {
  OdDefinitionItems& items = drawing_.definition_items_;
  const dxf::Document& document = drawing_.document_;
  const std::wstring key = document.codec().decode(entry.key);
  const auto record = object_with(entry.handle);
  const bool is_linked = record && link(*record, "XRECORD", items.dictionary, Drawing::own_object);
  const auto definition =
      is_linked ? od_format::read_definition(document, *record, key) : std::nullopt;
  if (definition && !drawing_.od_.find(definition->name)) {
    (void)drawing_.od_.add_table(*definition);
    items.records.push_back(*record);
  } else {
    drawing_.notices_.push_back("the definition of the object-data table '" + to_utf8(key) +
                                "' cannot be read; it is kept as it stands");
  }
}

RecordsPlace OdReader::place_of_records(std::uint32_t entity) {
  const dxf::Document& document = drawing_.document_;
  const dxf::ItemIndex item = drawing_.entities_[entity].item;
  const OdHead& head = heads_[entity];
  const bool is_sound = head.is_sound && document.item(item).handle != 0 &&
                        !document.is_shared(document.item(item).handle) &&
                        !dxf::is_part(document.type_of(item));
  if (head.extension_dictionary == 0) return is_sound ? RecordsPlace::Sound : RecordsPlace::None;
  const std::optional<dxf::ItemIndex> dictionary = object_with(head.extension_dictionary);
  // A reference to nothing is replaced when records are attached.
  if (is_sound && (!dictionary || follow_chain(entity, *dictionary))) return RecordsPlace::Sound;
  drawing_.od_.forget_records(entity);
  return dictionary && has_records(*dictionary) ? RecordsPlace::Unreadable : RecordsPlace::None;
}

bool OdReader::has_records(dxf::ItemIndex dictionary) {
  const auto [known, is_new] = refused_.try_emplace(dictionary);
  const dxf::Document& document = drawing_.document_;
  if (is_new) {
    known->second =
        entries_with_key(document, document.bytes(dictionary), od_format::records_key).count > 0;
  }
  return known->second;
}

// False when the chain is not sound or goes on to what are no records.
bool OdReader::follow_chain(std::uint32_t entity, dxf::ItemIndex dictionary) {
  Drawing::Entity& owner = drawing_.entities_[entity];
  const dxf::Document& document = drawing_.document_;
  if (!link(dictionary, "DICTIONARY", owner.item, entity)) return false;
  owner.extension_dictionary = dictionary;
  const KeyedEntries entries =
      entries_with_key(document, document.bytes(dictionary), od_format::records_key);
  if (entries.count == 0) return true;
  const std::optional<dxf::ItemIndex> record = object_with(entries.first);
  if (!record || entries.count > 1 || !link(*record, "XRECORD", dictionary, entity) ||
      !read_records(entity, *record)) {
    return false;
  }
  owner.od_record = *record;
  return true;
}

std::optional<dxf::ItemIndex> OdReader::object_with(std::uint64_t handle) {
  const std::optional<dxf::ItemIndex> item = drawing_.document_.by_handle(handle);
  if (!item) drawing_.document_.keep_free(handle);
  return item;
}

bool OdReader::link(dxf::ItemIndex item, std::string_view type, dxf::ItemIndex owner,
                    std::uint32_t slot) {
  dxf::Document& document = drawing_.document_;
  dxf::Item& linked = document.item(item);
  if (linked.section != dxf::Section::Objects || linked.slot != dxf::no_index ||
      document.type_of(item) != type || document.is_shared(linked.handle)) {
    return false;
  }
  const std::uint64_t named = document.owner_of(item);
  if (named != 0 && named != document.item(owner).handle) return false;
  linked.slot = slot;
  return true;
}

std::optional<std::uint32_t> OdReader::table_named(std::string_view raw) {
  if (raw != last_table_raw_ || !last_table_) {
    last_table_raw_ = raw;
    last_table_ = drawing_.od_.find(drawing_.document_.codec().decode(raw));
  }
  return last_table_;
}

bool OdReader::read_records(std::uint32_t entity, dxf::ItemIndex record) {
  const dxf::Document& document = drawing_.document_;
  OdTables& od = drawing_.od_;
  dxf::GroupReader reader = document.groups(record);
  dxf::Group group;
  bool more = od_format::skip_to_data(reader, group, document);
  if (!more && !od_format::has_data_part(document, record)) return false;
  while (more) {
    const auto table =
        group.code == od_format::table_code ? table_named(group.value) : std::nullopt;
    if (!table) return false;
    const std::vector<OdColumn>& columns = od.tables()[*table].columns;
    more = reader.next(group);
    values_.resize(columns.size());
    views_.clear();
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const ODColumnDef& column = columns[i].definition;
      if (!more || group.code == od_format::table_code) {
        views_.push_back(view_of(column.default_value));
        continue;
      }
      if (!od_format::read_value(reader, group, more, column.type, document.codec(), values_[i])) {
        return false;
      }
      views_.push_back(view_of(values_[i]));
    }
    od.append_record(entity, od.add_row(*table, views_));
  }
  return true;
}

}  // namespace korvel
