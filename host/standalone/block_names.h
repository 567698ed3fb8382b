// What users call blocks: the anonymous variants of a dynamic block go by its name.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

#include "host/standalone/dxf/document.h"

namespace korvel {

// As the BLOCK_RECORDs of a drawing say when this is made; no command changes them.
class BlockNames {
 public:
  explicit BlockNames(const dxf::Document& document);
  BlockNames(const BlockNames&) = delete;
  BlockNames& operator=(const BlockNames&) = delete;
  ~BlockNames() = default;

  // For the block that a reference names, in whatever case; `otherwise` when it has no record (no
  // block has in R12).
  [[nodiscard]] std::wstring name_of(std::wstring_view block, std::wstring_view otherwise) const;

 private:
  struct Record {
    std::wstring name;
    std::wstring true_name;  // of a dynamic definition; before R2010 its own name is anonymous
    std::uint64_t definition = 0;  // of a variant: handle of the record of its definition
  };

  void enter(const dxf::Document& document, dxf::ItemIndex item);

  std::unordered_map<std::wstring, Record> records_;            // by lower-cased name
  std::unordered_map<std::uint64_t, const Record*> by_handle_;  // into records_
};

}  // namespace korvel
