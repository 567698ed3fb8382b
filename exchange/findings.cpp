// Words for what was found.
#include "exchange/findings.h"

#include "frame/format.h"

namespace korvel {
namespace {

void append_visible(wchar_t unit, std::wstring& out) {
  switch (unit) {
    case L'\\':
      out += L"\\\\";
      break;
    case L'\n':
      out += L"\\n";
      break;
    case L'\r':
      out += L"\\r";
      break;
    case L'\t':
      out += L"\\t";
      break;
    default:
      if (static_cast<char32_t>(unit) < U' ') {
        constexpr std::wstring_view digits = L"0123456789ABCDEF";
        out += {L'\\', L'x', digits[static_cast<std::size_t>(unit) / 16],
                digits[static_cast<std::size_t>(unit) % 16]};
      } else {
        out += unit;
      }
  }
}

}  // namespace

std::wstring Findings::list() const {
  std::wstring out;
  for (const std::wstring& example : examples_)
    out += (out.empty() ? L"" : L", ") + example;
  if (count_ > examples_.size()) out += L", ...";
  return out;
}

std::wstring excerpt(std::wstring_view text) {
  constexpr std::size_t most = 40;
  std::wstring out;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (out.size() >= most) {
      const auto last = static_cast<char32_t>(out.back());
      if (last >= 0xD800 && last <= 0xDBFF) out.pop_back();
      return out + L"...";
    }
    append_visible(text[at], out);
  }
  return out;
}

}  // namespace korvel
