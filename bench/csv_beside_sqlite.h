// Export and import of tables as text, beside SQLite doing the same.
#pragma once

#include <cstdint>

namespace korvel::bench {

// Prints a line for each table and direction, in the columns of beside_sqlite; ends the program
// when the two sides disagree.
void compare_csv(std::uint64_t entities);

}  // namespace korvel::bench
