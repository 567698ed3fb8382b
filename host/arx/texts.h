// Texts of the host's objects.
#pragma once

#include <string>

#include "host/arx/sdk.h"

namespace korvel::arx {

// The object's own; null is taken for an empty one.
[[nodiscard]] inline std::wstring text_of(const ACHAR* text) {
  return text == nullptr ? std::wstring() : std::wstring(text);
}

// Unconfirmed: that texts handed out are the caller's.
inline void give_back(ACHAR*& text) { acutDelString(text); }

// One that was handed out.
[[nodiscard]] inline std::wstring taken_text(ACHAR* handed_out) {
  std::wstring text = text_of(handed_out);
  if (handed_out != nullptr) give_back(handed_out);
  return text;
}

}  // namespace korvel::arx
