#include "attributes/attribute_transfer.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>

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

// The mappings of one block, table by table.
using MappedTables = std::vector<MappedTable>;

MappedTable* find_table(MappedTables& tables, std::wstring_view name) {
  const auto found = std::ranges::find_if(
      tables, [name](const MappedTable& table) { return table.defaults.table == name; });
  return found == tables.end() ? nullptr : &*found;
}

MappedTables tables_of(const std::vector<MappedAttribute>& attributes, const ODStore& store) {
  MappedTables tables;
  for (const MappedAttribute& attribute : attributes) {
    const std::optional<ODTableDef> definition = store.table(attribute.table);
    const auto column = definition ? definition->column(attribute.column) : std::nullopt;
    if (!column) continue;
    MappedTable* table = find_table(tables, attribute.table);
    if (table == nullptr) {
      table = &tables.emplace_back(MappedTable{default_record(*definition), {}});
    }
    table->columns.push_back(
        {attribute.tag, static_cast<int>(*column), zero_value(definition->columns[*column].type)});
  }
  return tables;
}

// Calls work(reference, its attributes, its mapped tables) for each reference whose block has a
// mapping, and counts them.
template <class Work>
std::size_t for_each_reference(const AttributeMapping& mapping, const ODStore& store,
                               DrawingHost& host, const EntityList& entities, const Work& work) {
  std::map<std::wstring, MappedTables, std::less<>> blocks;
  for (const auto& [block, attributes] : mapping)
    blocks.emplace(block, tables_of(attributes, store));
  std::size_t references = 0;
  WriteWalk walk(host, entities.size());
  for (const EntityId entity : entities) {
    if (!walk.step()) break;
    const std::optional<std::wstring> name = host.block_name_of(entity);
    if (!name) continue;
    const auto block = blocks.find(*name);
    if (block == blocks.end()) continue;
    ++references;
    work(entity, host.attributes_of(entity), block->second);
  }
  return references;
}

void take_texts(const std::vector<BlockAttribute>& attributes, MappedTables& tables) {
  for (MappedTable& table : tables) {
    for (MappedColumn& column : table.columns) {
      const auto found = std::ranges::find(attributes, column.tag, &BlockAttribute::tag);
      column.is_known = found != attributes.end() && store_text(found->text, column.value);
    }
  }
}

std::size_t attach_missing(ODStore& store, RecordIterator& walk, EntityId entity,
                           MappedTables& tables) {
  for (MappedTable& table : tables)
    table.is_carried = false;
  for (walk.open(entity, OpenMode::Read); !walk.done(); walk.next()) {
    if (MappedTable* const table = find_table(tables, walk.table_name())) table->is_carried = true;
  }
  walk.open({}, OpenMode::Read);  // nothing can be attached where an iterator stands
  std::size_t attached = 0;
  for (const MappedTable& table : tables) {
    if (!table.is_carried && store.attach(entity, table.defaults)) ++attached;
  }
  return attached;
}

void write_values(RecordIterator& walk, EntityId entity, MappedTables& tables) {
  for (walk.open(entity, OpenMode::Write); !walk.done(); walk.next()) {
    const MappedTable* const table = find_table(tables, walk.table_name());
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

std::size_t set_texts(DrawingHost& host, EntityId reference,
                      const std::vector<BlockAttribute>& attributes, std::wstring_view tag,
                      std::wstring_view text) {
  std::size_t set = 0;
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    if (attributes[i].tag == tag && host.set_attribute_text(reference, i, text)) ++set;
  }
  return set;
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
  const auto load = [&](EntityId entity, const std::vector<BlockAttribute>& attributes,
                        MappedTables& tables) {
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
  const std::unique_ptr<RecordIterator> walk = store.records();
  const auto write = [&](EntityId entity, const std::vector<BlockAttribute>& attributes,
                         MappedTables& tables) {
    for (walk->open(entity, OpenMode::Read); !walk->done(); walk->next()) {
      const MappedTable* const table = find_table(tables, walk->table_name());
      if (table == nullptr) continue;
      for (const MappedColumn& column : table->columns) {
        const ODValueView value = walk->value(column.index);
        if (type_of(value) == ODType::Unknown) continue;
        write_text(value, text);
        stored.made += set_texts(host, entity, attributes, column.tag, text);
      }
    }
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
