#include "attributes/attribute_transfer.h"

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "frame/command_frame.h"
#include "frame/command_handlers.h"
#include "frame/session.h"
#include "frame/text_file.h"
#include "frame/value_text.h"

namespace korvel {
namespace {

struct MappedColumn {
  std::wstring tag;
  int index = 0;
  ODValue value;          // of the column's type; what the attribute at hand says
  bool is_known = false;  // whether it says anything
};

struct MappedTable {
  ODRecord defaults;
  std::vector<MappedColumn> columns;  // in the order of the mapping
  bool is_carried = false;            // by the reference at hand
};

// The mappings of one block.
class MappedTables {
 public:
  MappedTables(const std::vector<MappedAttribute>& attributes, const ODStore& store) {
    std::map<std::wstring_view, std::optional<ODTableDef>> definitions;
    for (const MappedAttribute& attribute : attributes) {
      const auto [known, is_new] = definitions.try_emplace(attribute.table);
      std::optional<ODTableDef>& definition = known->second;
      if (is_new) definition = store.table(attribute.table);
      const auto column = definition ? definition->column(attribute.column) : std::nullopt;
      if (column) add(attribute, *definition, *column);
    }
  }

  // In the order of the mapping.
  [[nodiscard]] std::vector<MappedTable>& in_order() { return tables_; }
  [[nodiscard]] MappedTable* find(std::wstring_view name) {
    const auto found = places_.find(name);
    return found == places_.end() ? nullptr : &tables_[found->second];
  }

 private:
  void add(const MappedAttribute& attribute, const ODTableDef& table, std::size_t column) {
    const auto [place, is_new] = places_.try_emplace(attribute.table, tables_.size());
    if (is_new) tables_.push_back({default_record(table), {}});
    tables_[place->second].columns.push_back(
        {attribute.tag, static_cast<int>(column), zero_value(table.columns[column].type)});
  }

  std::vector<MappedTable> tables_;
  std::map<std::wstring, std::size_t, std::less<>> places_;
};

// The attributes of one reference after the other, by their tags.
class TaggedAttributes {
 public:
  struct Tagged {
    std::wstring_view tag;
    std::size_t index;  // in attributes_of
  };

  void take(std::vector<BlockAttribute> attributes) {
    attributes_ = std::move(attributes);
    by_tag_.clear();
    for (std::size_t i = 0; i < attributes_.size(); ++i)
      by_tag_.push_back({attributes_[i].tag, i});
    std::ranges::stable_sort(by_tag_, {}, &Tagged::tag);
  }

  // In their order.
  [[nodiscard]] std::span<const Tagged> with(std::wstring_view tag) const {
    return {std::ranges::lower_bound(by_tag_, tag, {}, &Tagged::tag),
            std::ranges::upper_bound(by_tag_, tag, {}, &Tagged::tag)};
  }
  [[nodiscard]] const std::wstring& text(const Tagged& attribute) const {
    return attributes_[attribute.index].text;
  }

 private:
  std::vector<BlockAttribute> attributes_;
  std::vector<Tagged> by_tag_;
};

// Calls work(reference, its attributes, its mapped tables) for each reference whose block has a
// mapping, and counts them.
template <class Work>
std::size_t for_each_reference(const AttributeMapping& mapping, const ODStore& store,
                               DrawingHost& host, const EntityList& entities, const Work& work) {
  std::map<std::wstring, MappedTables, std::less<>> blocks;
  for (const auto& [block, attributes] : mapping)
    blocks.emplace(block, MappedTables(attributes, store));
  TaggedAttributes tagged;
  std::size_t references = 0;
  WriteWalk walk(host, entities.size());
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
    const std::optional<std::wstring> name = host.block_name_of(entity);
    if (!name) continue;
    const auto block = blocks.find(*name);
    if (block == blocks.end()) continue;
    ++references;
    tagged.take(host.attributes_of(entity));
    work(entity, tagged, block->second);
  }
  return references;
}

// Of several attributes with one tag the first counts.
void take_texts(const TaggedAttributes& attributes, MappedTables& tables) {
  for (MappedTable& table : tables.in_order()) {
    for (MappedColumn& column : table.columns) {
      const auto found = attributes.with(column.tag);
      column.is_known = !found.empty() && store_text(attributes.text(found.front()), column.value);
    }
  }
}

std::size_t attach_missing(ODStore& store, RecordIterator& walk, EntityId entity,
                           MappedTables& tables) {
  for (MappedTable& table : tables.in_order())
    table.is_carried = false;
  for (walk.open(entity, OpenMode::Read); !walk.done(); walk.next()) {
    if (MappedTable* const table = tables.find(walk.table_name())) table->is_carried = true;
  }
  walk.open({}, OpenMode::Read);  // nothing can be attached where an iterator stands
  std::size_t attached = 0;
  for (const MappedTable& table : tables.in_order()) {
    if (!table.is_carried && store.attach(entity, table.defaults)) ++attached;
  }
  return attached;
}

void write_values(RecordIterator& walk, EntityId entity, MappedTables& tables) {
  for (walk.open(entity, OpenMode::Write); !walk.done(); walk.next()) {
    const MappedTable* const table = tables.find(walk.table_name());
    if (table == nullptr) continue;
    for (const MappedColumn& column : table->columns) {
      if (column.is_known) walk.set_value(column.index, view_of(column.value));
    }
  }
}

// Points deliberately have a blank behind each comma here, as they have nowhere else.
void write_text(const ODValueView& value, std::wstring& text) {
  constexpr int decimals_of_points = 6;
  text.clear();
  const auto* const point = std::get_if<Point3>(&value);
  if (point == nullptr) return append_value_text(value, text);
  append_fixed_text(point->x, decimals_of_points, text);
  text += L", ";
  append_fixed_text(point->y, decimals_of_points, text);
  text += L", ";
  append_fixed_text(point->z, decimals_of_points, text);
}

// None: the user cancelled, or the file says nothing to go by, and the user knows.
std::optional<AttributeMapping> ask_mapping(Session& session) {
  DrawingHost& host = session.host;
  const auto file = host.choose_file_to_open(
      {.filter = L"Text files (*.txt)|*.txt|All files (*.*)|*.*||", .default_extension = L"txt"});
  if (!file) return std::nullopt;
  TextReading text = read_text_file(*file, TextEncoding::Ansi);
  if (text.error) {
    report_unread(host, *text.error, *file);
    return std::nullopt;
  }
  host.print(format_text(L"Loading attributes map from '%s'\n", path_text(*file)));
  MappingReading reading = read_attribute_mapping(std::move(text.text), session.store);
  if (!reading.messages.empty()) host.print_error(reading.messages);
  host.print(format_text(L"%i attribute mappings loaded\n", reading.count));
  if (reading.failed) {
    host.report_failed_file(
        {*file, FileDirection::Read, L"it has a line that is no mapping", true});
  }
  if (reading.failed || reading.count == 0) return std::nullopt;
  return std::move(reading.mapping);
}

// What both commands share; `transfer` does the work. None: there is nothing to tell.
template <class Transfer>
std::optional<AttributeTransfer> ask_and_transfer(Session& session, const Transfer& transfer) {
  const std::optional<AttributeMapping> mapping = ask_mapping(session);
  if (!mapping) return std::nullopt;
  const EntityList entities = selected_entities(session.host);
  const DocumentLock lock(session.host);
  return transfer(*mapping, session.store, session.host, entities);
}

}  // namespace

AttributeTransfer load_attributes(const AttributeMapping& mapping, ODStore& store,
                                  DrawingHost& host, const EntityList& entities) {
  AttributeTransfer loaded;
  const std::unique_ptr<RecordIterator> walk = store.records();
  const auto load = [&](EntityId entity, const TaggedAttributes& attributes, MappedTables& tables) {
    take_texts(attributes, tables);
    loaded.made += attach_missing(store, *walk, entity, tables);
    write_values(*walk, entity, tables);
  };
  loaded.references = for_each_reference(mapping, store, host, entities, load);
  return loaded;
}

AttributeTransfer store_attributes(const AttributeMapping& mapping, ODStore& store,
                                   DrawingHost& host, const EntityList& entities) {
  AttributeTransfer stored;
  std::wstring text;
  std::vector<AttributeText> texts;
  const std::unique_ptr<RecordIterator> walk = store.records();
  const auto write = [&](EntityId entity, const TaggedAttributes& attributes,
                         MappedTables& tables) {
    texts.clear();
    for (walk->open(entity, OpenMode::Read); !walk->done(); walk->next()) {
      const MappedTable* const table = tables.find(walk->table_name());
      if (table == nullptr) continue;
      for (const MappedColumn& column : table->columns) {
        const ODValueView value = walk->value(column.index);
        if (type_of(value) == ODType::Unknown) continue;
        write_text(value, text);
        for (const TaggedAttributes::Tagged& attribute : attributes.with(column.tag))
          texts.push_back({attribute.index, text});
      }
    }
    if (!texts.empty()) stored.made += host.set_attribute_texts(entity, texts);
  };
  stored.references = for_each_reference(mapping, store, host, entities, write);
  return stored;
}

void load_attrs(Session& session) {
  if (const auto loaded = ask_and_transfer(session, load_attributes)) {
    session.host.print(format_text(L"Loaded %i definition(s) for %i block reference(s)\n",
                                   loaded->made, loaded->references));
  }
}

void store_attrs(Session& session) {
  if (const auto stored = ask_and_transfer(session, store_attributes)) {
    session.host.print(format_text(L"Loaded %i attribute(s) for %i block reference(s)\n",
                                   stored->made, stored->references));
  }
}

}  // namespace korvel
