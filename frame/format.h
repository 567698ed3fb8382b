// Formatting of messages with placeholders that the compiler checks against the arguments.
#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

namespace korvel {

// Integers as numbers, as opposed to truth values and characters.
template <class T>
concept FormatInteger = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> &&
                        !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> &&
                        !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

// Appends the decimal digits of the number, after a minus sign if it is negative.
template <FormatInteger Integer>
void append_integer(Integer number, std::wstring& out) {
  std::array<char, 20> digits{};  // the longest are those of a 64-bit number
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  for (const char* digit = digits.data(); digit != end; ++digit) {
    out.push_back(static_cast<wchar_t>(*digit));
  }
}

namespace format_detail {

enum class Placeholder { None, Integer, Unsigned, Text, Invalid };

struct Segment {
  std::wstring_view literal;  // what stands before the placeholder; ends in '%' for "%%"
  Placeholder placeholder = Placeholder::None;
  std::wstring_view rest;
};

// Cuts the text after its first "%...": "%%" counts as literal text, not as a placeholder.
constexpr Segment next_segment(std::wstring_view text) {
  const std::size_t percent = text.find(L'%');
  if (percent == std::wstring_view::npos) return {text, Placeholder::None, {}};
  const std::wstring_view before = text.substr(0, percent);
  const std::wstring_view after = text.substr(percent + 1);
  if (after.starts_with(L'%')) {
    return {text.substr(0, percent + 1), Placeholder::None, after.substr(1)};
  }
  if (after.starts_with(L'i')) return {before, Placeholder::Integer, after.substr(1)};
  if (after.starts_with(L's')) return {before, Placeholder::Text, after.substr(1)};
  if (after.starts_with(L"lu")) return {before, Placeholder::Unsigned, after.substr(2)};
  return {before, Placeholder::Invalid, after};
}

template <class Arg>
constexpr bool fits(Placeholder placeholder) {
  switch (placeholder) {
    case Placeholder::Integer:
      return FormatInteger<Arg>;
    case Placeholder::Unsigned:
      return FormatInteger<Arg> && std::is_unsigned_v<Arg>;
    case Placeholder::Text:
      return std::convertible_to<const Arg&, std::wstring_view>;
    case Placeholder::None:
    case Placeholder::Invalid:
      break;
  }
  return false;
}

// The next placeholder of `rest`, which moves behind it; None at the end of the text.
constexpr Placeholder take_placeholder(std::wstring_view& rest) {
  while (!rest.empty()) {
    const Segment segment = next_segment(rest);
    rest = segment.rest;
    if (segment.placeholder != Placeholder::None) return segment.placeholder;
  }
  return Placeholder::None;
}

// Appends the text of `rest` up to its next placeholder; `rest` moves behind it.
inline void append_literal(std::wstring_view& rest, std::wstring& out) {
  while (!rest.empty()) {
    const Segment segment = next_segment(rest);
    out.append(segment.literal);
    rest = segment.rest;
    if (segment.placeholder != Placeholder::None) return;
  }
}

template <class Arg>
void append_argument(const Arg& argument, std::wstring& out) {
  if constexpr (FormatInteger<Arg>) {
    append_integer(argument, out);
  } else {
    out.append(std::wstring_view(argument));
  }
}

// Never defined: its name is what the compiler reports for a format that does not fit.
void placeholders_do_not_match_the_arguments();

}  // namespace format_detail

// Whether the placeholders of the text are those of the arguments, one for one and in order: "%i"
// an integer, "%lu" an unsigned integer, "%s" a text; "%%" is a percent sign and takes none.
template <class... Args>
[[nodiscard]] constexpr bool placeholders_match(std::wstring_view text) {
  const bool each_fits =
      (format_detail::fits<Args>(format_detail::take_placeholder(text)) && ... && true);
  return each_fits && format_detail::take_placeholder(text) == format_detail::Placeholder::None;
}

// A text known at compile time whose placeholders match; any other does not compile.
template <class... Args>
class CheckedFormat {
 public:
  template <class Text>
  requires std::convertible_to<const Text&, std::wstring_view>
  consteval CheckedFormat(const Text& text) : text_(text) {
    if (!placeholders_match<Args...>(text_)) {
      format_detail::placeholders_do_not_match_the_arguments();
    }
  }

  [[nodiscard]] constexpr std::wstring_view text() const { return text_; }

 private:
  std::wstring_view text_;
};

// Leaves the deduction of Args to the arguments behind the text.
template <class... Args>
using FormatString = CheckedFormat<std::type_identity_t<Args>...>;

template <class... Args>
[[nodiscard]] std::wstring format_text(FormatString<Args...> text, const Args&... args) {
  std::wstring out;
  std::wstring_view rest = text.text();
  ((format_detail::append_literal(rest, out), format_detail::append_argument(args, out)), ...);
  format_detail::append_literal(rest, out);
  return out;
}

}  // namespace korvel
