// Remembers which records were met.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <unordered_set>
#include <vector>

#include "exchange/record_rows.h"

namespace korvel {

// Records mostly come in the order of the drawing, so what continues a rising run is appended to a
// list, and only the others are hashed.
class SeenRecords {
 public:
  // False when the record was met before.
  bool insert(const RecordKey& key) {
    if (rising_.empty() || rising_.back() < key) {
      if (!others_.empty() && others_.contains(key)) return false;
      rising_.push_back(key);
      return true;
    }
    const auto found = std::ranges::lower_bound(rising_, key);
    if (found != rising_.end() && *found == key) return false;
    return others_.insert(key).second;
  }

 private:
  struct Hash {
    std::size_t operator()(const RecordKey& key) const noexcept {
      return std::hash<std::uint64_t>{}(key.entity.value * 0x9E3779B97F4A7C15U +
                                        static_cast<std::uint32_t>(key.number));
    }
  };

  std::vector<RecordKey> rising_;
  std::unordered_set<RecordKey, Hash> others_;
};

}  // namespace korvel
