// Recognising texts that look like numbers, dates and formulas.
#include "exchange/spreadsheet_risk.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>

#include "frame/trim.h"

namespace korvel {
namespace {

constexpr std::size_t most_digits = 15;
constexpr std::size_t most_characters = 32'767;

constexpr bool is_digit(wchar_t c) { return c >= L'0' && c <= L'9'; }

constexpr wchar_t lower(wchar_t c) {
  return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

constexpr bool is_letter(wchar_t c) { return lower(c) >= L'a' && lower(c) <= L'z'; }

// Rules out most words without looking through the names of months.
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

// Takes what it asks for off the front of a text.
class Scan {
 public:
  explicit Scan(std::wstring_view text) : rest_(text) {}

  [[nodiscard]] bool done() const { return rest_.empty(); }
  [[nodiscard]] wchar_t next() const { return rest_.empty() ? L'\0' : rest_.front(); }
  std::wstring_view digits() {
    return take(
        static_cast<std::size_t>(std::ranges::find_if_not(rest_, is_digit) - rest_.begin()));
  }
  bool one(wchar_t wanted) { return one_of({&wanted, 1}); }
  bool one_of(std::wstring_view any) {
    if (rest_.empty() || any.find(rest_.front()) == std::wstring_view::npos) return false;
    rest_.remove_prefix(1);
    return true;
  }
  bool any_of(std::wstring_view any) {
    const std::size_t before = rest_.size();
    while (one_of(any)) {
    }
    return rest_.size() < before;
  }
  // In whatever letter case; `word` in small letters.
  bool word(std::wstring_view word) {
    const bool is_here = std::ranges::equal(rest_.substr(0, word.size()), word, {}, lower);
    if (is_here) take(word.size());
    return is_here;
  }
  // Three letters or more that begin the English name of a month.
  bool month() {
    if (!begins_like_month(rest_)) return false;
    constexpr std::array<std::wstring_view, 12> names = {
        L"january", L"february", L"march",     L"april",   L"may",      L"june",
        L"july",    L"august",   L"september", L"october", L"november", L"december"};
    const auto letters =
        static_cast<std::size_t>(std::ranges::find_if_not(rest_, is_letter) - rest_.begin());
    const bool known = std::ranges::any_of(names, [&](std::wstring_view name) {
      return std::ranges::equal(name.substr(0, letters), rest_.substr(0, letters), {}, {}, lower);
    });
    if (known) take(letters);
    return known;
  }

 private:
  std::wstring_view take(std::size_t count) {
    const std::wstring_view taken = rest_.substr(0, count);
    rest_.remove_prefix(taken.size());
    return taken;
  }
  std::wstring_view rest_;
};

// --- Dates and times ---

// 12:30, 12:, 12:30:45.5 PM, 5 pm.
bool take_time(Scan& scan) {
  const std::size_t hours = scan.digits().size();
  if (hours == 0 || hours > 4) return false;
  const bool has_colon = scan.one(L':');
  if (has_colon && scan.digits().size() <= 2 && scan.one(L':')) {
    scan.digits();
    if (scan.one_of(L".,")) scan.digits();
  }
  if (scan.done()) return has_colon;
  const bool is_parted = scan.any_of(L" ");
  if (!is_parted && !has_colon) return false;
  return scan.word(L"am") || scan.word(L"pm") || scan.word(L"a") || scan.word(L"p");
}

// 1/2, 1-2-2024, 2024-01-02, 1.2.2024. A number with one full stop is none where that is the
// decimal sign.
bool take_date_in_digits(Scan& scan, char decimal_sign) {
  const std::size_t first = scan.digits().size();
  if (first == 0 || first > 4) return false;
  const wchar_t separator = scan.next();
  std::size_t groups = 1;
  while (groups < 3 && scan.next() == separator && scan.one_of(L"/-.")) {
    const std::size_t size = scan.digits().size();
    if (size == 0 && groups == 2 && separator == L'.') break;  // 1.2. is a day
    if (size == 0 || size > 4) return false;
    ++groups;
  }
  return groups >= (separator == L'.' && decimal_sign == '.' ? 3U : 2U);
}

// 5 May, 5-MAY-2024, May 5, 2024, MARCH1: a month's name and a number on one of its sides or both.
bool take_date_in_words(Scan& scan) {
  constexpr std::wstring_view between = L" -/.,";
  const bool number_before = !scan.digits().empty();
  scan.any_of(between);
  if (!scan.month()) return false;
  Scan behind = scan;
  behind.any_of(between);
  const bool number_behind = !behind.digits().empty();
  if (!number_behind) return number_before;
  scan = behind;
  behind.any_of(between);
  const bool is_time = behind.digits().empty() || behind.next() == L':';
  if (!is_time) scan = behind;
  return true;
}

// A date, a time, or a date with a time behind it.
bool is_date(std::wstring_view text, char decimal_sign) {
  Scan time(text);
  if (take_time(time) && time.done()) return true;
  Scan digits(text);
  Scan words(text);
  const bool in_digits = take_date_in_digits(digits, decimal_sign);
  if (!in_digits && !take_date_in_words(words)) return false;
  Scan& behind = in_digits ? digits : words;
  if (behind.done()) return true;
  return (behind.any_of(L" ") || behind.one_of(L"Tt")) && take_time(behind) && behind.done();
}

// --- Numbers ---

struct NumberForm {
  bool is_number = false;
  std::size_t digits = 0;
  bool is_plain = false;  // a spreadsheet program writes the number just so
};

// -12.5 is plain. 007, 1E5, 3.10, .5, 5., 1,234,567, (5), 5-, $5, 5%, 1 1/2 and -0 are other forms.
NumberForm number_form(std::wstring_view text, char decimal_sign) {
  constexpr std::wstring_view currencies = L"$\u20AC\u00A3\u00A5";
  const wchar_t grouping = decimal_sign == '.' ? L',' : L'.';
  Scan scan(text);
  const bool in_brackets = scan.one(L'(');
  bool is_dressed = in_brackets;
  const bool is_negative = scan.one(L'-');
  if (scan.one_of(currencies)) {
    is_dressed = true;
    scan.any_of(L" ");
    scan.one(L'-');
  }
  const std::wstring_view whole = scan.digits();
  std::size_t digits = whole.size();
  while (!whole.empty() && whole.size() <= 3 && scan.one(grouping)) {
    is_dressed = true;
    if (scan.digits().size() != 3) return {};
    digits += 3;
  }
  const bool has_sign = scan.one(static_cast<wchar_t>(decimal_sign));
  const std::wstring_view fraction = has_sign ? scan.digits() : std::wstring_view();
  digits += fraction.size();
  if (digits == 0) return {};
  if (scan.one_of(L"eE")) {
    is_dressed = true;
    scan.one_of(L"+-");
    if (scan.digits().empty()) return {};
  }
  if (!scan.done()) {
    is_dressed = true;
    scan.any_of(L" ");
    if (!scan.digits().empty() && (!scan.one(L'/') || scan.digits().empty())) return {};
    scan.one_of(L"%-");
    scan.one_of(currencies);
    if (scan.one(L')') != in_brackets || !scan.done()) return {};
  } else if (in_brackets) {
    return {};
  }
  const bool is_zero = fraction.empty() && whole == L"0";
  const bool has_usual_ends = !whole.empty() && (whole.size() == 1 || whole.front() != L'0') &&
                              (!has_sign || (!fraction.empty() && fraction.back() != L'0'));
  return {true, digits, !is_dressed && has_usual_ends && !(is_negative && is_zero)};
}

bool may_be_number_or_date(wchar_t first) {
  return is_digit(first) ||
         std::wstring_view(L"-.,($\u20AC\u00A3\u00A5").find(first) != std::wstring_view::npos;
}

bool is_logical(std::wstring_view text) {
  Scan scan(text);
  return (scan.word(L"true") || scan.word(L"false")) && scan.done();
}

}  // namespace

SpreadsheetRisk risk_of_text(std::wstring_view text, char decimal_sign) {
  using enum SpreadsheetRisk;
  if (text.size() > most_characters) return LongText;
  if (text.empty()) return None;
  if (text.find(L'\r') != std::wstring_view::npos) return LineBreak;
  const std::wstring_view inner =
      text.front() == L' ' || text.back() == L' ' ? without_ends(text, L" ") : text;
  if (inner.empty()) return None;
  const wchar_t first = inner.front();
  if (first == L'=' || first == L'@' || first == L'+') return Formula;
  if (is_letter(first)) {
    if (is_logical(inner)) return Logical;
    return begins_like_month(inner) && is_date(inner, decimal_sign) ? Date : None;
  }
  if (!may_be_number_or_date(first)) return None;
  const NumberForm number = number_form(inner, decimal_sign);
  if (number.is_number) {
    if (number.digits > most_digits) return LongNumber;
    return number.is_plain && inner.size() == text.size() ? None : Number;
  }
  if (is_digit(first) && is_date(inner, decimal_sign)) return Date;
  return first == L'-' && inner.size() > 1 ? Formula : None;
}

SpreadsheetRisk risk_of_real(double real, std::string_view digits) {
  if (real != 0 && std::abs(real) < std::numeric_limits<double>::min()) {
    return SpreadsheetRisk::SmallNumber;
  }
  if (digits.size() <= most_digits) return SpreadsheetRisk::None;
  std::size_t count = 0;
  bool counting = false;
  for (const char c : digits) {
    if (c == 'e') break;
    counting = counting || (c >= '1' && c <= '9');
    if (counting && c >= '0' && c <= '9') ++count;
  }
  return count > most_digits ? SpreadsheetRisk::LongNumber : SpreadsheetRisk::None;
}

}  // namespace korvel
