// Times of programs that compare two sides, and their end when the sides disagree.
#pragma once

#include <functional>
#include <limits>
#include <string>

namespace korvel::bench {

// Ends the program with exit status 1.
[[noreturn]] void fail(const std::string& why);

// More than any.
constexpr double no_time = std::numeric_limits<double>::infinity();

[[nodiscard]] double seconds(const std::function<void()>& work);

}  // namespace korvel::bench
