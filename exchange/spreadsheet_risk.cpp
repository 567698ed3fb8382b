// Telling texts that look like numbers, dates and formulas.
#include "exchange/spreadsheet_risk.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "frame/trim.h"

namespace korvel {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t most_digits = 15;
constexpr std::size_t most_characters = 32'767;

constexpr bool is_digit(wchar_t c) { return c >= L'0' && c <= L'9'; }

constexpr wchar_t lower(wchar_t c) {
  return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

constexpr bool is_letter(wchar_t c) { return lower(c) >= L'a' && lower(c) <= L'z'; }

// Tells most words without looking through the names of months.
bool begins_like_month(std::wstring_view text) {
  if (text.size() < 3 || !is_letter(text[0]) || !is_letter(text[1]) || !is_letter(text[2])) {
    return false;
  }
  constexpr auto key = [](wchar_t a, wchar_t b, wchar_t c) {
    return static_cast<std::uint32_t>(lower(a)) << 16 | static_cast<std::uint32_t>(lower(b)) << 8 |
           static_cast<std::uint32_t>(lower(c));
  };
  switch (key(text[0], text[1], text[2])) {
    case key(L'j', L'a', L'n'):
    case key(L'f', L'e', L'b'):
    case key(L'm', L'a', L'r'):
    case key(L'a', L'p', L'r'):
    case key(L'm', L'a', L'y'):
    case key(L'j', L'u', L'n'):
    case key(L'j', L'u', L'l'):
    case key(L'a', L'u', L'g'):
    case key(L's', L'e', L'p'):
    case key(L'o', L'c', L't'):
    case key(L'n', L'o', L'v'):
    case key(L'd', L'e', L'c'):
      return true;
    default:
      return false;
  }
}

std::size_t digits_at(std::wstring_view text, std::size_t at) {
  std::size_t end = at;
  while (end < text.size() && is_digit(text[end]))
    ++end;
  return end - at;
}

// Takes what it asks for off the front of a text.
class Scan {
 public:
  explicit Scan(std::wstring_view text) : rest_(text) {}

  [[nodiscard]] bool done() const { return rest_.empty(); }
  [[nodiscard]] wchar_t next() const { return rest_.empty() ? L'\0' : rest_.front(); }
  std::wstring_view digits() { return take(digits_at(rest_, 0)); }
  bool one_of(std::wstring_view any) {
    if (rest_.empty() || std::ranges::find(any, rest_.front()) == any.end()) return false;
    rest_.remove_prefix(1);
    return true;
  }
  // Three letters or more that begin the English name of a month.
  bool month() {
    if (!begins_like_month(rest_)) return false;
    constexpr std::array<std::wstring_view, 13> names = {
        L"january", L"february",  L"march",   L"april",    L"may",      L"june", L"july",
        L"august",  L"september", L"october", L"november", L"december", L"sept"};
    const auto letters =
        static_cast<std::size_t>(std::ranges::find_if_not(rest_, is_letter) - rest_.begin());
    const bool known = std::ranges::any_of(names, [&](std::wstring_view name) {
      return letters <= name.size() &&
             std::equal(name.begin(), name.begin() + static_cast<std::ptrdiff_t>(letters),
                        rest_.begin(), [](wchar_t a, wchar_t b) { return a == lower(b); });
    });
    if (known) take(letters);
    return known;
  }

 private:
  std::wstring_view take(std::size_t count) {
    const std::wstring_view taken = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return taken;
  }
  std::wstring_view rest_;
};

// 5 May, 5-MAY-2024, May 5, MARCH1: a month's name and a number on one of its sides or both.
bool is_date_in_words(std::wstring_view text) {
  constexpr std::wstring_view between = L" -/.,";
  Scan scan(text);
  const bool day_first = !scan.digits().empty();
  while (scan.one_of(between)) {
  }
  if (!scan.month()) return false;
  while (scan.one_of(between)) {
  }
  const bool number_behind = !scan.digits().empty();
  return scan.done() && (day_first || number_behind);
}

// 1/2, 1-2-2024, 2024-01-02, 1.2.2024, 12:30, and a date with a time behind it.
bool is_date_in_digits(std::wstring_view text) {
  Scan scan(text);
  if (scan.digits().size() > 4) return false;
  const wchar_t separator = scan.next();
  std::size_t groups = 1;
  while (groups < 3 && scan.next() == separator && scan.one_of(L"/-.:"sv)) {
    const std::size_t size = scan.digits().size();
    if (size == 0 || size > 4) return false;
    ++groups;
  }
  const std::size_t least = separator == L'.' ? 3 : 2;  // 1.5 is a number
  return groups >= least && (scan.done() || scan.next() == L' ');
}

// A number with its thousands parted: 1,234,567.
bool is_grouped_number(std::wstring_view text) {
  Scan scan(text);
  const std::size_t first = scan.digits().size();
  if (first == 0 || first > 3 || scan.next() != L',') return false;
  while (scan.one_of(L","sv)) {
    if (scan.digits().size() != 3) return false;
  }
  if (scan.one_of(L"."sv)) scan.digits();
  return scan.done();
}

SpreadsheetRisk risk_of_number_in(std::wstring_view number, bool has_blanks) {
  Scan scan(number);
  scan.one_of(L"-"sv);
  const std::wstring_view whole = scan.digits();
  const bool has_stop = scan.one_of(L"."sv);
  const std::wstring_view fraction = scan.digits();
  if (whole.empty() && fraction.empty()) return SpreadsheetRisk::None;
  const bool has_exponent = scan.one_of(L"eE"sv);
  if (has_exponent) {
    scan.one_of(L"+-"sv);
    if (scan.digits().empty()) return SpreadsheetRisk::None;
  }
  if (!scan.done()) return SpreadsheetRisk::None;
  if (whole.size() + fraction.size() > most_digits) return SpreadsheetRisk::LongNumber;
  const bool leading_zero = whole.size() > 1 && whole.front() == L'0';
  const bool trailing_zero = has_stop && (fraction.empty() || fraction.back() == L'0');
  return has_blanks || has_exponent || whole.empty() || leading_zero || trailing_zero
             ? SpreadsheetRisk::Number
             : SpreadsheetRisk::None;
}

}  // namespace

SpreadsheetRisk risk_of_text(std::wstring_view text) {
  if (text.size() > most_characters) return SpreadsheetRisk::LongText;
  if (text.empty()) return SpreadsheetRisk::None;
  const std::wstring_view inner =
      text.front() == L' ' || text.back() == L' ' ? without_ends(text, L" ") : text;
  if (inner.empty()) return SpreadsheetRisk::None;
  const wchar_t first = inner.front();
  if (first == L'=' || first == L'@' || first == L'+') return SpreadsheetRisk::Formula;
  const bool like_month = begins_like_month(inner);
  if (!like_month && !is_digit(first) && first != L'-' && first != L'.') {
    return SpreadsheetRisk::None;
  }
  if ((like_month || is_digit(first)) && is_date_in_words(inner)) return SpreadsheetRisk::Date;
  if (like_month) return SpreadsheetRisk::None;
  if (is_digit(first) && is_date_in_digits(inner)) return SpreadsheetRisk::Date;
  if (is_grouped_number(inner)) return SpreadsheetRisk::Number;
  const SpreadsheetRisk risk = risk_of_number_in(inner, inner.size() != text.size());
  if (risk != SpreadsheetRisk::None || first != L'-') return risk;
  const bool is_number = inner.find_first_not_of(L"0123456789.", 1) == std::wstring_view::npos;
  return is_number ? SpreadsheetRisk::None : SpreadsheetRisk::Formula;
}

SpreadsheetRisk risk_of_number(std::string_view digits) {
  if (digits.size() <= most_digits) return SpreadsheetRisk::None;
  std::size_t count = 0;
  bool counting = false;
  for (const char c : digits) {
    if (c == 'e') break;
    counting = counting || (c >= '1' && c <= '9');
    if (counting && c != '.') ++count;
  }
  return count > most_digits ? SpreadsheetRisk::LongNumber : SpreadsheetRisk::None;
}

}  // namespace korvel
