// Drawings made to measure for the tests: which layers there are, and what lies on them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "frame/utf.h"
#include "host/standalone/drawing.h"

namespace korvel::test {

struct LayerSpec {
  std::wstring name;  // hidden if it begins with an asterisk
  bool frozen = false;
  bool locked = false;
  bool off = false;
};

struct AttributeSpec {
  std::wstring tag;
  std::wstring text;
  std::wstring layer = L"0";
};

struct EntitySpec {
  std::wstring layer;  // may be one that has no record
  bool in_paper_space = false;
  std::wstring block{};  // makes it a reference of this block, which is not defined
  std::vector<AttributeSpec> attributes{};
};

inline constexpr std::uint64_t first_entity_handle = 0x2A;
inline constexpr std::uint64_t first_attribute_handle = 0x1000;

// An R2018 drawing; the entities are points, or else block references, with handles from
// first_entity_handle upwards, their attributes from first_attribute_handle.
inline std::unique_ptr<Drawing> make_drawing(const std::vector<LayerSpec>& layers,
                                             const std::vector<EntitySpec>& entities) {
  std::string dxf;
  const auto add = [&dxf](int code, const std::string& value) {
    dxf += std::to_string(code) + "\n" + value + "\n";
  };
  const auto hex = [](std::uint64_t number) {
    char digits[20];
    (void)std::snprintf(digits, sizeof digits, "%llX", static_cast<unsigned long long>(number));
    return std::string(digits);
  };
  dxf +=
      "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1032\n9\n$LUPREC\n70\n4\n9\n$LTSCALE\n40\n2.0\n"
      "9\n$CLAYER\n8\n0\n9\n$HANDSEED\n5\n10000\n0\nENDSEC\n0\nSECTION\n2\nTABLES\n"
      "0\nTABLE\n2\nLAYER\n5\n2\n70\n9\n";
  std::uint64_t handle = 0x10;
  for (const LayerSpec& layer : layers) {
    add(0, "LAYER");
    add(5, hex(handle++));
    add(2, to_utf8(layer.name));
    add(70, std::to_string((layer.frozen ? 1 : 0) | (layer.locked ? 4 : 0)));
    add(62, layer.off ? "-7" : "7");
  }
  dxf += "0\nENDTAB\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n";
  handle = first_entity_handle;
  std::uint64_t attribute_handle = first_attribute_handle;
  for (const EntitySpec& entity : entities) {
    const bool is_reference = !entity.block.empty();
    add(0, is_reference ? "INSERT" : "POINT");
    add(5, hex(handle++));
    if (entity.in_paper_space) add(67, "1");
    add(8, to_utf8(entity.layer));
    if (is_reference) add(2, to_utf8(entity.block));
    dxf += "10\n1.0\n20\n2.0\n30\n3.0\n";
    for (const AttributeSpec& attribute : entity.attributes) {
      add(0, "ATTRIB");
      add(5, hex(attribute_handle++));
      add(8, to_utf8(attribute.layer));
      dxf += "40\n2.5\n";
      add(1, to_utf8(attribute.text));
      add(2, to_utf8(attribute.tag));
    }
    if (!entity.attributes.empty()) add(0, "SEQEND");
  }
  dxf +=
      "0\nENDSEC\n0\nSECTION\n2\nOBJECTS\n0\nDICTIONARY\n5\nC\n330\n0\n100\nAcDbDictionary\n"
      "0\nENDSEC\n0\nEOF\n";
  return std::move(*Drawing::read(std::move(dxf), "test.dxf"));
}

// Identifiers of the first `count` entities of make_drawing.
inline EntityList ids_of(const Drawing& drawing, std::size_t count) {
  EntityList ids;
  for (std::uint64_t i = 0; i < count; ++i)
    ids.push_back(drawing.by_handle(first_entity_handle + i).value_or(EntityId{}));
  return ids;
}

}  // namespace korvel::test
