// What the values of records become, looked up quickly for any number of records.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "exchange/alias_files.h"
#include "exchange/table_finder.h"
#include "frame/od_store.h"
#include "frame/text_hash.h"

namespace korvel {

class ValueAliases {
 public:
  // The maps must outlive this, and no table or column may change its name meanwhile.
  ValueAliases(const ODStore& store, const AliasMaps& maps);
  ValueAliases(const ValueAliases&) = delete;
  ValueAliases& operator=(const ValueAliases&) = delete;
  ~ValueAliases() = default;

  // Writes those values of the current record that become others. Whether there was one.
  bool translate(RecordIterator& record);

 private:
  struct Hash {
    std::size_t operator()(std::wstring_view text) const {
      return static_cast<std::size_t>(hash_of_text(text));
    }
  };
  using Texts = std::unordered_map<std::wstring_view, std::wstring_view, Hash>;
  struct Column {
    int index;
    std::vector<const Texts*> texts;  // in the order in which they are asked
  };
  struct Table {
    std::wstring name;
    std::vector<Column> columns;  // those for which there are any
  };

  const Texts* texts_of(const Aliases& aliases);
  [[nodiscard]] Table table_of(const ODTableDef& definition, const AliasMaps& maps);
  [[nodiscard]] bool translate(RecordIterator& record, const Column& column);

  std::map<const Aliases*, Texts> texts_;
  std::vector<Table> tables_;  // by name
  TableFinder<Table> finder_{{}};
  // Buffers.
  std::wstring text_;
  ODValue read_;
};

}  // namespace korvel
