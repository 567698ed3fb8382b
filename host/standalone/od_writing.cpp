#include "host/standalone/od_writing.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "frame/case_mapping.h"
#include "host/standalone/dictionary.h"
#include "host/standalone/od_format.h"

namespace korvel {
namespace {

// The keys of a dictionary compare without case, names of tables do not: a table whose name differs
// from another's in case alone gets a key of its own.
class TakenKeys {
 public:
  TakenKeys(const std::vector<DictionaryEntry>& entries, const dxf::TextCodec& codec)
      : codec_(codec) {
    for (const DictionaryEntry& entry : entries)
      taken_.insert(lower(codec.decode(entry.key)));
  }

  std::string take_for(std::wstring_view name) {
    std::wstring key(name);
    for (int number = 2; taken_.contains(lower(key)); ++number)
      key = std::wstring(name) + L"$" + std::to_wstring(number);
    taken_.insert(lower(key));
    return codec_.encode(key);
  }
  void release(std::string_view key) {
    const auto taken = taken_.find(lower(codec_.decode(key)));
    if (taken != taken_.end()) taken_.erase(taken);
  }

 private:
  const dxf::TextCodec& codec_;
  std::multiset<std::wstring> taken_;
};

}  // namespace

OdWriting::OdWriting(Drawing& drawing) : drawing_(drawing), document_(drawing.document_) {
  if (drawing_.journal_.state() == 0) return;  // as the file was
  plan_definitions();
  plan_entities();
  anything_ = drawing_.od_.any_touched() || !definitions_.empty() || !new_definitions_.empty();
}

bool OdWriting::is_live(std::uint32_t entity) const {
  const Drawing::Entity& known = drawing_.entities_[entity];
  return !known.erased && known.records == RecordsPlace::Sound;
}

// Whether the entity leads to an XRECORD for its records already.
bool OdWriting::has_chain(std::uint32_t entity) const {
  const Drawing::Entity& known = drawing_.entities_[entity];
  return known.extension_dictionary != dxf::no_index && known.od_record != dxf::no_index;
}

void OdWriting::plan_entities() {
  if (!drawing_.od_.any_touched()) return;
  for (std::uint32_t entity = 0; entity < drawing_.entities_.size(); ++entity) {
    if (!drawing_.od_.touched(entity) || !is_live(entity)) continue;
    if (drawing_.od_.records_of(entity).count == 0 || has_chain(entity)) continue;
    const Drawing::Entity& known = drawing_.entities_[entity];
    Drawing::OdHandles& handles = drawing_.od_handles_[entity];
    if (handles.record == 0) handles.record = drawing_.document_.new_handle();
    if (handles.dictionary == 0 && known.extension_dictionary == dxf::no_index) {
      handles.dictionary = drawing_.document_.new_handle();
    }
    new_records_.push_back(entity);
  }
}

void OdWriting::plan_definitions() {
  OdDefinitionItems& items = drawing_.definition_items_;
  const std::vector<OdTable>& tables = drawing_.od_.tables();
  items.new_handles.resize(tables.size());

  for (std::uint32_t table = 0; table < tables.size(); ++table) {
    if (table < items.records.size()) {
      plan_known_definition(table);
    } else if (!tables[table].deleted) {
      new_definitions_.push_back(table);
      if (items.new_handles[table] == 0) {
        items.new_handles[table] = drawing_.document_.new_handle();
      }
    }
  }

  const bool has_dictionary = items.dictionary != dxf::no_index;
  if (has_dictionary) {
    std::string bytes = known_entries();
    append_new_entries(bytes);
    if (bytes != document_.bytes(items.dictionary)) {
      definitions_.emplace(items.dictionary, std::move(bytes));
    }
  }
  if (!has_dictionary && !new_definitions_.empty()) {
    if (items.new_dictionary == 0) items.new_dictionary = drawing_.document_.new_handle();
    definitions_.emplace(
        items.root, with_entry(document_, document_.bytes(items.root),
                               {std::string(od_format::definitions_key), items.new_dictionary}));
  }
}

// A definition that the file has: gone, changed, or as it was.
void OdWriting::plan_known_definition(std::uint32_t table) {
  const dxf::ItemIndex record = drawing_.definition_items_.records[table];
  const OdTable& known = drawing_.od_.tables()[table];
  if (known.deleted) {
    definitions_.emplace(record, std::string{});
  } else if (!is_as_in_file(table)) {
    std::string bytes(head_of(record));
    write_definition(table, bytes);
    definitions_.emplace(record, std::move(bytes));
  }
}

bool OdWriting::is_as_in_file(std::uint32_t table) const {
  const OdTable& known = drawing_.od_.tables()[table];
  const auto in_file =
      od_format::read_definition(document_, drawing_.definition_items_.records[table], known.name);
  return in_file == known.definition();
}

// The dictionary of tables without those that are gone, and with the new keys of renamed ones.
std::string OdWriting::known_entries() const {
  const OdDefinitionItems& items = drawing_.definition_items_;
  const std::vector<OdTable>& tables = drawing_.od_.tables();
  std::vector<std::uint64_t> gone;
  for (std::uint32_t table = 0; table < items.records.size(); ++table) {
    if (tables[table].deleted) gone.push_back(document_.item(items.records[table]).handle);
  }
  const std::string bytes =
      without_entries(document_, document_.bytes(items.dictionary), std::move(gone));
  const std::vector<DictionaryEntry> entries = entries_of(document_, bytes);
  TakenKeys keys(entries, document_.codec());
  KeysByHandle former;
  for (const DictionaryEntry& entry : entries)
    former.try_emplace(entry.handle, entry.key);
  KeysByHandle changed;
  for (std::uint32_t table = 0; table < items.records.size(); ++table) {
    const dxf::ItemIndex record = items.records[table];
    const auto in_file = od_format::read_definition(document_, record, {});
    const bool renamed = in_file && !in_file->name.empty() && in_file->name != tables[table].name;
    if (tables[table].deleted || !renamed) continue;
    const std::uint64_t handle = document_.item(record).handle;
    changed[handle] = keys.take_for(tables[table].name);
    keys.release(former[handle]);
  }
  return with_keys(document_, bytes, std::move(changed));
}

void OdWriting::append_new_entries(std::string& dictionary) const {
  TakenKeys keys(entries_of(document_, dictionary), document_.codec());
  dxf::GroupWriter writer(document_.manner(), document_.codec(), dictionary);
  for (const std::uint32_t table : new_definitions_) {
    writer.raw(3, keys.take_for(drawing_.od_.tables()[table].name));
    writer.handle(360, drawing_.definition_items_.new_handles[table]);
  }
}

std::string_view OdWriting::head_of(dxf::ItemIndex record) const {
  dxf::GroupReader reader = document_.groups(record);
  dxf::Group group;
  const std::string_view bytes = document_.bytes(record);
  return od_format::skip_to_data(reader, group, document_) ? bytes.substr(0, group.begin) : bytes;
}

std::uint64_t OdWriting::dictionary_of(std::uint32_t entity) const {
  const dxf::ItemIndex in_file = drawing_.entities_[entity].extension_dictionary;
  if (in_file != dxf::no_index) return document_.item(in_file).handle;
  return drawing_.od_handles_.at(entity).dictionary;
}

bool OdWriting::concerns(dxf::ItemIndex item) const {
  const std::uint32_t slot = document_.item(item).slot;
  if (!anything_ || slot == dxf::no_index) return false;
  if (slot == Drawing::own_object) return definitions_.contains(item);
  const bool is_layer = document_.item(item).section == dxf::Section::Tables;
  return !is_layer && drawing_.od_.touched(slot) && is_live(slot);
}

void OdWriting::substitute(dxf::ItemIndex item, std::string& out) const {
  if (const auto definition = definitions_.find(item); definition != definitions_.end()) {
    out = definition->second;
    return;
  }
  const std::uint32_t entity = document_.item(item).slot;
  const Drawing::Entity& known = drawing_.entities_[entity];
  if (item == known.item) {
    substitute_entity(entity, out);
  } else if (item == known.extension_dictionary) {
    substitute_dictionary(entity, out);
  } else if (drawing_.od_.records_of(entity).count > 0) {
    out = head_of(item);
    write_records(entity, out);
  }
}

void OdWriting::substitute_entity(std::uint32_t entity, std::string& out) const {
  const Drawing::Entity& known = drawing_.entities_[entity];
  out = document_.bytes(known.item);
  const bool new_dictionary =
      known.extension_dictionary == dxf::no_index && drawing_.od_.records_of(entity).count > 0;
  if (new_dictionary) out = with_extension_dictionary(document_, out, dictionary_of(entity));
}

void OdWriting::substitute_dictionary(std::uint32_t entity, std::string& out) const {
  const Drawing::Entity& known = drawing_.entities_[entity];
  const bool has_records = drawing_.od_.records_of(entity).count > 0;
  if (known.od_record != dxf::no_index && !has_records) {
    out = without_entries(document_, document_.bytes(known.extension_dictionary),
                          {document_.item(known.od_record).handle});
  } else if (known.od_record == dxf::no_index && has_records) {
    out = with_entry(document_, document_.bytes(known.extension_dictionary),
                     {std::string(od_format::records_key), drawing_.od_handles_.at(entity).record});
  } else {
    out = document_.bytes(known.extension_dictionary);
  }
}

void OdWriting::write_records(std::uint32_t entity, std::string& out) const {
  dxf::GroupWriter writer(document_.manner(), document_.codec(), out);
  const RecordSpan span = drawing_.od_.records_of(entity);
  for (std::uint32_t i = 0; i < span.count; ++i) {
    const RecordRef record = drawing_.od_.record(span.first + i);
    const OdTable& table = drawing_.od_.tables()[record.table];
    writer.text(od_format::table_code, table.name);
    for (std::uint32_t column = 0; column < table.columns.size(); ++column) {
      od_format::write_value(writer, drawing_.od_.value(record, column));
    }
  }
}

void OdWriting::write_definition(std::uint32_t table, std::string& out) const {
  dxf::GroupWriter writer(document_.manner(), document_.codec(), out);
  od_format::write_definition(writer, drawing_.od_.tables()[table].definition());
}

bool OdWriting::write_new_objects(const dxf::Document::ByteSink& sink) const {
  std::string bytes;
  append_new_definitions(bytes);
  for (const std::uint32_t entity : new_records_) {
    constexpr std::size_t piece = std::size_t{1} << 16;
    append_new_objects(entity, bytes);
    if (bytes.size() < piece) continue;
    if (!sink(bytes)) return false;
    bytes.clear();
  }
  return bytes.empty() || sink(bytes);
}

void OdWriting::append_new_definitions(std::string& out) const {
  const OdDefinitionItems& items = drawing_.definition_items_;
  if (new_definitions_.empty()) return;
  dxf::GroupWriter writer(document_.manner(), document_.codec(), out);
  const bool in_file = items.dictionary != dxf::no_index;
  const std::uint64_t dictionary =
      in_file ? document_.item(items.dictionary).handle : items.new_dictionary;
  if (!in_file) {
    const std::uint64_t root = document_.item(items.root).handle;
    begin_dictionary(writer, document_, dictionary, root, root);
    append_new_entries(out);
  }
  for (const std::uint32_t table : new_definitions_) {
    begin_xrecord(writer, document_, items.new_handles[table], dictionary);
    write_definition(table, out);
  }
}

void OdWriting::append_new_objects(std::uint32_t entity, std::string& out) const {
  const Drawing::Entity& known = drawing_.entities_[entity];
  const Drawing::OdHandles& handles = drawing_.od_handles_.at(entity);
  const std::uint64_t dictionary = dictionary_of(entity);
  dxf::GroupWriter writer(document_.manner(), document_.codec(), out);
  if (known.extension_dictionary == dxf::no_index) {
    begin_dictionary(writer, document_, dictionary, document_.item(known.item).handle, 0);
    writer.raw(3, od_format::records_key);
    writer.handle(360, handles.record);
  }
  begin_xrecord(writer, document_, handles.record, dictionary);
  write_records(entity, out);
}

}  // namespace korvel
