// Reads the object data of a drawing file into the drawing's tables.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/standalone/drawing.h"

namespace korvel {

// What the pass over the file found: references by handle, in file order.
struct OdLinks {
  // An entity and its extension dictionary.
  std::vector<std::pair<std::uint32_t, std::uint64_t>> extensions;
  // An item that is a dictionary, and what its key KORVEL_OD names.
  std::vector<std::pair<dxf::ItemIndex, std::uint64_t>> dictionaries;
};

class OdReader {
 public:
  OdReader(Drawing& drawing, const OdLinks& links) : drawing_(drawing), links_(links) {}

  // What cannot be read stays in the file as it stands and is told in the drawing's notices.
  void read();

 private:
  void read_definitions();
  void link_dictionary(std::uint32_t entity, std::uint64_t handle);
  [[nodiscard]] std::uint64_t records_in(dxf::ItemIndex dictionary);
  [[nodiscard]] bool read_records(std::uint32_t entity, dxf::ItemIndex record);
  [[nodiscard]] std::optional<std::uint32_t> table_named(std::string_view raw);

  Drawing& drawing_;
  const OdLinks& links_;
  std::size_t next_dictionary_ = 0;  // both lists usually run in the same order
  std::size_t unreadable_ = 0;
  std::string last_table_raw_;
  std::optional<std::uint32_t> last_table_;
  std::vector<ODValue> values_;
  std::vector<ODValueView> views_;
};

}  // namespace korvel
