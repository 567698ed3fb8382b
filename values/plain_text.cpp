// What a person reads of the texts in a drawing: their codes carried out or taken out.
#include "values/plain_text.h"

#include <algorithm>
#include <cstddef>

namespace korvel {
namespace {

constexpr std::wstring_view breaks = L"PNX~";  // paragraph, column, dimension line, blank
constexpr std::wstring_view literals = L"\\{}";
constexpr std::wstring_view lines = L"LlOoKk";              // above, below and through the text
constexpr std::wstring_view with_argument = L"ACcFfHQTWp";  // up to a semicolon

bool is_one_of(wchar_t c, std::wstring_view set) { return set.find(c) != std::wstring_view::npos; }
bool is_digit(wchar_t c) { return c >= L'0' && c <= L'9'; }

// Reads a text from its start to its end and writes what is left of it.
class Reader {
 public:
  explicit Reader(std::wstring_view text) : rest_(text) { out_.reserve(text.size()); }

  std::wstring single_line() {
    while (!rest_.empty()) {
      if (!percent_code()) keep();
    }
    return std::move(out_);
  }

  std::wstring multiline() {
    while (!rest_.empty()) {
      if (rest_.front() == L'{' || rest_.front() == L'}') {
        drop(1);
      } else if (rest_.front() == L'\n') {
        replace(1, L' ');
      } else if (!percent_code() && !backslash_code()) {
        keep();
      }
    }
    return std::move(out_);
  }

 private:
  void drop(std::size_t count) { rest_.remove_prefix(std::min(count, rest_.size())); }
  void replace(std::size_t count, wchar_t by) {
    drop(count);
    out_.push_back(by);
  }
  void keep() { replace(1, rest_.front()); }

  bool percent_code() {
    if (!rest_.starts_with(L"%%") || rest_.size() < 3) return false;
    switch (rest_[2]) {
      case L'd':
      case L'D':
        replace(3, L'\u00B0');
        return true;
      case L'p':
      case L'P':
        replace(3, L'\u00B1');
        return true;
      case L'c':
      case L'C':
        replace(3, L'\u2300');
        return true;
      case L'%':
        replace(3, L'%');
        return true;
      case L'u':
      case L'U':
      case L'o':
      case L'O':
      case L'k':
      case L'K':
        drop(3);
        return true;
      default:
        return numbered_character();
    }
  }

  bool numbered_character() {
    constexpr std::size_t size = 5;
    if (rest_.size() < size || !std::ranges::all_of(rest_.substr(2, 3), is_digit)) return false;
    const int number = (rest_[2] - L'0') * 100 + (rest_[3] - L'0') * 10 + (rest_[4] - L'0');
    if (number < L' ' || number > 255) return false;
    replace(size, static_cast<wchar_t>(number));
    return true;
  }

  bool backslash_code() {
    if (rest_.size() < 2 || rest_.front() != L'\\') return false;
    const wchar_t code = rest_[1];
    if (is_one_of(code, breaks)) {
      replace(2, L' ');
    } else if (is_one_of(code, literals)) {
      replace(2, code);
    } else if (is_one_of(code, lines)) {
      drop(2);
    } else if (code == L'S') {
      return stack();
    } else {
      return format(code);
    }
    return true;
  }

  bool format(wchar_t code) {
    const std::size_t end = rest_.find(L';');
    if (!is_one_of(code, with_argument) || end == std::wstring_view::npos) return false;
    drop(end + 1);
    return true;
  }

  // Two parts, told apart by the first of ^ # / and ended by a semicolon; a backslash takes the
  // meaning of what follows it. A part that is empty, as in raised text, takes no stroke with it.
  bool stack() {
    std::wstring upper;
    std::wstring lower;
    std::wstring* part = &upper;
    for (std::size_t at = 2; at < rest_.size(); ++at) {
      const wchar_t c = rest_[at];
      if (c == L';') {
        drop(at + 1);
        out_ += upper;
        if (!upper.empty() && !lower.empty()) out_.push_back(L'/');
        out_ += lower;
        return true;
      }
      if (c == L'\\' && at + 1 < rest_.size()) {
        part->push_back(rest_[++at]);
      } else if (part == &upper && is_one_of(c, L"^#/")) {
        part = &lower;
      } else {
        part->push_back(c);
      }
    }
    return false;
  }

  std::wstring_view rest_;
  std::wstring out_;
};

}  // namespace

std::wstring plain_text(std::wstring_view text) { return Reader(text).single_line(); }

std::wstring plain_multiline_text(std::wstring_view text) { return Reader(text).multiline(); }

}  // namespace korvel
