// Alias files: the names, fields and values of object data, and what they are called elsewhere.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "frame/text_file.h"

namespace korvel {

// Exact, letter case included.
using Aliases = std::map<std::wstring, std::wstring, std::less<>>;
using AliasesByName = std::map<std::wstring, Aliases, std::less<>>;

struct AliasMaps {
  Aliases tables;
  Aliases fields;                                                         // of any table
  AliasesByName table_fields;                                             // by table
  Aliases values;                                                         // of any field
  AliasesByName field_values;                                             // by field
  std::map<std::wstring, AliasesByName, std::less<>> table_field_values;  // by table, by field
};

enum class AliasFile { Tables, Fields, Values };

struct AliasLoad {
  std::size_t loaded = 0;               // good lines
  std::vector<std::wstring> bad_lines;  // as they were read, line ends included
  std::optional<TextFileError> error;   // then nothing was loaded
};

// Adds what the lines say. Fields are parted by tabs, a "#" begins a comment:
//   Tables   name, alias
//   Fields   field, alias | table, field, alias
//   Values   value, alias | field, value, alias | table, field, value, alias
// A line of any other number of fields, an empty one included, is bad. Of several aliases of one
// name the first one holds in every map; the other lines are good ones nevertheless.
[[nodiscard]] AliasLoad load_aliases(TextReading& reading, AliasFile kind, AliasMaps& maps);

// The same for a file, which is UTF-8 if it is marked so, and UTF-16 else.
[[nodiscard]] AliasLoad load_alias_file(const std::filesystem::path& path, AliasFile kind,
                                        AliasMaps& maps);

// The aliases that an earlier name, in the order of the names, has already, one for each later one.
[[nodiscard]] std::vector<std::wstring> duplicate_aliases(const Aliases& aliases);

// The maps that lead back. Tables and fields by which others are kept remain names; of several
// names with one alias the first one in their order is gone back to.
[[nodiscard]] AliasMaps inverted(const AliasMaps& maps);

}  // namespace korvel
