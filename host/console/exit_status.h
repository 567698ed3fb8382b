// How the program ends; scripts depend on the numbers.
#pragma once

namespace korvel::exit_status {

inline constexpr int done = 0;
inline constexpr int wrong_usage = 2;
inline constexpr int input_not_read = 3;
inline constexpr int output_not_written = 4;
inline constexpr int input_ended_in_prompt = 5;
inline constexpr int stopped_by_strict = 6;
inline constexpr int interrupted = 130;

}  // namespace korvel::exit_status
