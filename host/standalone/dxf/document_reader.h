// Cuts a DXF file into the items of a Document.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "host/standalone/dxf/document.h"

namespace korvel::dxf {

// Gathers the facts of one item group by group.
class FactsCollector {
 public:
  void begin() { *this = {}; }
  void take(const Group& group);
  void end();  // when all groups were taken

  ItemFacts facts;
  std::uint64_t handle = 0;
  bool is_dimstyle = false;

 private:
  int markers_ = 0;  // subclass markers seen
  int depth_ = 0;    // of 102 groups before the first marker
  int handles_ = 0;  // groups 5 there
  int references_ = 0;
  bool in_extension_ = false;
  bool in_xdata_ = false;
  bool damaged_ = false;
  bool has_name_ = false;
  bool has_layer_ = false;
};

class DocumentReader {
 public:
  DocumentReader(std::string name, const Document::ItemVisitor& visit)
      : name_(std::move(name)), visit_(visit) {}

  [[nodiscard]] Result<Document> read(std::string bytes);

 private:
  [[nodiscard]] std::optional<Failure> choose_framing();
  [[nodiscard]] std::optional<Failure> cut();
  [[nodiscard]] std::optional<Failure> begin_item(const Group& group);
  void end_item(std::size_t end);
  void end_leading_bytes(std::size_t end);
  void take_group(const Group& group);
  void take_header_group(const Group& group);
  void finish_header();
  void enter_handle(std::uint64_t handle, std::size_t offset);
  [[nodiscard]] std::uint16_t type_index(std::string_view type);
  [[nodiscard]] Failure fail_at(std::size_t offset, std::string_view reason) const;
  [[nodiscard]] std::string place_of(std::size_t offset) const;

  std::string name_;
  const Document::ItemVisitor& visit_;
  Document document_;
  std::string_view bytes_;
  std::size_t first_group_ = 0;

  Item item_;
  std::string_view type_;
  bool open_ = false;         // an item is being read
  bool takes_parts_ = false;  // a POLYLINE or INSERT whose SEQEND has not come yet
  bool in_part_ = false;      // inside a VERTEX, ATTRIB or SEQEND of it
  bool part_has_handle_ = false;
  Section section_ = Section::Outside;
  std::string_view table_;
  FactsCollector collector_;

  std::string_view header_variable_;
  std::string code_page_;
  std::uint64_t highest_handle_ = 0;
  std::unordered_map<std::string, std::uint16_t> type_indexes_;
  std::string_view last_type_;
  std::uint16_t last_type_index_ = 0;
};

}  // namespace korvel::dxf
