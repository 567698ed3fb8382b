// The host's block references: which block, and what their attributes say.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/drawing_host.h"
#include "host/arx/sdk.h"

namespace korvel::arx {

// Of the host's classes that derive from that of block references, tables for one, most are none.
[[nodiscard]] bool is_block_reference(const AcDbBlockReference& entity);

// As DrawingHost has them.
[[nodiscard]] std::optional<std::wstring> block_name_of(EntityId entity);
[[nodiscard]] std::vector<BlockAttribute> attributes_of(EntityId reference);
std::size_t set_attribute_texts(EntityId reference, const std::vector<AttributeText>& texts);

}  // namespace korvel::arx
