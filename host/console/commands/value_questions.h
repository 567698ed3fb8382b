// Questions about object data.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "frame/drawing_host.h"
#include "frame/od_store.h"
#include "host/console/console.h"

namespace korvel {

// Asks for a value of `current`'s type, which Enter keeps; a point is x,y or x,y,z, and "." makes
// a text empty. None: cancelled.
[[nodiscard]] std::optional<ODValue> ask_value(ConsoleHost& host, std::wstring_view name,
                                               const ODValue& current);

// A user table by its name, asked again until there is one; "?" lists them.
[[nodiscard]] Answer<ODTableDef> ask_table(ConsoleHost& host, const ODStore& store,
                                           std::wstring_view prompt);

// Says so and is false when the drawing cannot hold object data.
[[nodiscard]] bool holds_object_data(ConsoleHost& host);

}  // namespace korvel
