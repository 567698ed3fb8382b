// The file that says which attribute of which block belongs to which column of which table.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "frame/od_store.h"
#include "frame/text_file.h"

namespace korvel {

struct MappedAttribute {
  std::wstring tag;
  std::wstring table;
  std::wstring column;

  friend bool operator==(const MappedAttribute&, const MappedAttribute&) = default;
};

// By block name, in ordinal order; those of one block in the order of the file.
using AttributeMapping = std::map<std::wstring, std::vector<MappedAttribute>, std::less<>>;

struct MappingReading {
  AttributeMapping mapping;
  std::size_t count = 0;  // of the attributes in it
  bool failed = false;    // there is a line that is no mapping: do not use any of them
  std::wstring messages;  // for the user, a line for each fault
};

// Each line is empty, or a block, a tag, a table and a column with tabs between them. "?" and what
// follows it are a comment: a template's placeholders begin with it, so that what nobody has filled
// in yet counts for nothing. A mapping to a table or column that the drawing lacks is left out.
[[nodiscard]] MappingReading read_attribute_mapping(TextReader lines, const ODStore& store);

}  // namespace korvel
