#include "values/text_replacement.h"

namespace korvel {

TextPattern::TextPattern(std::wstring_view pattern)
    : open_start_(pattern.starts_with(L'*')), open_end_(pattern.ends_with(L'*')) {
  if (pattern.empty()) return;
  std::size_t star = 0;
  for (std::size_t begin = 0; star != std::wstring_view::npos; begin = star + 1) {
    star = pattern.find(L'*', begin);
    pieces_.emplace_back(pattern.substr(begin, star - begin));
  }
}

std::optional<TextPattern::Occurrence> TextPattern::find(std::wstring_view text,
                                                         std::size_t from) const {
  if (pieces_.empty()) return std::nullopt;
  Occurrence found{from, open_start_ ? from + 1 : from};
  for (const CaselessFinder& piece : pieces_) {
    const std::size_t at = piece.find(text, found.end);
    if (at == std::wstring_view::npos) return std::nullopt;
    if (&piece == &pieces_.front() && !open_start_) found.begin = at;
    found.end = at + piece.lowered().size();
  }
  if (open_end_) found.end = text.size();
  return found;
}

bool replace_occurrences(const TextPattern& pattern, std::wstring_view text,
                         std::wstring_view replacement, std::wstring& out) {
  std::optional<TextPattern::Occurrence> found = pattern.find(text, 0);
  if (!found) return false;
  out.clear();
  std::size_t copied = 0;
  for (; found; found = pattern.find(text, copied)) {
    out.append(text, copied, found->begin - copied).append(replacement);
    copied = found->end;
  }
  out.append(text, copied);
  return true;
}

}  // namespace korvel
