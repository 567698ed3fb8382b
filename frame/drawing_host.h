// The drawing and the person in front of it, as every command sees them.
//
// A host implements this class; a second host can be written from this header alone. No operation
// throws but entities_around and replace_files. What cannot be done is answered by the result.
// Prompts, questions and dialogs always ask a person or a script and never answer by themselves.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/editor_reactor.h"
#include "frame/entity_geometry.h"
#include "frame/entity_id.h"
#include "frame/entity_properties.h"
#include "frame/file_access.h"
#include "frame/object_copy.h"
#include "frame/od_store.h"
#include "frame/palette_set.h"
#include "frame/progress_meter.h"
#include "frame/refusals.h"

namespace korvel {

class Dialog;
class Palette;

struct Layer {
  EntityId id;
  std::wstring name;
  bool frozen = false;
  bool hidden = false;  // not shown in the host's own lists
  bool locked = false;
  bool off = false;
};

// Answer to a prompt that also takes Enter alone.
template <class Value>
struct Answer {
  enum class Kind { Given, Enter, Cancelled };
  Kind kind = Kind::Cancelled;
  Value value{};
};

enum class BoxIcon { Information, Question, Exclamation };

// What a file chooser shows. The filter is in the form "Text files (*.txt)|*.txt||": a label and
// its patterns (separated by semicolons), again and again, and a closing bar.
struct FileQuestion {
  std::wstring_view filter;
  std::wstring_view default_extension;  // without the full stop; empty: none is added
  bool confirm_overwrite = false;       // saving only
};

// One attribute of a block reference.
struct BlockAttribute {
  std::wstring tag;
  std::wstring text;  // of a multi-line attribute with its formatting codes

  friend bool operator==(const BlockAttribute&, const BlockAttribute&) = default;
};

// A text for one of them.
struct AttributeText {
  std::size_t attribute = 0;  // its index in attributes_of
  std::wstring text;
};

class DrawingHost : public ProgressMeter, public FileAccess, public Refusals {
 public:
  // --- Entities ---

  // The entities of the block table record "*Model_Space", oldest first. Erased ones are left out.
  [[nodiscard]] virtual EntityList model_space() const = 0;

  // Whether the entity can be opened. An erased entity cannot; one on a locked layer opens for
  // reading only.
  [[nodiscard]] virtual bool opens(EntityId entity, OpenMode mode) const = 0;

  // The null identifier for an entity that cannot be opened.
  [[nodiscard]] virtual EntityId layer_of(EntityId entity) const = 0;

  // Hexadecimal, upper case, no leading zeros; empty when the entity has none or cannot be
  // opened.
  [[nodiscard]] virtual std::wstring handle_of(EntityId entity) const = 0;

  // The same, appended to a text that is used again.
  virtual void append_handle(EntityId entity, std::wstring& out) const { out += handle_of(entity); }

  // The entity of this handle, in whatever space; letter case and leading zeros do not count. The
  // null identifier when no entity that can be opened has it.
  [[nodiscard]] virtual EntityId entity_with_handle(std::wstring_view handle) const = 0;

  // The shape in world coordinates; none for an entity that cannot be opened. Dimensions, leaders
  // and meshes are among those of unknown shape.
  [[nodiscard]] virtual std::optional<EntityGeometry> geometry_of(EntityId entity) const = 0;

  // None for entities without a size (rays, construction lines, empty blocks, unknown types).
  [[nodiscard]] virtual std::optional<Extents> extents_of(EntityId entity) const = 0;

  // The entities of model space whose extents contain the point in plan view (z does not count),
  // in the order of model_space. Throws Interrupted.
  [[nodiscard]] virtual EntityList entities_around(Point3 point);

  // Gives the entity another shape, and with it, where need be, another type; its handle, its
  // properties and its extension dictionary stay. False, and nothing changed, when it cannot be
  // opened for writing, has no shape, or the host has no entity for the new one: points, lines,
  // arcs, ellipses, polylines, texts and block references it has. An R12 drawing without
  // lightweight polylines makes old-style 2D ones instead, but not of those that are.
  virtual bool set_geometry(EntityId entity, const EntityGeometry& geometry) = 0;

  // None for an entity that cannot be opened.
  [[nodiscard]] virtual std::optional<EntityProperties> properties_of(EntityId entity) const = 0;

  // Sets colour, layer, linetype, linetype scale and lineweight, in this order. False, and nothing
  // set, when the entity cannot be opened for writing.
  virtual bool set_properties(EntityId entity, const EntityProperties& properties) = 0;

  // Every layer of the drawing, in the layer table's order, also those that entities name but the
  // table lacks (they are thawed, on and unlocked).
  [[nodiscard]] virtual std::vector<Layer> layers() const = 0;

  // --- Block references ---

  // The name of the block that the entity references, spelled as in its definition; for a dynamic
  // block, whose references have anonymous variants of it, the name of the dynamic definition.
  // None for an entity that is no block reference or cannot be opened.
  [[nodiscard]] virtual std::optional<std::wstring> block_name_of(EntityId entity) const = 0;

  // The attributes of a block reference in its order, those left out that cannot be opened; empty
  // for any other entity and for one that cannot be opened.
  [[nodiscard]] virtual std::vector<BlockAttribute> attributes_of(EntityId reference) const = 0;

  // Gives attributes of one reference other texts, one after the other, and gives how many of the
  // texts were taken. One is refused, and changes nothing, when there is no such attribute, it
  // cannot be opened for writing (what counts is its own layer, not the layer of the reference), or
  // the drawing cannot hold the text.
  virtual std::size_t set_attribute_texts(EntityId reference,
                                          const std::vector<AttributeText>& texts) = 0;

  // --- Extension dictionaries ---

  // Copies of the entries of the entity's extension dictionary, in its order; the object data are
  // among them in a host that keeps them there. Empty when there is no dictionary or the entity
  // cannot be opened. What the host cannot read is left out.
  [[nodiscard]] virtual std::vector<ExtensionEntry> extension_entries(EntityId entity) const = 0;

  // Puts a fresh copy of the object into the entity's extension dictionary, which is made if there
  // is none. An entry of the same name, letter case aside, is replaced. False, and nothing changed,
  // when the entity cannot be opened for writing or takes no such entry. The entry must come from
  // an entity of the same drawing.
  virtual bool store_extension_entry(EntityId entity, const ExtensionEntry& entry) = 0;

  // --- Selection ---

  // The pick-first set in the order of selection; empty if there is none. Whatever the host holds
  // for it is freed before this returns.
  [[nodiscard]] virtual EntityList pick_first() const = 0;

  // Makes the entities, in this order, the pick-first set, gripped and highlighted; an empty list
  // clears it. An entity that is not there any more is left out.
  virtual void set_pick_first(const EntityList& entities) = 0;

  // Asks for a selection with the host's own prompt. None: the user pressed Esc. An empty list:
  // the user pressed Enter without selecting.
  [[nodiscard]] virtual std::optional<EntityList> ask_selection() = 0;

  // --- Command line ---

  // Text as it stands; a message that ends its line ends in a line feed.
  virtual void print(std::wstring_view text) = 0;

  void print_error(std::wstring_view message) override { print(message); }

  // A line of at most 132 characters, blanks allowed. Enter alone is Given with an empty text;
  // none: Esc.
  [[nodiscard]] virtual std::optional<std::wstring> ask_string(std::wstring_view prompt) = 0;

  // The host itself asks again until the answer is a number.
  [[nodiscard]] virtual Answer<std::int32_t> ask_integer(std::wstring_view prompt) = 0;

  [[nodiscard]] virtual Answer<Point3> ask_point(std::wstring_view prompt) = 0;

  // One entity picked; none for Esc, Enter, or a pick that hit nothing.
  [[nodiscard]] virtual std::optional<EntityId> ask_entity(std::wstring_view prompt) = 0;

  // --- Dialogs ---

  // Shows the dialog until one of its buttons closes it. False: it was cancelled.
  [[nodiscard]] virtual bool show(Dialog& dialog) = 0;

  // A Yes/No box. Anything but Yes is false.
  [[nodiscard]] virtual bool ask_yes_no(std::wstring_view caption, std::wstring_view text,
                                        BoxIcon icon) = 0;

  // A read-only text window of the given initial size in pixels; returns when it is closed.
  virtual void show_text(std::wstring_view title, std::wstring_view text, int width,
                         int height) = 0;

  // None: cancelled.
  [[nodiscard]] virtual std::optional<std::filesystem::path> choose_file_to_open(
      const FileQuestion& question) = 0;
  [[nodiscard]] virtual std::optional<std::filesystem::path> choose_file_to_save(
      const FileQuestion& question) = 0;

  // --- Palettes ---

  // A palette set on the host's main window with this palette in it, which bears the set's name: a
  // registered tool, dockable on all sides, in the place where it was last, else at the left. It is
  // not shown yet. The palette must outlive it.
  [[nodiscard]] virtual std::unique_ptr<PaletteSet> make_palette_set(const PaletteSetTraits& traits,
                                                                     Palette& content) = 0;

  // What the host's user interface keeps for the module, such as the columns of a grid, by name.
  // None: there is nothing under the name. A host that keeps nothing forgets it.
  [[nodiscard]] virtual std::optional<std::wstring> profile(std::wstring_view /*name*/) const {
    return std::nullopt;
  }
  virtual void set_profile(std::wstring_view /*name*/, std::wstring_view /*value*/) {}

  // --- Commands of the host ---

  // Runs one to its end, with the entity as the answer to its first question; the user is asked the
  // others. The pick-first set is let go. Names ignore case and a leading "_" or ".". False: there
  // is no such command, or it failed.
  virtual bool run_command(std::wstring_view name, EntityId entity) = 0;

  // Cancels the command that is running, as soon as the host comes to it.
  virtual void cancel_command() = 0;

  // Text for the command line of the current document, taken as if it had been typed, but not
  // echoed, once what runs now is done. A blank or a line feed is Enter.
  virtual void send(std::wstring_view text) = 0;

  // From now on the reactor is told when a command of the host ends, in the order of adding, until
  // it is removed. It must outlive that; a second adding or removing changes nothing.
  virtual void add_reactor(EditorReactor& reactor) = 0;
  virtual void remove_reactor(EditorReactor& reactor) = 0;

  // --- Document ---

  // The pair brackets every change of entities and object data. In the stand-alone host what is
  // done between them is one step of UNDO. Pairs nest.
  virtual void lock() = 0;
  virtual void unlock() = 0;

  // Integer system variables, by a name without case. None / false: there is no such variable, or
  // it is not an integer, or it refuses the value.
  [[nodiscard]] virtual std::optional<int> variable(std::wstring_view name) const = 0;
  virtual bool set_variable(std::wstring_view name, int value) = 0;

  // Makes the module's resources current for texts and dialogs, and the host's again. A host whose
  // module and program share their resources has nothing to do.
  virtual void enter_resources() {}
  virtual void leave_resources() {}
};

}  // namespace korvel
