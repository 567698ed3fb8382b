// Names that a person may give to object-data tables and their columns.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace korvel {

inline constexpr std::size_t longest_table_name = 25;
inline constexpr std::size_t longest_column_name = 31;

// What is wrong with the name, in a sentence; none: it is allowed. A name begins with a letter or
// digit, has no blanks and at most the given number of characters; a table's is not one of those
// that belong to topologies.
[[nodiscard]] std::optional<std::wstring> table_name_fault(std::wstring_view name);
[[nodiscard]] std::optional<std::wstring> column_name_fault(std::wstring_view name);

}  // namespace korvel
