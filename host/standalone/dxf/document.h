// A DXF file kept as its original bytes, cut into items, so that what nobody changed is written
// back as it stood.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "frame/file_access.h"
#include "host/standalone/dxf/group.h"
#include "host/standalone/dxf/group_writer.h"
#include "host/standalone/dxf/handle_index.h"
#include "host/standalone/dxf/text_codec.h"
#include "host/standalone/result.h"

namespace korvel::dxf {

enum class Section : std::uint8_t {
  Outside,
  Header,
  Classes,
  Tables,
  Blocks,
  Entities,
  Objects,
  Other
};

class RunWriter;

using ItemIndex = std::uint32_t;
inline constexpr std::uint32_t no_index = std::numeric_limits<std::uint32_t>::max();

// A stretch of bytes, in the file or among the bytes added since.
struct Span {
  std::uint64_t offset = 0;
  std::uint32_t length = 0;
  bool erased = false;
};

// One piece of the file: from a group 0 to the next. An entity with parts of its own (a POLYLINE
// with its VERTEXes, an INSERT with its ATTRIBs) is one item up to and including its SEQEND; the
// HEADER section is one item. Laid end to end the items are the file.
struct Item {
  Span span;
  std::uint16_t type = 0;  // index into the document's type names
  Section section = Section::Outside;
  std::uint64_t handle = 0;       // 0: none
  std::uint32_t slot = no_index;  // for the drawing: which of its entities or layers this is
};

// What the reader finds in an item while it passes over it. Views refer to the file's bytes.
struct ItemFacts {
  std::uint64_t owner = 0;                 // 330 before the first subclass marker
  std::uint64_t extension_dictionary = 0;  // 360 in {ACAD_XDICTIONARY
  std::string_view name;                   // first group 2
  std::string_view layer;                  // first group 8
  bool paper_space = false;                // group 67 is 1
  // In front of the first subclass marker, and of XDATA, there is one group 5, outside of the
  // application groups, which are closed, do not nest, and name one extension dictionary at most.
  bool sound_head = false;
};

// Whether items of the type are parts of the POLYLINE or INSERT in front of them.
[[nodiscard]] bool is_part(std::string_view type);

// Whether items of the type begin or end a section; without them the file cannot be read.
[[nodiscard]] bool is_section_mark(std::string_view type);

class Document {
 public:
  Document() = default;  // no bytes at all
  using ItemVisitor = std::function<void(const Document&, ItemIndex, const ItemFacts&)>;

  // Cuts the file into items and shows each to the visitor, in file order, with the document as far
  // as it has been read. `name` stands for the file in the failure, which names the line (ASCII) or
  // the byte (binary). Refused are files that are no DXF, end early, or are damaged in their
  // framing; what is inside an item is not judged.
  [[nodiscard]] static Result<Document> read(std::string bytes, const std::string& name,
                                             const ItemVisitor& visit);

  [[nodiscard]] const Manner& manner() const { return manner_; }
  [[nodiscard]] const TextCodec& codec() const { return *codec_; }
  [[nodiscard]] const std::string& version() const { return version_; }
  // Whether the version is this one ("AC1015" is R2000) or later; a file without one is R12.
  [[nodiscard]] bool at_least(std::string_view version) const { return version_ >= version; }

  [[nodiscard]] const std::vector<Item>& items() const { return items_; }
  [[nodiscard]] Item& item(ItemIndex index) { return items_[index]; }
  [[nodiscard]] const Item& item(ItemIndex index) const { return items_[index]; }
  [[nodiscard]] std::string_view type_of(ItemIndex index) const {
    return type_names_[items_[index].type];
  }
  [[nodiscard]] std::string_view bytes(const Span& span) const;
  [[nodiscard]] std::string_view bytes(ItemIndex index) const { return bytes(items_[index].span); }
  [[nodiscard]] GroupReader groups(ItemIndex index) const {
    return {bytes(index), manner_.framing};
  }
  // The same facts of an item that was changed or added.
  [[nodiscard]] ItemFacts facts_of(ItemIndex index) const;

  // Item with the handle, also when it is the handle of a part of it; none if there is none.
  [[nodiscard]] std::optional<ItemIndex> by_handle(std::uint64_t handle) const;
  // A sentence on the first handle that two objects share, with the place of the second; empty if
  // none do.
  [[nodiscard]] const std::string& duplicate_handle() const { return duplicate_handle_; }
  // Whether several objects of the file have the handle.
  [[nodiscard]] bool is_shared(std::uint64_t handle) const {
    return shared_handles_.contains(handle);
  }
  // What the object names as its owner before its first subclass marker; 0: nothing.
  [[nodiscard]] std::uint64_t owner_of(ItemIndex index) const;
  // The digits of the handle as the object that has it spells them: programs that compare handles
  // as texts find it by no others. In upper case where no object has it.
  [[nodiscard]] std::string spelling_of(std::uint64_t handle) const;

  // Stores bytes for an item; assigning the result to Item::span makes them the item's.
  [[nodiscard]] Span store(std::string_view bytes);
  // The same for bytes that nothing but `former` refers to; if those were stored last, these take
  // their place. `bytes` must not be a view of them.
  [[nodiscard]] Span store_over(const Span& former, std::string_view bytes);
  // Adds an item in front of `terminator` (an ENDSEC or ENDTAB), behind those added there before.
  ItemIndex add_before(ItemIndex terminator, std::string_view bytes, std::uint64_t handle);
  // To be called when other bytes became the item's: they may be of another type.
  void refresh_type(ItemIndex index);
  // ENDSEC of the section, ENDTAB of the table; none when the file has no such.
  [[nodiscard]] std::optional<ItemIndex> end_of(Section section) const;
  [[nodiscard]] std::optional<ItemIndex> end_of_table(std::string_view table) const;

  // Handles are never given out twice; 0 when the file's objects have none (R12 and earlier may).
  [[nodiscard]] std::uint64_t new_handle();
  // Keeps a handle from being given out: something refers to it, though no object has it, and
  // would get hold of the new object.
  void keep_free(std::uint64_t handle) { kept_free_.insert(handle); }

  // --- Header variables ---

  // The group of a variable ("$LUPREC") that has just one; none otherwise. Its views are into the
  // header's bytes.
  [[nodiscard]] std::optional<Group> variable(std::string_view name) const;
  // The same as the file had it, whatever was set since.
  [[nodiscard]] std::optional<Group> variable_in_file(std::string_view name) const;
  // Replaces its value by bytes framed as the file's; false without such a variable. Putting back
  // the bytes of the file gives back the header of the file.
  bool set_variable(std::string_view name, std::string_view raw_value);
  [[nodiscard]] std::optional<ItemIndex> header() const { return header_; }
  // Where the header stands now; differs whenever a variable does.
  [[nodiscard]] Span header_span() const { return header_ ? items_[*header_].span : Span{}; }

  // --- Writing ---

  // Takes the file in pieces, in order; answers false when it can take no more.
  using ByteSink = korvel::ByteSink;

  // What the drawing writes in place of items, for this one writing. Handles that it needs must
  // have been given out before.
  class Substitutions {
   public:
    Substitutions() = default;
    Substitutions(const Substitutions&) = delete;
    Substitutions& operator=(const Substitutions&) = delete;
    virtual ~Substitutions() = default;
    // Asked for every item, so it should be quick.
    [[nodiscard]] virtual bool concerns(ItemIndex item) const = 0;
    // The bytes to write for an item that it concerns.
    virtual void substitute(ItemIndex item, std::string& out) const = 0;
    // New objects, to stand in front of the end of OBJECTS.
    [[nodiscard]] virtual bool write_new_objects(const ByteSink& sink) const = 0;
  };

  // False as soon as the sink answers false.
  [[nodiscard]] bool write(const ByteSink& sink, const Substitutions& substitutions) const;

 private:
  friend class DocumentReader;

  [[nodiscard]] bool write_item(ItemIndex index, const Substitutions& substitutions,
                                RunWriter& out) const;
  [[nodiscard]] std::string header_with_seed() const;
  [[nodiscard]] std::optional<Group> variable_in(const Span& header, std::string_view name) const;

  std::string original_;
  std::string added_;  // bytes of changed and new items
  Manner manner_;
  std::optional<TextCodec> codec_;
  std::string version_;
  std::vector<Item> items_;
  std::deque<std::string> type_names_;  // grows in place: views of them are kept
  std::size_t items_in_file_ = 0;
  std::unordered_map<ItemIndex, std::vector<ItemIndex>> added_before_;
  std::unordered_map<std::string, ItemIndex> table_ends_;
  std::unordered_map<Section, ItemIndex> section_ends_;
  std::optional<ItemIndex> header_;
  Span header_in_file_;
  HandleIndex handles_;
  std::string duplicate_handle_;
  std::unordered_set<std::uint64_t> shared_handles_;
  std::unordered_set<std::uint64_t> kept_free_;
  std::uint64_t next_handle_ = 1;
  std::uint64_t seed_in_file_ = 0;
  bool has_handles_ = false;
  bool handles_given_out_ = false;
};

}  // namespace korvel::dxf
