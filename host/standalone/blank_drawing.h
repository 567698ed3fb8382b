// The bytes of a new drawing.
#pragma once

#include <string_view>

namespace korvel {

// A complete and empty R2018 DXF file: blank.dxf of this folder.
extern const std::string_view blank_drawing;

}  // namespace korvel
