// Words for what was found.
#include "exchange/findings.h"

namespace korvel {

std::wstring Findings::list() const {
  std::wstring out;
  for (const std::wstring& example : examples_)
    out += (out.empty() ? L"" : L", ") + example;
  if (count_ > examples_.size()) out += L", ...";
  return out;
}

std::wstring excerpt(std::wstring_view text) {
  constexpr std::size_t most = 40;
  std::wstring out(text.substr(0, most));
  for (wchar_t& c : out) {
    if (static_cast<char32_t>(c) < U' ') c = L' ';
  }
  if (text.size() <= most) return out;
  const auto last = static_cast<char32_t>(out.back());
  if (last >= 0xD800 && last <= 0xDBFF) out.pop_back();
  return out + L"...";
}

}  // namespace korvel
