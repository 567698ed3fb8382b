// Texts kept for the module while the program runs, instead of in the registry.
#include "host/windows/settings.h"

#include <map>

namespace korvel::windows {
namespace {

std::map<std::wstring, std::wstring> texts;

std::wstring full_name(std::wstring_view key, std::wstring_view name) {
  return std::wstring(key) + L'|' + std::wstring(name);
}

}  // namespace

std::optional<std::wstring> kept_text(std::wstring_view key, std::wstring_view name) {
  const auto found = texts.find(full_name(key, name));
  if (found == texts.end()) return std::nullopt;
  return found->second;
}

void keep_text(std::wstring_view key, std::wstring_view name, std::wstring_view text) {
  texts[full_name(key, name)] = text;
}

}  // namespace korvel::windows
