// Palettes in the host's dockable windows.
#pragma once

#include <memory>

#include "frame/palette_set.h"

namespace korvel {
class Palette;
}

namespace korvel::arx {

// As DrawingHost has it.
[[nodiscard]] std::unique_ptr<PaletteSet> make_palette_set(const PaletteSetTraits& traits,
                                                           Palette& content);

// What the palettes show of the current drawing is of no use any more: another one is current, or
// it closes.
void show_palettes_anew_later();
void clear_palettes();

}  // namespace korvel::arx
