// Text patterns with "*", and the replacement of what they find.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/case_mapping.h"

namespace korvel {

// A pattern that finds a stretch of a text, letter case aside. Its pieces between the "*" stand in
// the stretch in this order without overlapping, each where it comes first, so that a*c finds the
// shortest run from the first a on. A "*" at the beginning takes in all that stands before, at
// least one character; a "*" at the end takes in the rest of the text, which may be empty.
class TextPattern {
 public:
  explicit TextPattern(std::wstring_view pattern);

  struct Occurrence {
    std::size_t begin;
    std::size_t end;  // behind begin
  };

  // The first one at or behind `from`. An empty pattern has none.
  [[nodiscard]] std::optional<Occurrence> find(std::wstring_view text, std::size_t from) const;

 private:
  std::vector<CaselessFinder> pieces_;  // empty ones are found anywhere
  bool open_start_;
  bool open_end_;
};

// Puts into `out`, which must not hold the text, the text with every occurrence replaced. What was
// put in is not searched again. False when there is no occurrence; `out` is then of no use.
bool replace_occurrences(const TextPattern& pattern, std::wstring_view text,
                         std::wstring_view replacement, std::wstring& out);

}  // namespace korvel
