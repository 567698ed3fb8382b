// Escapes and shortest numbers.
#include "host/standalone/dump_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <variant>

#include "frame/format.h"

namespace korvel {
namespace {

bool is_bare(wchar_t c) {
  return (c >= L'0' && c <= L'9') || (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') ||
         c == L'_' || c == L'$' || c == L'-' || c == L'*' || c == L'.';
}

}  // namespace

void append_name(std::wstring_view name, std::wstring& out) {
  bool bare = !name.empty();
  for (const wchar_t c : name)
    bare = bare && is_bare(c);
  if (bare) {
    out += name;
  } else {
    append_quoted(name, out);
  }
}

void append_quoted(std::wstring_view text, std::wstring& out) {
  out += L'"';
  for (const wchar_t c : text) {
    switch (c) {
      case L'"':
        out += L"\\\"";
        break;
      case L'\\':
        out += L"\\\\";
        break;
      case L'\n':
        out += L"\\n";
        break;
      case L'\t':
        out += L"\\t";
        break;
      case L'\r':
        out += L"\\r";
        break;
      default:
        out += c;
    }
  }
  out += L'"';
}

void append_number(double number, std::wstring& out) {
  constexpr double least_plain = 1e-6;
  constexpr double most_plain = 1e16;
  const double size = std::abs(number);
  const bool plain = size == 0 || (size >= least_plain && size < most_plain);
  std::array<char, 64> text;
  char* const end = std::to_chars(text.data(), text.data() + text.size(), number,
                                  plain ? std::chars_format::fixed : std::chars_format::scientific)
                        .ptr;
  out.append(text.data(), end);
}

void append_point(Point3 point, std::wstring& out) {
  // Turning a shape out of its own plane leaves zeros of either sign, which mean nothing.
  const auto unsigned_zero = [](double value) { return value == 0 ? 0.0 : value; };
  append_number(unsigned_zero(point.x), out);
  out += L',';
  append_number(unsigned_zero(point.y), out);
  out += L',';
  append_number(unsigned_zero(point.z), out);
}

void append_value(const ODValueView& value, std::wstring& out) {
  struct Append {
    std::wstring& out;
    void operator()(std::monostate) const { out += L"none"; }
    void operator()(std::int32_t number) const { append_integer(number, out); }
    void operator()(double number) const {
      const std::size_t start = out.size();
      append_number(number, out);
      if (out.find_first_not_of(L"-0123456789", start) == std::wstring::npos) out += L".0";
    }
    void operator()(std::wstring_view text) const { append_quoted(text, out); }
    void operator()(Point3 point) const { append_point(point, out); }
  };
  std::visit(Append{out}, value);
}

}  // namespace korvel
