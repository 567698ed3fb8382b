// What the object data change in a drawing file, worked out for one writing of it.
//
// The document in memory keeps what the file held; tables and records stand in OdTables alone. At
// each writing the entities whose records were touched are written anew: their XRECORD, and where
// it was missing, the extension dictionary and the reference to it. So undoing leaves no trace, and
// records that come and go between two savings change nothing but the handle seed.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "host/standalone/drawing.h"

namespace korvel {

class OdWriting final : public dxf::Document::Substitutions {
 public:
  // Gives out the handles that new objects need; the drawing remembers them for later writings.
  explicit OdWriting(Drawing& drawing);

  [[nodiscard]] bool concerns(dxf::ItemIndex item) const override;
  void substitute(dxf::ItemIndex item, std::string& out) const override;
  [[nodiscard]] bool write_new_objects(const dxf::Document::ByteSink& sink) const override;

 private:
  void plan_entities();
  void plan_definitions();
  [[nodiscard]] bool is_live(std::uint32_t entity) const;
  [[nodiscard]] bool has_chain(std::uint32_t entity) const;
  [[nodiscard]] std::uint64_t dictionary_of(std::uint32_t entity) const;
  void write_records(std::uint32_t entity, std::string& out) const;
  void write_definition(std::uint32_t table, std::string& out) const;
  void substitute_entity(std::uint32_t entity, std::string& out) const;
  void substitute_dictionary(std::uint32_t entity, std::string& out) const;
  void append_new_objects(std::uint32_t entity, std::string& out) const;
  void append_new_definitions(std::string& out) const;
  void plan_known_definition(std::uint32_t table);
  [[nodiscard]] bool is_as_in_file(std::uint32_t table) const;
  [[nodiscard]] std::string known_entries() const;
  void append_new_entries(std::string& dictionary) const;
  // The bytes of an XRECORD in the file up to its data.
  [[nodiscard]] std::string_view head_of(dxf::ItemIndex record) const;

  Drawing& drawing_;
  const dxf::Document& document_;
  bool anything_ = false;
  std::vector<std::uint32_t> new_records_;  // entities that get an XRECORD they had not
  std::unordered_map<dxf::ItemIndex, std::string> definitions_;  // changed items of the definitions
  std::vector<std::uint32_t> new_definitions_;                   // tables without an XRECORD
};

}  // namespace korvel
