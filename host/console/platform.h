// What the console needs to know from the operating system besides files; each system has its own
// version.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace korvel::platform {

// While one exists, the standard streams carry UTF-8 and leave line ends as they are.
class Utf8Streams {
 public:
  Utf8Streams();
  ~Utf8Streams();
  Utf8Streams(const Utf8Streams&) = delete;
  Utf8Streams& operator=(const Utf8Streams&) = delete;

 private:
  [[maybe_unused]] unsigned former_input_page_ = 0;  // of the Windows console
  [[maybe_unused]] unsigned former_output_page_ = 0;
};

// The arguments of the program as UTF-8, its own name first. Where they are bytes, as they are.
[[nodiscard]] std::vector<std::string> arguments(int argc, char** argv);

// A variable of the environment, likewise; none if it is not set or empty.
[[nodiscard]] std::optional<std::string> variable(const char* name);

// From now on writing to a pipe without a reader fails instead of ending the program.
void ignore_closed_pipes();

inline constexpr int standard_input = 0;
inline constexpr int standard_output = 1;
inline constexpr int standard_error = 2;
// Whether a person sits at the other end of one of them.
[[nodiscard]] bool is_terminal(int stream);

}  // namespace korvel::platform
