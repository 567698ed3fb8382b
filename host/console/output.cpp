#include "host/console/output.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>

#include "frame/utf.h"

namespace korvel {
namespace {

bool is_obeyed(wchar_t unit) {
  const auto code = static_cast<std::uint32_t>(unit);
  if (code < 0x20) return code != '\t' && code != '\n';
  if (code < 0x061C) return code >= 0x7F && code < 0xA0;
  return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069);
}

void append_escape(wchar_t unit, std::wstring& out) {
  constexpr std::wstring_view digits = L"0123456789ABCDEF";
  const auto code = static_cast<std::uint32_t>(unit);
  const bool is_short = code < 0x80;
  out += is_short ? L"\\x" : L"\\u";
  for (int shift = is_short ? 4 : 12; shift >= 0; shift -= 4)
    out += digits[code >> static_cast<unsigned>(shift) & 0xFU];
}

}  // namespace

std::wstring visible(std::wstring_view text) {
  std::wstring shown;
  shown.reserve(text.size());
  for (const wchar_t unit : text) {
    if (is_obeyed(unit)) {
      append_escape(unit, shown);
    } else {
      shown += unit;
    }
  }
  return shown;
}

void write_output(std::wstring_view text) {
  const std::string bytes =
      std::ranges::any_of(text, is_obeyed) ? to_utf8(visible(text)) : to_utf8(text);
  (void)std::fwrite(bytes.data(), 1, bytes.size(), stdout);  // judged when the program ends
}

void flush_output() { (void)std::fflush(stdout); }

void complain(std::string_view sentence) {
  flush_output();
  const std::string line = "korvel: " + to_utf8(visible(from_utf8(sentence))) + "\n";
  (void)std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace korvel
