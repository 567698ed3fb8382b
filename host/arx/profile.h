// What the host keeps for the module from one run to the next, in the user's registry.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvel::arx {

// As DrawingHost has them.
[[nodiscard]] std::optional<std::wstring> profile(std::wstring_view name);
void set_profile(std::wstring_view name, std::wstring_view value);

}  // namespace korvel::arx
