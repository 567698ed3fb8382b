// Any bytes as a drawing: reading ends with a drawing or a message, everything in it can be asked,
// an untouched drawing is written back byte for byte, records that an entity took are found on it
// again after saving, and undoing leaves no trace.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/standalone/drawing.h"
#include "host/standalone/drawing_dump.h"
#include "host/standalone/standalone_store.h"

namespace korvel {
namespace {

void expect(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "fuzz_drawing: %s\n", what);
  std::abort();
}

void ask_everything(const Drawing& drawing) {
  for (const Space space : {Space::Model, Space::Paper, Space::Block}) {
    for (const EntityId id : drawing.entities(space)) {
      if (const std::optional<Extents> box = drawing.extents_of(id)) {
        expect(box->min.x <= box->max.x && box->min.y <= box->max.y && box->min.z <= box->max.z,
               "extents that are inside out");
      }
      expect(drawing.block_name_of(id).has_value() == (drawing.type_of(id) == "INSERT"),
             "a block reference without a block, or the other way round");
    }
  }
  // The dump asks for the geometry, properties, attributes and records of every entity.
  dump(drawing, [](std::wstring_view) {});
}

std::vector<ODRecord> records_of(Drawing& drawing, EntityId id) {
  StandaloneStore store(drawing);
  const std::unique_ptr<RecordIterator> walk = store.records();
  std::vector<ODRecord> records;
  for (walk->open(id, OpenMode::Read); !walk->done(); walk->next())
    walk->read(records.emplace_back());
  return records;
}

// Entities that take records have them again, and take records again.
void expect_same_records(Drawing& drawing, Drawing& reread) {
  for (const Space space : {Space::Model, Space::Paper, Space::Block}) {
    for (const EntityId id : drawing.entities(space)) {
      if (!drawing.takes_records(id)) continue;
      const std::optional<EntityId> again = reread.by_handle(drawing.handle_of(id));
      expect(again && reread.takes_records(*again), "saving made an entity take no records");
      expect(records_of(drawing, id) == records_of(reread, *again), "saving lost records");
    }
  }
}

// What cannot be set stays, what can is there afterwards; nothing else is.
void change_attributes(Drawing& drawing, EntityId reference) {
  const std::wstring text = L"^J \\U+4E2D\n\u4E2D ";
  const std::vector<BlockAttribute> before = drawing.attributes_of(reference);
  for (std::size_t i = 0; i < before.size(); ++i) {
    const bool is_set = drawing.set_attribute_texts(reference, {{i, text}}) == 1;
    const std::vector<BlockAttribute> now = drawing.attributes_of(reference);
    expect(now.size() == before.size() && now[i].tag == before[i].tag, "another attribute");
    expect(now[i].text == (is_set ? text : before[i].text), "another text than was set");
  }
  expect(drawing.set_attribute_texts(reference, {{before.size(), text}}) == 0,
         "an attribute too many");
}

// Attaches a record to every entity, changes attributes and erases some entities.
void edit(Drawing& drawing) {
  StandaloneStore store(drawing);
  const ODTableDef table{L"Fuzz table",
                         {{L"TEXT", ODType::Character, std::wstring(L"^\n\u4E2D")},
                          {L"AT", ODType::Point, Point3{1, 2, 3}}}};
  (void)store.define_table(table);
  std::size_t number = 0;
  for (const Space space : {Space::Model, Space::Paper, Space::Block}) {
    for (const EntityId id : drawing.entities(space)) {
      (void)store.attach(id, default_record(table));
      change_attributes(drawing, id);
      if (++number % 4 == 0) (void)drawing.erase(id);
    }
  }
}

// Changes that give out handles, which undoing does not take back: copies extension dictionaries,
// changes shapes and adds an entity.
void edit_with_handles(Drawing& drawing) {
  const PolylineShape line{PolylineKind::ThreeD, {{{0, 0, 0}}, {{1, 2, 3}}}};
  std::vector<ExtensionEntry> entries;
  std::size_t number = 0;
  for (const EntityId id : drawing.entities(Space::Model)) {
    ++number;
    if (number % 2 == 0) entries = drawing.extension_entries(id);
    for (const ExtensionEntry& entry : entries)
      (void)drawing.store_extension_entry(id, entry);
    const bool has_shape = !std::holds_alternative<std::monostate>(drawing.geometry_of(id).shape);
    if (has_shape && number % 3 == 0) (void)drawing.set_geometry(id, {line});
  }
  (void)drawing.add_entity({LineShape{{0, 0, 0}, {1, 1, 1}}, 0}, {});
}

}  // namespace
}  // namespace korvel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace korvel;
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const Result<std::unique_ptr<Drawing>> read = Drawing::read(bytes, "fuzz.dxf");
  if (!read) {
    expect(!read.reason().empty(), "a failure without a reason");
    return 0;
  }
  Drawing& drawing = **read;
  ask_everything(drawing);
  expect(drawing.to_bytes() == bytes, "an untouched drawing is not written back as it was");

  drawing.journal().open();
  edit(drawing);
  edit_with_handles(drawing);
  drawing.journal().close();
  const std::string edited = drawing.to_bytes();
  const Result<std::unique_ptr<Drawing>> reread = Drawing::read(edited, "edited.dxf");
  expect(static_cast<bool>(reread), "an edited drawing cannot be opened again");
  expect((*reread)->to_bytes() == edited, "an edited drawing is not written back as it was");
  expect_same_records(drawing, **reread);

  const std::unique_ptr<Drawing> untouched = std::move(*Drawing::read(bytes, "fuzz.dxf"));
  untouched->journal().open();
  edit(*untouched);
  untouched->journal().close();
  (void)untouched->undo();
  expect(untouched->to_bytes() == bytes, "undoing left a trace");
  return 0;
}
