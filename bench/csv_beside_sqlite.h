// Export and import of tables as text, beside SQLite doing the same.
#pragma once

#include <cstdint>
#include <string_view>

namespace korvel::bench {

// Unless `wanted` is no part of "CSV": prints a line for each table and direction, in the columns
// of beside_sqlite; ends the program when the two sides disagree.
void compare_csv(std::uint64_t entities, std::string_view wanted);

}  // namespace korvel::bench
