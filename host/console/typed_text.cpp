#include "host/console/typed_text.h"

#include <array>
#include <charconv>
#include <cmath>

#include "frame/case_mapping.h"
#include "geometry/vector.h"

namespace korvel {
namespace {

constexpr std::wstring_view blanks = L" \t";

// The number that the whole text is, in digits of ASCII.
template <class Number, class... Manner>
std::optional<Number> number_of(std::wstring_view text, Manner... manner) {
  constexpr std::size_t longest = 400;
  if (text.empty() || text.size() > longest) return std::nullopt;
  if (text.front() == L'+' && text.substr(0, 2) != L"+-") text.remove_prefix(1);
  std::string digits;
  for (const wchar_t unit : text) {
    if (unit < L' ' || unit > L'~') return std::nullopt;
    digits.push_back(static_cast<char>(unit));
  }
  Number number{};
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number, manner...);
  if (error != std::errc{} || stop != end) return std::nullopt;
  return number;
}

struct QuotedPart {
  std::wstring text;
  std::wstring_view rest;  // behind the closing quote
};

// `text` begins with a quote. None: it is not closed.
std::optional<QuotedPart> take_quoted(std::wstring_view text) {
  QuotedPart part;
  for (std::size_t at = 1; at < text.size(); ++at) {
    if (text[at] != L'"') {
      part.text.push_back(text[at]);
    } else if (at + 1 < text.size() && text[at + 1] == L'"') {
      part.text.push_back(text[at++]);
    } else {
      part.rest = text.substr(at + 1);
      return part;
    }
  }
  return std::nullopt;
}

// "x,y" or "x,y,z".
std::optional<Point3> coordinates_of(std::wstring_view text) {
  std::array<double, 3> coordinates{};
  for (std::size_t count = 0; count < 3; ++count) {
    const std::wstring_view part = text.substr(0, text.find(L','));
    const std::optional<double> number = real_of(part);
    if (!number) return std::nullopt;
    coordinates[count] = *number;
    text.remove_prefix(part.size());
    if (text.empty()) {
      if (count == 0) return std::nullopt;
      return Point3{coordinates[0], coordinates[1], coordinates[2]};
    }
    text.remove_prefix(1);
  }
  return std::nullopt;
}

}  // namespace

std::wstring_view trimmed(std::wstring_view text) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::wstring_view> words_of(std::wstring_view text) {
  std::vector<std::wstring_view> words;
  for (text = trimmed(text); !text.empty(); text = trimmed(text)) {
    const std::wstring_view word = text.substr(0, text.find_first_of(blanks));
    words.push_back(word);
    text.remove_prefix(word.size());
  }
  return words;
}

std::optional<std::wstring> unquoted(std::wstring_view text) {
  if (!text.starts_with(L'"')) return std::nullopt;
  std::optional<QuotedPart> part = take_quoted(text);
  if (!part || !part->rest.empty()) return std::nullopt;
  return std::move(part->text);
}

std::wstring quoted_if_needed(std::wstring_view text) {
  const bool plain = !text.empty() && trimmed(text) == text && text.front() != L'"' &&
                     text.find(L',') == std::wstring_view::npos;
  if (plain) return std::wstring(text);
  std::wstring quoted = L"\"";
  for (const wchar_t unit : text)
    quoted.append(unit == L'"' ? 2 : 1, unit);
  return quoted + L'"';
}

std::optional<std::vector<TypedItem>> items_of(std::wstring_view text) {
  std::vector<TypedItem> items;
  std::wstring_view rest = trimmed(text);
  if (rest.empty()) return items;
  while (true) {
    if (rest.starts_with(L'"')) {
      std::optional<QuotedPart> part = take_quoted(rest);
      if (!part) return std::nullopt;
      rest = trimmed(part->rest);
      if (!rest.empty() && rest.front() != L',') return std::nullopt;
      items.push_back({std::move(part->text), true});
    } else {
      const std::wstring_view item = rest.substr(0, rest.find(L','));
      items.push_back({std::wstring(trimmed(item)), false});
      rest.remove_prefix(item.size());
    }
    if (rest.empty()) return items;
    rest = trimmed(rest.substr(1));
  }
}

NameMatch match_name(std::span<const std::wstring_view> names, std::wstring_view typed) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (names[i] == typed) return {i};
  }
  NameMatch same;
  NameMatch beginning;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (typed.empty() || !begins_with(names[i], typed)) continue;
    NameMatch& match = names[i].size() == typed.size() ? same : beginning;
    match.ambiguous = match.index.has_value();
    if (!match.index) match.index = i;
  }
  return same.index ? same : beginning;
}

bool begins_with(std::wstring_view text, std::wstring_view beginning) {
  return text.size() >= beginning.size() &&
         equal_ignoring_case(text.substr(0, beginning.size()), beginning);
}

std::optional<std::int32_t> integer_of(std::wstring_view text) {
  return number_of<std::int32_t>(text);
}

std::optional<double> real_of(std::wstring_view text) {
  const std::optional<double> number = number_of<double>(text);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

std::optional<Point3> point_of(std::wstring_view text, std::optional<Point3> last) {
  if (!text.starts_with(L'@')) return coordinates_of(text);
  if (text == L"@") return last;
  const std::optional<Point3> offset = coordinates_of(text.substr(1));
  if (!offset || !last) return std::nullopt;
  const Point3 point{last->x + offset->x, last->y + offset->y, last->z + offset->z};
  return is_finite(point) ? std::optional(point) : std::nullopt;
}

std::optional<std::uint64_t> handle_from(std::wstring_view text) {
  const std::optional<std::uint64_t> handle = number_of<std::uint64_t>(text, 16);
  return handle && *handle != 0 ? handle : std::nullopt;
}

}  // namespace korvel
