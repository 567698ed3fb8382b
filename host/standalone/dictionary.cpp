#include "host/standalone/dictionary.h"

#include <algorithm>

namespace korvel {
namespace {

constexpr std::string_view first_version_with_merge_style = "AC1015";
constexpr std::string_view first_version_with_owner_flag = "AC1014";

bool equal_ignoring_case(std::string_view left, std::string_view right) {
  const auto upper = [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; };
  return std::ranges::equal(left, right, {}, upper, upper);
}

// Calls visit(key, value) for the two groups of every entry; an answer of false ends the walk.
template <class Visit>
void for_each_entry(const dxf::Document& document, std::string_view dictionary, Visit visit) {
  dxf::GroupReader reader(dictionary, document.manner().framing);
  dxf::Group key;
  dxf::Group group;
  bool has_key = false;
  while (reader.next(group)) {
    if (group.code == 3) {
      key = group;
      has_key = true;
    } else if (has_key && (group.code == 350 || group.code == 360)) {
      if (!visit(key, group)) return;
      has_key = false;
    }
  }
}

}  // namespace

std::vector<DictionaryEntry> entries_of(const dxf::Document& document,
                                        std::string_view dictionary) {
  std::vector<DictionaryEntry> entries;
  for_each_entry(document, dictionary, [&entries](const dxf::Group& key, const dxf::Group& value) {
    entries.push_back({std::string(key.value), value.handle()});
    return true;
  });
  return entries;
}

std::optional<DictionaryEntry> find_entry(const dxf::Document& document,
                                          std::string_view dictionary, std::string_view key) {
  std::optional<DictionaryEntry> found;
  for_each_entry(document, dictionary, [&](const dxf::Group& entry, const dxf::Group& value) {
    if (!equal_ignoring_case(entry.value, key)) return true;
    found = {std::string(entry.value), value.handle()};
    return false;
  });
  return found;
}

KeyedEntries entries_with_key(const dxf::Document& document, std::string_view dictionary,
                              std::string_view key) {
  KeyedEntries entries;
  for_each_entry(document, dictionary, [&](const dxf::Group& entry, const dxf::Group& value) {
    if (equal_ignoring_case(entry.value, key) && entries.count++ == 0) {
      entries.first = value.handle();
    }
    return true;
  });
  return entries;
}

std::string with_entry(const dxf::Document& document, std::string_view dictionary,
                       const DictionaryEntry& entry) {
  constexpr int hard_owner_flag = 280;
  constexpr int soft_entry = 350;
  constexpr int hard_entry = 360;
  // An entry of the key that leads to nothing makes way.
  std::optional<std::string> exchanged;
  for_each_entry(document, dictionary, [&](const dxf::Group& key, const dxf::Group& value) {
    if (!equal_ignoring_case(key.value, entry.key)) return true;
    std::string fresh;
    dxf::GroupWriter(document.manner(), document.codec(), fresh).handle(value.code, entry.handle);
    exchanged = std::string(dictionary).replace(value.begin, value.end - value.begin, fresh);
    return false;
  });
  if (exchanged) return *exchanged;

  dxf::GroupReader reader(dictionary, document.manner().framing);
  dxf::Group group;
  std::size_t place = dictionary.size();
  int entry_code = document.at_least(first_version_with_owner_flag) ? soft_entry : hard_entry;
  while (reader.next(group)) {
    constexpr int first_extended_data = 1000;
    if (group.code == hard_owner_flag && group.integer() == 1) entry_code = hard_entry;
    if (group.code >= first_extended_data) {
      place = group.begin;
      break;
    }
  }
  std::string added;
  dxf::GroupWriter writer(document.manner(), document.codec(), added);
  writer.raw(3, entry.key);
  writer.handle(entry_code, entry.handle);
  return std::string(dictionary).insert(place, added);
}

std::string with_keys(const dxf::Document& document, std::string_view dictionary,
                      KeysByHandle keys) {
  std::string renamed;
  std::size_t from = 0;
  dxf::GroupWriter writer(document.manner(), document.codec(), renamed);
  for_each_entry(document, dictionary, [&](const dxf::Group& key, const dxf::Group& value) {
    const auto other = keys.extract(value.handle());
    if (other.empty()) return true;
    renamed += dictionary.substr(from, key.begin - from);
    writer.raw(key.code, other.mapped());
    from = key.end;
    return true;
  });
  renamed += dictionary.substr(from);
  return renamed;
}

std::string without_entries(const dxf::Document& document, std::string_view dictionary,
                            std::vector<std::uint64_t> handles) {
  std::ranges::sort(handles);
  std::string kept;
  std::size_t from = 0;
  for_each_entry(document, dictionary, [&](const dxf::Group& key, const dxf::Group& value) {
    if (std::ranges::binary_search(handles, value.handle())) {
      kept += dictionary.substr(from, key.begin - from);
      from = value.end;
    }
    return true;
  });
  kept += dictionary.substr(from);
  return kept;
}

std::string with_extension_dictionary(const dxf::Document& document, std::string_view entity,
                                      std::uint64_t handle) {
  constexpr int handle_code = 5;
  constexpr std::string_view opening = "{ACAD_XDICTIONARY";
  dxf::GroupReader reader(entity, document.manner().framing);
  dxf::Group group;
  std::size_t place = 0;
  std::size_t end = 0;
  bool is_opened = false;
  (void)reader.next(group);
  while (reader.next(group) && group.code != 100 && group.code != 0) {
    if (group.code == handle_code && !is_opened) place = end = group.end;
    if (group.code == 102 && is_opened) break;
    if (group.code == 102 && group.value == opening) {
      is_opened = true;
      place = end = group.end;
    } else if (is_opened && (group.code == 350 || group.code == 360)) {
      place = group.begin;  // a reference to no dictionary makes way
      end = group.end;
    }
  }
  std::string reference;
  dxf::GroupWriter writer(document.manner(), document.codec(), reference);
  if (!is_opened) writer.raw(102, opening);
  writer.handle(360, handle);
  if (!is_opened) writer.raw(102, "}");
  return std::string(entity).replace(place, end - place, reference);
}

void begin_dictionary(dxf::GroupWriter& writer, const dxf::Document& document, std::uint64_t handle,
                      std::uint64_t owner, std::uint64_t reactor) {
  writer.raw(0, "DICTIONARY");
  writer.handle(5, handle);
  if (reactor != 0) {
    writer.raw(102, "{ACAD_REACTORS");
    writer.raw(330, document.spelling_of(reactor));
    writer.raw(102, "}");
  }
  writer.raw(330, document.spelling_of(owner));
  writer.raw(100, "AcDbDictionary");
  if (document.at_least(first_version_with_owner_flag)) writer.integer(280, 1);
  if (document.at_least(first_version_with_merge_style)) writer.integer(281, 1);
}

void begin_xrecord(dxf::GroupWriter& writer, const dxf::Document& document, std::uint64_t handle,
                   std::uint64_t dictionary) {
  constexpr std::string_view first_version_with_cloning_flag = "AC1015";
  writer.raw(0, "XRECORD");
  writer.handle(5, handle);
  writer.raw(102, "{ACAD_REACTORS");
  const std::string owner = document.spelling_of(dictionary);
  writer.raw(330, owner);
  writer.raw(102, "}");
  writer.raw(330, owner);
  writer.raw(100, "AcDbXrecord");
  if (document.at_least(first_version_with_cloning_flag)) writer.integer(280, 1);
}

}  // namespace korvel
