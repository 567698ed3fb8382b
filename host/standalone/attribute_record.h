// The ATTRIB records behind a block reference: what they say, and where their text stands.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/standalone/dxf/document.h"
#include "host/standalone/entity_records.h"

namespace korvel {

struct AttributeRecord {
  std::wstring tag;
  std::wstring text;
  std::string_view layer;  // as it stands in the file
  std::uint64_t extension_dictionary = 0;
  // The text of a multi-line attribute of R2018 lies in its embedded object, in several groups if
  // it is long.
  bool is_multi_line = false;
  // The groups of the text in the bytes of the reference, or the place of a group that is missing;
  // none where they do not stand together or no place is known.
  struct Place {
    std::size_t begin = 0;
    std::size_t end = 0;
  };
  std::optional<Place> place;
};

class AttributeReader {
 public:
  // The groups are those of one entity, head record first; one that is no block reference has no
  // attributes.
  AttributeReader(dxf::GroupReader groups, const dxf::TextCodec& codec);

  // Reads the next attribute, in file order. False: there is none.
  bool next(AttributeRecord& attribute);

 private:
  void read_own_part(AttributeRecord& attribute);
  void read_embedded_part(AttributeRecord& attribute);

  EntityRecords records_;
  const dxf::TextCodec& codec_;
  std::wstring piece_;
  bool is_reference_;
};

// The groups of another text, to stand in the attribute's place. None when it has no place or the
// text is too long for one group.
[[nodiscard]] std::optional<std::string> attribute_text_groups(const AttributeRecord& attribute,
                                                               std::wstring_view text,
                                                               const dxf::Document& document);

// The whole text of a multi-line attribute in the XRECORD that R2000 to R2013 keep it in; none if
// it says nothing of a text.
[[nodiscard]] std::optional<std::wstring> multi_line_text(const dxf::Document& document,
                                                          dxf::ItemIndex xrecord);

}  // namespace korvel
