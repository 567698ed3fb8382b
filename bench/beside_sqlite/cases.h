// The families of cases, in the order in which they run.
#pragma once

#include <cstdint>
#include <string_view>

#include "bench/beside_sqlite/comparison.h"

namespace korvel::bench {

void compare_searches(Comparison& run);
void compare_explication(Comparison& run);
void compare_changes(Comparison& run);

// Works on drawings of its own. Unless `wanted` is no part of "CSV": a line for each table and
// direction.
void compare_csv(std::uint64_t entities, std::string_view wanted);

}  // namespace korvel::bench
