#include "host/standalone/block_names.h"

#include <utility>

#include "frame/case_mapping.h"

namespace korvel {

BlockNames::BlockNames(const dxf::Document& document) {
  for (dxf::ItemIndex item = 0; item < document.items().size(); ++item) {
    if (document.item(item).section == dxf::Section::Tables &&
        document.type_of(item) == "BLOCK_RECORD") {
      enter(document, item);
    }
  }
}

void BlockNames::enter(const dxf::Document& document, dxf::ItemIndex item) {
  const dxf::TextCodec& codec = document.codec();
  Record record;
  std::wstring application;  // whose XDATA is being read
  bool has_name = false;
  dxf::GroupReader reader = document.groups(item);
  for (dxf::Group group; reader.next(group);) {
    if (group.code == 1001) {
      application = codec.decode(group.value);
    } else if (group.code == 2 && !std::exchange(has_name, true)) {
      record.name = codec.decode(group.value);
    } else if (group.code == 1000 &&
               equal_ignoring_case(application, L"AcDbDynamicBlockTrueName")) {
      record.true_name = codec.decode(group.value);
    } else if (group.code == 1005 && equal_ignoring_case(application, L"AcDbBlockRepBTag")) {
      record.definition = group.handle();
    }
  }
  // Of two records of one name the first is the one that references mean.
  std::wstring key = lower(record.name);
  const auto [entered, is_new] = records_.try_emplace(std::move(key), std::move(record));
  if (is_new) by_handle_.try_emplace(document.item(item).handle, &entered->second);
}

std::wstring BlockNames::name_of(std::wstring_view block, std::wstring_view otherwise) const {
  const auto found = records_.find(lower(block));
  if (found == records_.end()) return std::wstring(otherwise);
  const Record* record = &found->second;
  // One step leads from a variant to its definition; in a damaged file tags may go round in a ring.
  constexpr int most_steps = 8;
  for (int step = 0; record->definition != 0; ++step) {
    const auto definition = by_handle_.find(record->definition);
    if (definition == by_handle_.end() || step == most_steps) return found->second.name;
    record = definition->second;
  }
  return record->true_name.empty() ? record->name : record->true_name;
}

}  // namespace korvel
