#include "host/standalone/od_reader.h"

#include <algorithm>

#include "host/standalone/dictionary.h"
#include "host/standalone/od_format.h"

namespace korvel {

void OdReader::read() {
  drawing_.od_.set_entity_count(drawing_.entities_.size());
  read_definitions();
  for (const auto& [entity, handle] : links_.extensions)
    link_dictionary(entity, handle);
  if (unreadable_ > 0) {
    const std::string entities =
        unreadable_ == 1 ? "one entity" : std::to_string(unreadable_) + " entities";
    drawing_.notices_.push_back("the object data of " + entities +
                                " cannot be read; they are kept as they stand");
  }
}

void OdReader::read_definitions() {
  OdDefinitionItems& items = drawing_.definition_items_;
  if (items.root == dxf::no_index) return;
  const dxf::Document& document = drawing_.document_;
  const auto entry = find_entry(document, document.bytes(items.root), od_format::definitions_key);
  const auto dictionary = entry ? document.by_handle(entry->handle) : std::nullopt;
  const bool usable = dictionary && document.type_of(*dictionary) == "DICTIONARY" &&
                      document.item(*dictionary).section == dxf::Section::Objects;
  if (!usable) return;
  items.dictionary = *dictionary;

  for (const DictionaryEntry& table : entries_of(document, document.bytes(*dictionary))) {
    const auto record = document.by_handle(table.handle);
    const std::wstring key = document.codec().decode(table.key);
    const auto definition = record && document.type_of(*record) == "XRECORD"
                                ? od_format::read_definition(document, *record, key)
                                : std::nullopt;
    if (definition && !drawing_.od_.find(definition->name)) {
      (void)drawing_.od_.add_table(*definition);
      items.records.push_back(*record);
    } else {
      drawing_.notices_.push_back("the definition of the object-data table '" + table.key +
                                  "' cannot be read; it is kept as it stands");
    }
  }
}

void OdReader::link_dictionary(std::uint32_t entity, std::uint64_t handle) {
  dxf::Document& document = drawing_.document_;
  Drawing::Entity& owner = drawing_.entities_[entity];
  const std::optional<dxf::ItemIndex> dictionary = document.by_handle(handle);
  if (!dictionary) return;  // a reference to nothing makes way when records are attached
  const bool usable = document.type_of(*dictionary) == "DICTIONARY" &&
                      document.item(*dictionary).section == dxf::Section::Objects &&
                      document.item(*dictionary).slot == dxf::no_index &&
                      *dictionary != drawing_.definition_items_.root &&
                      *dictionary != drawing_.definition_items_.dictionary;
  if (!usable) {  // no dictionary at all, another entity's, or the drawing's own
    owner.od_unreadable = true;
    ++unreadable_;
    return;
  }
  owner.extension_dictionary = *dictionary;
  document.item(*dictionary).slot = entity;

  const std::uint64_t record_handle = records_in(*dictionary);
  if (record_handle == 0) return;
  const std::optional<dxf::ItemIndex> record = document.by_handle(record_handle);
  if (record && document.type_of(*record) == "XRECORD" &&
      document.item(*record).section == dxf::Section::Objects &&
      document.item(*record).slot == dxf::no_index && read_records(entity, *record)) {
    owner.od_record = *record;
    document.item(*record).slot = entity;
  } else {
    drawing_.od_.forget_records(entity);
    owner.od_unreadable = true;
    ++unreadable_;
  }
}

std::uint64_t OdReader::records_in(dxf::ItemIndex dictionary) {
  const auto& dictionaries = links_.dictionaries;
  if (next_dictionary_ >= dictionaries.size() ||
      dictionaries[next_dictionary_].first != dictionary) {
    const auto found = std::ranges::lower_bound(dictionaries, dictionary, {},
                                                [](const auto& pair) { return pair.first; });
    if (found == dictionaries.end() || found->first != dictionary) return 0;
    next_dictionary_ = static_cast<std::size_t>(found - dictionaries.begin());
  }
  return dictionaries[next_dictionary_++].second;
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
