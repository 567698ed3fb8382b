// A drawing in memory: its entities, layers and blocks over the DXF document they came from, and
// its object data.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "frame/drawing_host.h"
#include "frame/entity_geometry.h"
#include "frame/entity_id.h"
#include "frame/entity_properties.h"
#include "frame/object_copy.h"
#include "host/files/disk.h"
#include "host/standalone/block_names.h"
#include "host/standalone/dxf/document.h"
#include "host/standalone/extents_cache.h"
#include "host/standalone/journal.h"
#include "host/standalone/od_tables.h"
#include "host/standalone/result.h"

namespace korvel {

// Where the definitions of the object data stand in the document.
struct OdDefinitionItems {
  dxf::ItemIndex root = dxf::no_index;        // the named object dictionary
  dxf::ItemIndex dictionary = dxf::no_index;  // KORVEL_OBJECT_DATA, when the file has it
  std::vector<dxf::ItemIndex> records;        // XRECORDs of the tables that the file has
  std::uint64_t new_dictionary = 0;           // handles given out for what it lacks; 0: none yet
  std::vector<std::uint64_t> new_handles;     // by table
};

struct AttributeRecord;
struct NewEntity;
struct NewEntityPlace;
struct ObjectTree;

// Whether records of an entity are certain to be found again after saving (od_reader.h).
enum class RecordsPlace : std::uint8_t {
  Sound,
  None,        // it takes none
  Unreadable,  // it takes none; what the file has is kept
};

// Where an entity stands.
enum class Space : std::uint8_t { Model, Paper, Block };

class Drawing {
 public:
  // A new, complete and empty R2018 drawing.
  [[nodiscard]] static std::unique_ptr<Drawing> blank();

  // Reads a DXF file. The failure names the file and the line or byte.
  [[nodiscard]] static Result<std::unique_ptr<Drawing>> open(const std::filesystem::path& path);

  // The same from bytes already in memory; `name` stands for the file in messages.
  [[nodiscard]] static Result<std::unique_ptr<Drawing>> read(std::string bytes,
                                                             const std::string& name);

  Drawing(const Drawing&) = delete;
  Drawing& operator=(const Drawing&) = delete;
  ~Drawing() = default;

  // What a person should know about the file just opened, a sentence each.
  [[nodiscard]] const std::vector<std::string>& notices() const { return notices_; }

  // Writes the drawing: to a new file beside `path`, which then takes its place while the old one
  // is kept as `.bak`. A failure at any point leaves the old file whole.
  [[nodiscard]] std::optional<Failure> save(const std::filesystem::path& path);

  // The drawing as the bytes of a DXF file; equal to the file read if nothing was changed.
  [[nodiscard]] std::string to_bytes();

  // Changed since it was opened or last saved; undoing the changes makes it unchanged again.
  [[nodiscard]] bool changed() const;

  // Whether the file there is another one, or was written by another program, since this drawing
  // was read from it or saved to it. False: there is none.
  [[nodiscard]] bool has_another_file(const std::filesystem::path& path) const;

  // "AC1032" and the like; empty when the file does not say.
  [[nodiscard]] const std::string& version() const { return document_.version(); }

  // Why the drawing cannot hold object data, for the user; none: it can.
  [[nodiscard]] std::optional<std::string> why_no_object_data() const;

  // --- Entities: those of all spaces and block definitions, in file order ---

  // Entities that were not erased, of one space (Block: of all block definitions together).
  [[nodiscard]] EntityList entities(Space space) const;
  [[nodiscard]] bool exists(EntityId id) const;  // is an entity and not erased
  [[nodiscard]] Space space_of(EntityId id) const;
  // Block whose definition the entity is part of; empty in model and paper space.
  [[nodiscard]] std::wstring block_of(EntityId id) const;
  [[nodiscard]] std::string_view type_of(EntityId id) const;  // "LINE", "LWPOLYLINE", ...
  [[nodiscard]] std::uint64_t handle_of(EntityId id) const;   // 0: none
  [[nodiscard]] std::optional<EntityId> by_handle(std::uint64_t handle) const;
  [[nodiscard]] EntityId layer_of(EntityId id) const;
  [[nodiscard]] bool on_locked_layer(EntityId id) const;
  [[nodiscard]] EntityProperties properties_of(EntityId id) const;
  [[nodiscard]] EntityGeometry geometry_of(EntityId id) const;
  // What is seen of the entity, also where it has no shape (read_picture).
  [[nodiscard]] EntityGeometry picture_of(EntityId id) const;
  // Block references are expanded; none for entities without a size. Kept for the next question.
  [[nodiscard]] std::optional<Extents> extents_of(EntityId id) const;
  // None for anything but a block reference. A variant of a dynamic block says which definition it
  // is made from, unless the file was saved as R12.
  [[nodiscard]] std::optional<std::wstring> block_name_of(EntityId id) const;
  // Attributes of a block reference, in order. The text of a multi-line one is the whole text
  // wherever the file keeps it; its tag is the one that the file gives it, which R2000 to R2013
  // make unique by a number.
  [[nodiscard]] std::vector<BlockAttribute> attributes_of(EntityId id) const;

  // --- Changes; each is recorded in the journal ---

  // Adds an entity to model space: POINT, LINE, CIRCLE or ARC, LWPOLYLINE, 3D POLYLINE or TEXT
  // after its shape. None when the drawing has no place for it (no ENTITIES section).
  std::optional<EntityId> add_entity(const EntityGeometry& geometry,
                                     const EntityProperties& properties);
  // Adds a copy of an entity in another shape to model space: with its properties and XDATA,
  // without extension dictionary and reactors. None as for add_entity.
  std::optional<EntityId> add_copy(EntityId id, const EntityGeometry& geometry);
  // Gives the entity another shape; handle, properties and object data stay. False when it does not
  // exist, its layer is locked, it has no shape, or the file has no type of entity for the shape
  // (see add_entity, and ellipses but in R12), or no other one: R12 has old-style 2D polylines in
  // the place of lightweight ones.
  bool set_geometry(EntityId id, const EntityGeometry& geometry);
  // Gives the entity these properties; false when it does not exist or its layer is locked.
  bool set_properties(EntityId id, const EntityProperties& properties);
  // Gives attributes other texts, one after the other, and gives how many were taken; no other byte
  // of the reference changes. A text is refused when the reference or the attribute does not exist,
  // the attribute's own layer is locked, the text is too long for its one group (255 bytes before
  // R2000, 2,049 since; the texts of multi-line attributes lie in several), or it would not last: a
  // field computes it, or it is that of a multi-line attribute of R2000 to R2013, which the file
  // keeps twice.
  std::size_t set_attribute_texts(EntityId id, const std::vector<AttributeText>& texts);
  // Erases the entity with what it owns; false when it does not exist or its layer is locked.
  bool erase(EntityId id);

  // --- Extension dictionaries ---

  // Copies of the entries, in order; the object data, which are not in the document until it is
  // saved, in the place of their entry or else as the last. Object data that could not be read are
  // left out.
  [[nodiscard]] std::vector<ExtensionEntry> extension_entries(EntityId id) const;
  // Puts a fresh copy in, in place of an entry of the same name (without case). False when the
  // entity does not exist, its layer is locked, it takes no records, or the name and the object do
  // not suit each other: object data go under their own key alone, and nothing else does.
  bool store_extension_entry(EntityId id, const ExtensionEntry& entry);

  // --- Layers ---

  // Those of the layer table, and those that entities name though the table lacks them.
  [[nodiscard]] std::vector<Layer> layers() const;
  [[nodiscard]] const Layer& layer(EntityId id) const;  // of an identifier that it gave out
  [[nodiscard]] std::optional<EntityId> layer_named(std::wstring_view name) const;  // without case
  // None when the name is no valid layer name or the drawing has no layer table.
  std::optional<EntityId> add_layer(std::wstring_view name);
  // Sets frozen, locked and off as in `state`; false for a layer without a record in the table.
  bool change_layer(const Layer& state);
  [[nodiscard]] EntityId current_layer() const;
  bool set_current_layer(EntityId layer);

  // --- Header variables ---

  // Text, in UTF-8, of a header variable of one value ("LUPREC"), named without case; none if there
  // is none such.
  [[nodiscard]] std::optional<std::string> variable(std::string_view name) const;
  // The same of a variable whose type is a whole number.
  [[nodiscard]] std::optional<std::int64_t> integer_variable(std::string_view name) const;
  // False when the header has no such variable of one value or the text does not fit its type.
  bool set_variable(std::string_view name, std::string_view value);
  // The same outside the journal, for what is put back when a command ends.
  bool set_variable_for_now(std::string_view name, std::string_view value);

  // --- Object data, undo ---

  [[nodiscard]] OdTables& od() { return od_; }
  [[nodiscard]] const OdTables& od() const { return od_; }
  [[nodiscard]] Journal& journal() { return journal_; }
  // One step back or forward; the step's name, or none when there is none.
  std::optional<std::wstring> undo();
  std::optional<std::wstring> redo();

  // --- For the reading and writing of the object data ---

  [[nodiscard]] const dxf::Document& document() const { return document_; }
  // Number by which the object data know the entity; the identifier minus one.
  [[nodiscard]] static std::uint32_t index_of(EntityId id) {
    return static_cast<std::uint32_t>(id.value - 1);
  }
  [[nodiscard]] static EntityId id_of(std::uint32_t index) { return {index + std::uint64_t{1}}; }
  // Whether any of the entities was erased.
  [[nodiscard]] bool any_erased() const { return erased_entities_ > 0; }
  // False when the file's own object data of the entity could not be read.
  [[nodiscard]] bool has_readable_records(EntityId id) const {
    const Entity* const known = entity(id);
    return known != nullptr && known->records != RecordsPlace::Unreadable;
  }
  // Whether records can be attached.
  [[nodiscard]] bool takes_records(EntityId id) const;

 private:
  friend class DrawingReader;
  friend class OdReader;
  friend class OdWriting;

  struct Entity {
    dxf::ItemIndex item = dxf::no_index;
    std::uint32_t layer = 0;  // index into layers_
    std::uint32_t block = 0;  // index into blocks_
    dxf::ItemIndex extension_dictionary = dxf::no_index;
    dxf::ItemIndex od_record = dxf::no_index;  // its XRECORD of object data, as in the file
    RecordsPlace records = RecordsPlace::None;
    bool erased = false;
  };
  struct BlockDefinition {
    std::wstring name;
    Space space = Space::Block;
    Point3 base;
    std::vector<std::uint32_t> entities;  // of a block definition only
  };
  // The contents of a block definition in its own coordinates, worked out when first asked for.
  struct BlockOutline {
    std::optional<Extents> box;
    std::vector<Point3> points;  // whose box is the same
  };
  // Handles given to an entity's extension dictionary and XRECORD when they were first saved.
  struct OdHandles {
    std::uint64_t dictionary = 0;
    std::uint64_t record = 0;
  };

  Drawing() = default;

  // The slot of objects that belong to the drawing (the named object dictionary, the tables and
  // their definitions): removing an entity never takes them.
  static constexpr std::uint32_t own_object = dxf::no_index - 1;

  [[nodiscard]] const Entity* entity(EntityId id) const {
    if (id.is_null() || id.value > entities_.size()) return nullptr;
    const Entity& known = entities_[index_of(id)];
    return known.erased ? nullptr : &known;
  }
  [[nodiscard]] NewEntityPlace place_for_new();
  EntityId add_written(const NewEntity& written, dxf::ItemIndex end);
  [[nodiscard]] std::uint32_t layer_index(std::wstring_view name);  // made if it is not there
  [[nodiscard]] bool is_there(std::size_t layer) const;
  [[nodiscard]] bool has_record(std::size_t layer) const;
  [[nodiscard]] std::optional<dxf::ItemIndex> extension_object(std::uint64_t dictionary,
                                                               std::string_view key) const;
  [[nodiscard]] bool keeps_its_text(const AttributeRecord& attribute) const;
  void replace_item(dxf::ItemIndex item, std::string_view bytes);
  void erase_item(dxf::ItemIndex item);
  dxf::ItemIndex add_item(dxf::ItemIndex terminator, std::string_view bytes, std::uint64_t handle);
  // The object and what it owns, without the dictionaries and records of object data that are
  // linked to other entities than this one; no_index: to any.
  [[nodiscard]] std::vector<dxf::ItemIndex> objects_owned_by(
      std::uint64_t handle, std::uint32_t entity, std::unordered_set<std::uint64_t>& visited) const;
  void erase_owned(std::uint64_t handle, std::uint32_t entity,
                   std::unordered_set<std::uint64_t>& visited);
  [[nodiscard]] bool is_object_data_key(std::wstring_view name) const;
  [[nodiscard]] std::shared_ptr<const ObjectCopy> copied_records(std::uint32_t entity) const;
  [[nodiscard]] std::shared_ptr<const ObjectCopy> copied_tree(std::uint64_t handle,
                                                              dxf::ItemIndex dictionary) const;
  bool put_records(std::uint32_t entity, const std::vector<ODRecord>& records);
  bool put_tree(std::uint32_t entity, std::wstring_view name, const ObjectTree& tree);
  std::optional<dxf::ItemIndex> extension_dictionary_for(std::uint32_t entity);
  void link_extension_dictionary(std::uint32_t index, std::uint64_t handle);
  void refresh(dxf::ItemIndex item);
  void forget_extents(std::uint32_t entity);
  void place_block(const BlockReferenceShape& reference, int depth,
                   const std::function<void(const Point3&)>& visit) const;
  [[nodiscard]] std::optional<Extents> work_out_extents(EntityId id) const;
  [[nodiscard]] const BlockOutline& outline_of_block(std::uint32_t block, int depth) const;
  void apply(Change& change, JournalDirection direction);

  dxf::Document document_;
  Journal journal_;
  OdTables od_;
  std::vector<Entity> entities_;
  std::size_t erased_entities_ = 0;
  std::vector<Layer> layers_;
  std::vector<dxf::ItemIndex> layer_items_;  // no_index: the table has no record of the layer
  std::vector<std::uint32_t> entities_on_;   // by layer
  std::unordered_map<std::wstring, std::uint32_t> layers_by_name_;  // lower-cased
  std::vector<BlockDefinition> blocks_;
  std::unordered_map<std::wstring, std::uint32_t> blocks_by_name_;  // lower-cased
  std::uint64_t model_space_owner_ = 0;                             // handle of the BLOCK_RECORD
  OdDefinitionItems definition_items_;
  bool holds_object_data_ = false;
  std::unordered_map<std::uint32_t, OdHandles> od_handles_;
  mutable std::unordered_map<std::uint32_t, BlockOutline> block_outlines_;
  mutable ExtentsCache extents_;
  mutable std::optional<BlockNames> block_names_;  // worked out when first asked for
  std::vector<std::string> notices_;
  std::uint64_t saved_state_ = 0;
  dxf::Span saved_header_;
  std::optional<disk::Stamp> file_;  // that it was last read from or saved to
};

}  // namespace korvel
