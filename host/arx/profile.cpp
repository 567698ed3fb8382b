#include "host/arx/profile.h"

#include "host/arx/sdk.h"
#include "host/windows/settings.h"

namespace korvel::arx {
namespace {

// Unconfirmed: the name of the call. The key of the host's own settings, below HKEY_CURRENT_USER.
std::wstring product_key() {
  const ACHAR* const key = acdbHostApplicationServices()->getUserRegistryProductRootKey();
  return key == nullptr ? std::wstring() : std::wstring(key);
}

// None when the host does not say where it keeps its own.
std::optional<std::wstring> module_key() {
  std::wstring key = product_key();
  if (key.empty()) return std::nullopt;
  return key + L"\\Applications\\korvel";
}

}  // namespace

std::optional<std::wstring> profile(std::wstring_view name) {
  const std::optional<std::wstring> key = module_key();
  return key ? windows::kept_text(*key, name) : std::nullopt;
}

void set_profile(std::wstring_view name, std::wstring_view value) {
  if (const std::optional<std::wstring> key = module_key()) {
    windows::keep_text(*key, name, value);
  }
}

}  // namespace korvel::arx
