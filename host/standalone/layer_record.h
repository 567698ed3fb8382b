// The LAYER record of a layer.
#pragma once

#include <string>
#include <string_view>

#include "frame/drawing_host.h"
#include "host/standalone/dxf/document.h"

namespace korvel {

// Sets frozen, locked, off and hidden as the record says.
void read_layer_state(const dxf::Document& document, dxf::ItemIndex record, Layer& layer);

// The record's bytes with frozen, locked and off as in `layer`; other bits and the colour stay.
[[nodiscard]] std::string with_layer_state(const dxf::Document& document, dxf::ItemIndex record,
                                           const Layer& layer);

// A record of a new layer, made after the one of an existing layer (its linetype, plot style and
// the like) with the colour 7, thawed, unlocked and on.
[[nodiscard]] std::string new_layer_record(const dxf::Document& document, dxf::ItemIndex model,
                                           std::wstring_view name, std::uint64_t handle);

}  // namespace korvel
