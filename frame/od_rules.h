// What definitions and records have to be, in whatever host: the answers that can be given before
// the host is asked.
#pragma once

#include <optional>
#include <string_view>

#include "frame/od_store.h"

namespace korvel {

// Whether a column of this type can hold the value. Numbers that are not finite have no form in a
// drawing file; a column of an unknown type holds nothing.
[[nodiscard]] bool fits(const ODValueView& value, ODType type);

// Whether the record has a fitting value for every column of the table.
[[nodiscard]] bool fits(const ODRecord& record, const ODTableDef& table);

// A name, columns of different names, and defaults that fit.
[[nodiscard]] bool is_sound(const ODTableDef& table);

// Each answers a wish that needs no host, or cannot be granted; none: the host is to do it. A
// missing table is given as none.
[[nodiscard]] std::optional<ColumnChange> answer_to_rename(const std::optional<ODTableDef>& table,
                                                           std::wstring_view from,
                                                           std::wstring_view to);
[[nodiscard]] std::optional<ColumnChange> answer_to_add(const std::optional<ODTableDef>& table,
                                                        const ODColumnDef& column, int index);
[[nodiscard]] std::optional<ColumnChange> answer_to_remove(const std::optional<ODTableDef>& table,
                                                           int index);

}  // namespace korvel
