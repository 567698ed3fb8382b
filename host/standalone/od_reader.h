// Reads the object data of a drawing file into the drawing's tables, and says which entities take
// records.
//
// Records of an entity are certain to be found again after saving when one chain of sound objects
// leads to them. An entity takes records if
//
// 1. the file is of R13 or later and has a root dictionary, the first DICTIONARY of OBJECTS. Its
//    entry KORVEL_OBJECT_DATA, if there is one, leads to nothing or to a sound link (see below);
// 2. the entity is in ENTITIES or in a block, and no VERTEX, ATTRIB or SEQEND without an owner in
//    front of it, which erasing others may turn into a part of another entity;
// 3. its head is sound (ItemFacts::sound_head), and no other object has its handle;
// 4. what it names as its extension dictionary is nothing, no object at all, or a sound link;
// 5. that dictionary has one entry KORVEL_OD at most, which leads to a sound link whose data are
//    records.
//
// A sound link is a DICTIONARY, or at the end of the chain an XRECORD, of OBJECTS whose handle is
// its own alone, that names as its owner what leads to it (or nothing), and to which nothing else
// in a chain has led. As it is linked, no other entity's removal takes it along.
//
// A handle in a chain that no object has is never given to a new object, which would be linked by
// it. All this is judged here, once, when the drawing is opened; what is made later is sound.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/standalone/dictionary.h"
#include "host/standalone/drawing.h"

namespace korvel {

// What the pass over the file found of an entity.
struct OdHead {
  bool is_sound = false;
  std::uint64_t extension_dictionary = 0;
};

class OdReader {
 public:
  // `heads` are by entity.
  OdReader(Drawing& drawing, const std::vector<OdHead>& heads) : drawing_(drawing), heads_(heads) {}

  // What cannot be read stays in the file as it is; the drawing's notices say so.
  void read();

 private:
  [[nodiscard]] bool read_definitions();
  void read_definition(const DictionaryEntry& entry);
  [[nodiscard]] RecordsPlace place_of_records(std::uint32_t entity);
  // Of a dictionary whose chain was refused.
  [[nodiscard]] bool has_records(dxf::ItemIndex dictionary);
  [[nodiscard]] bool follow_chain(std::uint32_t entity, dxf::ItemIndex dictionary);
  [[nodiscard]] std::optional<dxf::ItemIndex> object_with(std::uint64_t handle);
  [[nodiscard]] bool link(dxf::ItemIndex item, std::string_view type, dxf::ItemIndex owner,
                          std::uint32_t slot);
  [[nodiscard]] bool read_records(std::uint32_t entity, dxf::ItemIndex record);
  [[nodiscard]] std::optional<std::uint32_t> table_named(std::string_view raw);
  void add_notices(std::size_t without_place, std::size_t unreadable);

  Drawing& drawing_;
  const std::vector<OdHead>& heads_;
  // Refused dictionaries and whether they have records: many entities may name the same one.
  std::unordered_map<dxf::ItemIndex, bool> refused_;
  std::string last_table_raw_;
  std::optional<std::uint32_t> last_table_;
  std::vector<ODValue> values_;
  std::vector<ODValueView> views_;
};

}  // namespace korvel
