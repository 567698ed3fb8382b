// Entries of a DICTIONARY object.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/standalone/dxf/document.h"

namespace korvel {

struct DictionaryEntry {
  std::string key;  // as it stands in the file
  std::uint64_t handle = 0;
};

// All of these take the bytes of a dictionary.

// In the order of the file.
[[nodiscard]] std::vector<DictionaryEntry> entries_of(const dxf::Document& document,
                                                      std::string_view dictionary);

// Keys compare without case.
[[nodiscard]] std::optional<DictionaryEntry> find_entry(const dxf::Document& document,
                                                        std::string_view dictionary,
                                                        std::string_view key);

struct KeyedEntries {
  std::size_t count = 0;
  std::uint64_t first = 0;  // what the first of them leads to
};

[[nodiscard]] KeyedEntries entries_with_key(const dxf::Document& document,
                                            std::string_view dictionary, std::string_view key);

// The bytes of a dictionary with an entry more, behind those it has; one of the same key is
// replaced.
[[nodiscard]] std::string with_entry(const dxf::Document& document, std::string_view dictionary,
                                     const DictionaryEntry& entry);

using KeysByHandle = std::unordered_map<std::uint64_t, std::string>;

// The bytes with other keys for the entries of these handles.
[[nodiscard]] std::string with_keys(const dxf::Document& document, std::string_view dictionary,
                                    KeysByHandle keys);

// The bytes without the entries of these handles.
[[nodiscard]] std::string without_entries(const dxf::Document& document,
                                          std::string_view dictionary,
                                          std::vector<std::uint64_t> handles);

// The bytes of an entity with a reference to its extension dictionary, in place of the one it has.
[[nodiscard]] std::string with_extension_dictionary(const dxf::Document& document,
                                                    std::string_view entity, std::uint64_t handle);

// Groups of a new dictionary that owns its entries, up to its first entry, in the manner of the
// drawing's version. `reactor` is the dictionary it is an entry of; 0: it is an extension
// dictionary.
void begin_dictionary(dxf::GroupWriter& writer, const dxf::Document& document, std::uint64_t handle,
                      std::uint64_t owner, std::uint64_t reactor);

// Groups of a new XRECORD up to its data.
void begin_xrecord(dxf::GroupWriter& writer, const dxf::Document& document, std::uint64_t handle,
                   std::uint64_t dictionary);

}  // namespace korvel
