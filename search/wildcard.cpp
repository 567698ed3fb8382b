#include "search/wildcard.h"

#include <algorithm>
#include <cstddef>

namespace korvel {
namespace {

bool begins_with(std::wstring_view text, std::wstring_view piece) {
  return text.size() >= piece.size() && equal_ignoring_case(text.substr(0, piece.size()), piece);
}

bool ends_with(std::wstring_view text, std::wstring_view piece) {
  return text.size() >= piece.size() &&
         equal_ignoring_case(text.substr(text.size() - piece.size()), piece);
}

}  // namespace

Wildcard::Wildcard(std::wstring_view pattern)
    : open_start_(pattern.starts_with(L'*')), open_end_(pattern.ends_with(L'*')) {
  while (!pattern.empty()) {
    const std::wstring_view piece = pattern.substr(0, pattern.find(L'*'));
    if (!piece.empty()) pieces_.emplace_back(piece);
    pattern.remove_prefix(std::min(piece.size() + 1, pattern.size()));
  }
}

bool Wildcard::matches(std::wstring_view text) const {
  if (pieces_.empty()) return true;
  if (!open_start_ && !begins_with(text, pieces_.front().lowered())) return false;
  if (!open_end_ && !ends_with(text, pieces_.back().lowered())) return false;
  std::size_t end = 0;
  bool passed_over = false;  // the last piece looked for stood at the beginning as well
  for (const CaselessFinder& piece : pieces_) {
    const std::size_t length = piece.lowered().size();
    std::size_t at = piece.find(text, end);
    passed_over = open_start_ && at == 0;
    if (passed_over) at = piece.find(text, length);
    if (at == std::wstring_view::npos) return false;
    end = at + length;
  }
  return !open_end_ || passed_over || end < text.size();
}

}  // namespace korvel
