// What the rows of a grid are sorted by: one number a row, whatever the type of the column.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "frame/od_value.h"

namespace korvel {

// Takes the values of a column, row by row, all of one type.
class SortKeys {
 public:
  void add(const ODValueView& value);
  void add_handle(std::wstring_view handle);

  // A smaller value has a smaller key, equal values have equal ones. Texts are in the order of
  // their lower-cased forms, then by code unit; points by x, then y, then z.
  [[nodiscard]] std::vector<double> take();

 private:
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::wstring_view text) const {
      return std::hash<std::wstring_view>()(text);
    }
  };
  void rank_texts();
  void rank_points();

  std::vector<double> keys_;  // numbers; of texts and points first their number, then their rank
  std::unordered_map<std::wstring, std::size_t, TextHash, std::equal_to<>> texts_;
  std::vector<Point3> points_;
};

}  // namespace korvel
