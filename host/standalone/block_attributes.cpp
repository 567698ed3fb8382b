// The names and the attributes of a drawing's block references.
#include <algorithm>
#include <string_view>
#include <utility>

#include "frame/case_mapping.h"
#include "host/standalone/attribute_record.h"
#include "host/standalone/dictionary.h"
#include "host/standalone/drawing.h"

namespace korvel {

std::optional<std::wstring> Drawing::block_name_of(EntityId id) const {
  const Entity* const known = entity(id);
  if (known == nullptr || document_.type_of(known->item) != "INSERT") return std::nullopt;
  std::wstring block;
  EntityRecords records(document_.groups(known->item));
  (void)records.next_record();
  for (dxf::Group group; records.next(group);) {
    if (group.code != 2) continue;
    block = document_.codec().decode(group.value);
    break;
  }
  if (!block_names_) block_names_.emplace(document_);
  const auto defined = blocks_by_name_.find(lower(block));
  return block_names_->name_of(
      block, defined == blocks_by_name_.end() ? block : blocks_[defined->second].name);
}

std::vector<BlockAttribute> Drawing::attributes_of(EntityId id) const {
  const Entity* const known = entity(id);
  if (known == nullptr) return {};
  std::vector<BlockAttribute> attributes;
  AttributeReader reader(document_.groups(known->item), document_.codec());
  for (AttributeRecord attribute; reader.next(attribute);) {
    const auto lines = extension_object(attribute.extension_dictionary, "ACAD_MLATT");
    std::optional<std::wstring> whole = lines ? multi_line_text(document_, *lines) : std::nullopt;
    attributes.push_back({attribute.tag, whole ? std::move(*whole) : attribute.text});
  }
  return attributes;
}

// What an extension dictionary has under the key.
std::optional<dxf::ItemIndex> Drawing::extension_object(std::uint64_t dictionary,
                                                        std::string_view key) const {
  const std::optional<dxf::ItemIndex> item = document_.by_handle(dictionary);
  if (!item || document_.type_of(*item) != "DICTIONARY" || document_.item(*item).span.erased) {
    return std::nullopt;
  }
  const std::optional<DictionaryEntry> entry = find_entry(document_, document_.bytes(*item), key);
  return entry ? document_.by_handle(entry->handle) : std::nullopt;
}

bool Drawing::keeps_its_text(const AttributeRecord& attribute) const {
  const std::string_view name = attribute.layer.empty() ? "0" : attribute.layer;
  const auto layer = layers_by_name_.find(lower(document_.codec().decode(name)));
  if (layer != layers_by_name_.end() && layers_[layer->second].locked) return true;
  return extension_object(attribute.extension_dictionary, "ACAD_MLATT") ||
         extension_object(attribute.extension_dictionary, "ACAD_FIELD");
}

std::size_t Drawing::set_attribute_texts(EntityId id, const std::vector<AttributeText>& texts) {
  const Entity* const known = entity(id);
  if (known == nullptr) return 0;
  std::vector<const AttributeText*> wanted;
  wanted.reserve(texts.size());
  for (const AttributeText& text : texts)
    wanted.push_back(&text);
  std::ranges::stable_sort(wanted, {}, &AttributeText::attribute);

  const std::string_view former = document_.bytes(known->item);
  std::string changed;
  std::size_t copied = 0;  // bytes of `former`
  std::size_t taken = 0;
  AttributeReader reader(document_.groups(known->item), document_.codec());
  AttributeRecord record;
  auto next = wanted.begin();
  for (std::size_t place = 0; next != wanted.end() && reader.next(record); ++place) {
    if ((*next)->attribute != place) continue;
    const bool is_kept = keeps_its_text(record);
    std::wstring_view text = record.text;
    std::optional<std::string> groups;
    for (; next != wanted.end() && (*next)->attribute == place; ++next) {
      if (is_kept) continue;
      if ((*next)->text != text) {
        std::optional<std::string> made = attribute_text_groups(record, (*next)->text, document_);
        if (!made) continue;
        groups = std::move(made);
        text = (*next)->text;
      }
      ++taken;
    }
    if (!groups || text == record.text) continue;
    changed += former.substr(copied, record.place->begin - copied);
    changed += *groups;
    copied = record.place->end;
  }
  if (copied == 0) return taken;
  changed += former.substr(copied);
  replace_item(known->item, changed);
  return taken;
}

}  // namespace korvel
