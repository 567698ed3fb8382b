// The lines in which the times of both sides are shown.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace korvel::bench {

void print_heads();

// In the columns of print_heads; times are given in seconds. What was not measured stays blank, and
// so does the ratio when one side was not.
void print_line(std::string_view name, double ours, std::optional<double> theirs,
                std::optional<double> undoing, std::optional<std::size_t> found);

}  // namespace korvel::bench
