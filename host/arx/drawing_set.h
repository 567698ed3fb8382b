// Drawings attached to the host's drawing set, for their definitions, and the aliases of paths
// under which they are named there.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "frame/od_store.h"

namespace korvel::arx {

namespace map {

// False: there is such an alias already / there is none, or there is no Map.
bool add_alias(const std::wstring& name, const std::wstring& path);
bool remove_alias(const std::wstring& name);

}  // namespace map

// Null when the drawing set does not take the file: it is no drawing, or attached already.
// `aliased_path` names it by an alias, "DATA:\folder\file.dwg". Attached and detached by the
// result; definitions are brought over by a record on a point made for that and erased again.
[[nodiscard]] std::unique_ptr<AttachedDrawing> open_attached_drawing(
    const ODStore& active, const std::wstring& aliased_path);

}  // namespace korvel::arx
