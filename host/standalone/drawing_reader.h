// Builds a Drawing from the items of a DXF file.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/standalone/drawing.h"
#include "host/standalone/od_reader.h"

namespace korvel {

class DrawingReader {
 public:
  [[nodiscard]] Result<std::unique_ptr<Drawing>> read(std::string bytes, const std::string& name);

 private:
  void take_table_record(const dxf::Document& document, dxf::ItemIndex item,
                         const dxf::ItemFacts& facts);
  void take_in_blocks(const dxf::Document& document, dxf::ItemIndex item,
                      const dxf::ItemFacts& facts);
  void take_entity(const dxf::Document& document, dxf::ItemIndex item, const dxf::ItemFacts& facts,
                   std::uint32_t block);
  void take_object(const dxf::Document& document, dxf::ItemIndex item);
  void begin_block(const dxf::Document& document, dxf::ItemIndex item, const dxf::ItemFacts& facts);
  [[nodiscard]] std::uint32_t layer_index(const dxf::Document& document, std::string_view raw);
  void set_slots();
  void add_notices();

  std::unique_ptr<Drawing> drawing_;
  std::vector<OdHead> heads_;  // by entity
  std::uint32_t block_ = 0;
  bool in_block_ = false;
  std::string last_layer_raw_;
  std::uint32_t last_layer_ = 0;
  bool has_last_layer_ = false;
  std::uint64_t first_model_owner_ = 0;
  std::size_t foreign_records_ = 0;
};

}  // namespace korvel
