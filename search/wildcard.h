// Wildcard patterns of the value search: text in which "*" stands for other text.
#pragma once

#include <string_view>
#include <vector>

#include "frame/case_mapping.h"

namespace korvel {

// Letter case does not count. The pieces between the "*" stand in the text in this order and do not
// overlap; each is taken where it comes first. A run of "*" counts as one, and a pattern of nothing
// else matches every text.
//
// Between two pieces "*" may stand for nothing. Deliberately it does not at the ends: ab* matches
// abc but not ab. A "*" at the beginning stands for at least one character before the first piece
// or, if the text begins with that piece, for everything up to its next occurrence, behind which
// nothing more is asked of a "*" at the end: *ab matches xab and abab, *ab* matches xabx and abab,
// and neither matches ab or abx.
class Wildcard {
 public:
  explicit Wildcard(std::wstring_view pattern);

  [[nodiscard]] bool matches(std::wstring_view text) const;

 private:
  std::vector<CaselessFinder> pieces_;  // none of them empty
  bool open_start_;
  bool open_end_;
};

}  // namespace korvel
