#include "host/standalone/attribute_record.h"

#include "host/standalone/dxf/group_writer.h"

namespace korvel {
namespace {

constexpr int text_code = 1;
constexpr int piece_code = 3;  // of a long text, in front of its last group

// Bytes of a text in one group, as far as the format's description goes.
std::size_t longest_text(const dxf::Document& document) {
  return document.at_least("AC1015") ? 2049 : 255;
}

}  // namespace

AttributeReader::AttributeReader(dxf::GroupReader groups, const dxf::TextCodec& codec)
    : records_(groups),
      codec_(codec),
      is_reference_(records_.next_record() && records_.type() == "INSERT") {}

bool AttributeReader::next(AttributeRecord& attribute) {
  if (!is_reference_ || !records_.next_record() || records_.type() != "ATTRIB") return false;
  attribute.tag.clear();
  attribute.text.clear();
  attribute.layer = {};
  attribute.is_multi_line = false;
  attribute.place.reset();
  read_own_part(attribute);
  attribute.extension_dictionary = records_.extension_dictionary();
  read_embedded_part(attribute);
  return true;
}

void AttributeReader::read_own_part(AttributeRecord& attribute) {
  constexpr int height_code = 40;
  bool has_text = false;
  for (dxf::Group group; records_.next(group);) {
    switch (group.code) {
      case text_code:
        codec_.decode(group.value, attribute.text);
        attribute.place = {group.begin, group.end};
        has_text = true;
        break;
      case 2:
        codec_.decode(group.value, attribute.tag);
        break;
      case 8:
        if (attribute.layer.empty()) attribute.layer = group.value;
        break;
      case height_code:
        if (!has_text) attribute.place = {group.end, group.end};
        break;
      default:
        break;
    }
  }
}

// The attribute itself then has a blank for its text.
void AttributeReader::read_embedded_part(AttributeRecord& attribute) {
  for (dxf::Group group; records_.next_embedded(group);) {
    if (group.code != text_code && group.code != piece_code) continue;
    if (!attribute.is_multi_line) {
      attribute.is_multi_line = true;
      attribute.text.clear();
      attribute.place = {group.begin, group.begin};
    }
    codec_.decode(group.value, piece_);
    attribute.text += piece_;
    if (attribute.place && attribute.place->end == group.begin) {
      attribute.place->end = group.end;
    } else {
      attribute.place.reset();
    }
  }
}

std::optional<std::string> attribute_text_groups(const AttributeRecord& attribute,
                                                 std::wstring_view text,
                                                 const dxf::Document& document) {
  if (!attribute.place) return std::nullopt;
  std::string groups;
  dxf::GroupWriter writer(document.manner(), document.codec(), groups);
  if (attribute.is_multi_line) {
    writer.long_text(piece_code, text_code, text);
  } else {
    const std::string encoded = document.codec().encode(text);
    if (encoded.size() > longest_text(document)) return std::nullopt;
    writer.raw(text_code, encoded);
  }
  return groups;
}

std::optional<std::wstring> multi_line_text(const dxf::Document& document, dxf::ItemIndex xrecord) {
  const dxf::TextCodec& codec = document.codec();
  std::wstring text;
  bool in_text_object = false;
  dxf::GroupReader reader = document.groups(xrecord);
  for (dxf::Group group; reader.next(group);) {
    if (!in_text_object) {
      in_text_object = group.code == text_code && group.value == "Embedded Object";
    } else if (group.code == piece_code || group.code == text_code) {
      text += codec.decode(group.value);
      if (group.code == text_code) return text;
    }
  }
  return std::nullopt;
}

}  // namespace korvel
