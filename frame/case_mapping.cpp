// The lower-case mapping: a direct table for the alphabets of every day, ranges for the rest.
#include "frame/case_mapping.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "frame/utf.h"

namespace korvel {
namespace {

// Every stride-th code point from first to last lies delta below its lower-case partner.
struct LowerRange {
  char32_t first;
  char32_t last;
  std::uint32_t stride;
  std::int32_t delta;
};

constexpr auto lower_ranges = std::to_array<LowerRange>({
#include "frame/case_mapping_table.inc"
});

constexpr bool ranges_ascend() {
  for (std::size_t i = 0; i < lower_ranges.size(); ++i) {
    if (lower_ranges[i].last < lower_ranges[i].first) return false;
    if (i > 0 && lower_ranges[i].first <= lower_ranges[i - 1].last) return false;
  }
  return true;
}
static_assert(ranges_ascend(), "the binary search needs ranges in order that do not overlap");

constexpr bool contains(const LowerRange& range, char32_t code_point) {
  return code_point >= range.first && code_point <= range.last &&
         (code_point - range.first) % range.stride == 0;
}

constexpr char32_t search_lower(char32_t code_point) {
  // NOLINTNEXTLINE(readability-qualified-auto): a pointer for some compilers only
  const auto range = std::ranges::lower_bound(lower_ranges, code_point, {}, &LowerRange::last);
  if (range == lower_ranges.end() || !contains(*range, code_point)) return code_point;
  return code_point + static_cast<char32_t>(range->delta);
}

// Latin, Greek, Cyrillic and Armenian letters, looked up at once.
constexpr std::size_t direct_size = 0x600;

constexpr std::array<char16_t, direct_size> direct_lower = [] {
  std::array<char16_t, direct_size> table{};
  for (char32_t code = 0; code < direct_size; ++code) {
    table[code] = static_cast<char16_t>(search_lower(code));
  }
  return table;
}();

constexpr char32_t lower_code_point(char32_t code_point) {
  return code_point < direct_size ? direct_lower[code_point] : search_lower(code_point);
}

// The lower-cased code point at `at`; a lone surrogate is left as it stands.
CodePoint lowered_at(std::wstring_view text, std::size_t at) {
  const auto unit = static_cast<char32_t>(text[at]);
  if (unit < direct_size) return {direct_lower[unit], 1};
  const CodePoint read = code_point_at(text, at);
  return {lower_code_point(read.units == 1 ? unit : read.value), read.units};
}

}  // namespace

std::wstring lower(std::wstring_view text) {
  std::wstring out;
  lower_into(text, out);
  return out;
}

void lower_into(std::wstring_view text, std::wstring& out) {
  out.clear();
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const CodePoint lowered = lowered_at(text, at);
    append_code_point(lowered.value, out);
    at += lowered.units;
  }
}

bool equal_ignoring_case(std::wstring_view a, std::wstring_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t at = 0; at < a.size();) {
    const CodePoint left = lowered_at(a, at);
    const CodePoint right = lowered_at(b, at);
    if (left.value != right.value) return false;
    at += left.units;
  }
  return true;
}

CaselessFinder::CaselessFinder(std::wstring_view wanted) : lowered_(lower(wanted)) {
  if (lowered_.empty()) return;
  first_units_ = cases_of(lowered_at(lowered_, 0).value);
  const auto last = static_cast<char32_t>(lowered_.back());
  last_is_whole_ = last < 0xD800 || last > 0xDFFF;
  if (last_is_whole_) last_units_ = cases_of(last);
}

CaselessFinder::Units CaselessFinder::cases_of(char32_t lowered) {
  std::wstring text;
  append_code_point(lowered, text);
  Units units;
  units.fill(text.front());
  std::size_t place = 1;
  for (const LowerRange& range : lower_ranges) {
    const char32_t other = lowered - static_cast<char32_t>(range.delta);
    if (!contains(range, other)) continue;
    text.clear();
    append_code_point(other, text);
    units.at(place++) = text.front();
  }
  return units;
}

bool CaselessFinder::stands_at(const wchar_t* place) const {
  return equal_ignoring_case({place, lowered_.size()}, lowered_);
}

// Whether the text may stand at one of the places: a loop without branches, which the machine's
// wide instructions go through several places at a time.
bool CaselessFinder::may_stand_in(const wchar_t* places, std::size_t count) const {
  const auto [a, b, c] = first_units_;
  const auto [x, y, z] = last_units_;
  const wchar_t* const ends = places + lowered_.size() - 1;
  std::uint32_t any = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const auto begins = static_cast<std::uint32_t>(places[i] == a) |
                        static_cast<std::uint32_t>(places[i] == b) |
                        static_cast<std::uint32_t>(places[i] == c);
    const auto closes = static_cast<std::uint32_t>(ends[i] == x) |
                        static_cast<std::uint32_t>(ends[i] == y) |
                        static_cast<std::uint32_t>(ends[i] == z);
    any |= begins & closes;
  }
  return any != 0;
}

std::size_t CaselessFinder::find(std::wstring_view text, std::size_t from) const {
  if (lowered_.size() > text.size()) return std::wstring_view::npos;
  const std::size_t end = text.size() - lowered_.size() + 1;
  if (lowered_.empty()) return from < end ? from : std::wstring_view::npos;
  constexpr std::size_t stretch = 64;
  for (std::size_t at = from; at < end; at += stretch) {
    const std::size_t count = std::min(stretch, end - at);
    if (last_is_whole_ && !may_stand_in(&text[at], count)) continue;
    for (std::size_t i = at; i < at + count; ++i) {
      if (stands_at(&text[i])) return i;
    }
  }
  return std::wstring_view::npos;
}

}  // namespace korvel
